#include "cli/outline_writers.h"

#include <utility>

#include "avi/chunk_codes.h"
#include "cli/outline_words.h"
#include "cli/shown_text.h"

namespace zelvo::cli {

namespace {

constexpr std::size_t kPieceSize = 65536;
constexpr std::uint64_t kOutlineVersion = 1;

avi::FourCC codeOf(std::uint32_t value) {
  avi::FourCC code;
  code.value = value;
  return code;
}

std::string valueInWords(const avi::Field& field) {
  if (const auto* text = std::get_if<std::string>(&field.value)) return "\"" + printable(*text) + "\"";
  if (const auto* code = std::get_if<avi::FourCC>(&field.value)) return "\"" + printable(codeOrNumber(*code)) + "\"";
  if (const auto* number = std::get_if<std::int64_t>(&field.value)) return std::to_string(*number);
  return std::to_string(std::get<std::uint64_t>(field.value));
}

std::string fieldInWords(const avi::Field& field) {
  std::string text = std::string(field.name) + " = " + valueInWords(field);
  if (field.unit != avi::Unit::none) text += " " + std::string(inWords(field.unit));
  if (const std::string note = noteOn(field); !note.empty()) text += " (" + note + ")";
  return text;
}

/// `Counts`: an IndexReport or an IndexSum.
template <class Counts>
std::string countsInWords(const Counts& index) {
  std::string text = shownNumber(index.entries) + " entries, " + shownNumber(index.checked) + " checked, " +
                     shownNumber(index.matching) + " match";
  if (index.unreadable > 0) text += ", " + shownNumber(index.unreadable) + " cannot be read";
  return text;
}

std::string indexInWords(const avi::IndexReport& index) {
  std::string text = countsInWords(index);
  if (index.keyFrames) text += ", " + shownNumber(*index.keyFrames) + " key frames";
  if (const std::string remark = remarkInWords(index); !remark.empty()) text += "; " + remark;
  return text;
}

void writeField(JsonWriter& json, const avi::Field& field) {
  json.beginObject();
  json.member("name", field.name);
  json.key("value");
  if (const auto* text = std::get_if<std::string>(&field.value)) {
    json.text(*text);
  } else if (const auto* code = std::get_if<avi::FourCC>(&field.value)) {
    json.text(codeOrNumber(*code));
  } else if (const auto* number = std::get_if<std::int64_t>(&field.value)) {
    json.integer(*number);
  } else {
    json.number(std::get<std::uint64_t>(field.value));
  }
  if (field.unit != avi::Unit::none) json.member("unit", inWords(field.unit));
  if (const std::string note = noteOn(field); !note.empty()) json.member("note", note);
  json.endObject();
}

/// `Counts`: an IndexReport or an IndexSum.
template <class Counts>
void beginIndex(JsonWriter& json, const Counts& index) {
  json.key("index");
  json.beginObject();
  json.member("entries", index.entries);
  json.member("checked", index.checked);
  json.member("matching", index.matching);
  if (index.unreadable > 0) json.member("unreadable", index.unreadable);
}

void writeIndex(JsonWriter& json, const avi::IndexReport& index) {
  beginIndex(json, index);
  if (index.keyFrames) json.member("key_frames", *index.keyFrames);
  if (const std::string remark = remarkInWords(index); !remark.empty()) json.member("note", remark);
  if (index.firstWrong) {
    json.key("first_wrong");
    json.beginObject();
    json.member("entry", index.firstWrong->number);
    json.member("text", inWords(*index.firstWrong));
    json.endObject();
  }
  json.endObject();
}

}  // namespace

void OutlineText::line(std::size_t depth, const std::string& text) {
  piece_.append(2 * depth, ' ');
  piece_ += text;
  piece_ += '\n';
  if (piece_.size() >= kPieceSize) passOn();
}

void OutlineText::passOn() { take_(std::exchange(piece_, {})); }

void OutlineText::finish(std::uint64_t failedReads, bool stopped) {
  std::string text = problemCount_ == 0 ? "No problems found" : counted(problemCount_, "problem") + " found";
  if (stopped) {
    text += " until the stop";
  } else if (failedReads > 0) {
    text += " in what could be read";
  }
  if (!showsAll_ && problemCount_ > kMaxProblems) text += "; the first " + shownNumber(kMaxProblems) + " are shown";
  line(0, text + ".");
  passOn();
}

void OutlineText::beginList(const avi::OutlineItem& list) {
  const std::string type = list.type ? " \"" + shownCode(*list.type) + "\"" : "";
  line(list.depth, shownCode(list.id) + type + " at " + shownNumber(list.offset) + ", " + counted(list.size, "byte"));
}

void OutlineText::writeSums(std::size_t depth, const avi::DataSums& sums) {
  for (const auto& [code, sum] : sums) {
    const std::string name = code == 0 ? "others" : shownCode(codeOf(code));
    const std::string index = sum.index ? "; " + countsInWords(*sum.index) : "";
    line(depth, name + ": " + counted(sum.chunks, "chunk") + ", " + counted(sum.bytes, "byte") + index);
  }
}

void OutlineText::endList(const avi::OutlineItem& list, const avi::DataSums& sums) { writeSums(list.depth + 1, sums); }

void OutlineText::endFile(const avi::DataSums& sums) { writeSums(0, sums); }

void OutlineText::chunk(const avi::OutlineItem& chunk, const std::vector<avi::Field>& fields,
                        const std::optional<avi::IndexReport>& index) {
  line(chunk.depth, shownCode(chunk.id) + " at " + shownNumber(chunk.offset) + ", " + counted(chunk.size, "byte"));
  for (const avi::Field& field : fields) line(chunk.depth + 1, fieldInWords(field));
  if (index) line(chunk.depth + 1, indexInWords(*index));
}

void OutlineText::problem(const avi::Problem& problem, std::size_t depth) {
  ++problemCount_;
  if (!showsAll_ && problemCount_ > kMaxProblems) return;
  line(depth, "! at " + shownNumber(problem.offset) + ": " + inWords(problem));
}

OutlineJson::OutlineJson(TakePiece take, std::string_view path, std::uint64_t size) : take_(std::move(take)) {
  json_.beginObject();
  json_.member("version", kOutlineVersion);
  json_.member("command", "inspect");
  json_.key("input");
  json_.beginObject();
  json_.pathMembers(path);
  json_.member("size", size);
  json_.endObject();
  json_.key("chunks");
  json_.beginArray();
}

void OutlineJson::passOn(bool all) {
  if (all || json_.written().size() >= kPieceSize) take_(json_.take());
}

void OutlineJson::beginItem(const avi::OutlineItem& item) {
  json_.beginObject();
  json_.member("id", shownCode(item.id));
  json_.member("offset", item.offset);
  json_.member("size", item.size);
}

void OutlineJson::beginList(const avi::OutlineItem& list) {
  beginItem(list);
  if (list.type) json_.member("type", shownCode(*list.type));
  json_.key("chunks");
  json_.beginArray();
  passOn(false);
}

void OutlineJson::writeSums(const avi::DataSums& sums) {
  if (sums.empty()) return;
  json_.key("not_listed");
  json_.beginArray();
  for (const auto& [code, sum] : sums) {
    json_.beginObject();
    json_.key("id");
    if (code == 0) {
      json_.null();
    } else {
      json_.text(shownCode(codeOf(code)));
    }
    json_.member("chunks", sum.chunks);
    json_.member("bytes", sum.bytes);
    if (sum.index) {
      beginIndex(json_, *sum.index);
      json_.endObject();
    }
    json_.endObject();
  }
  json_.endArray();
}

void OutlineJson::endFile(const avi::DataSums& sums) {
  json_.endArray();
  writeSums(sums);
}

void OutlineJson::endList(const avi::OutlineItem&, const avi::DataSums& sums) {
  json_.endArray();
  writeSums(sums);
  json_.endObject();
  passOn(false);
}

void OutlineJson::chunk(const avi::OutlineItem& chunk, const std::vector<avi::Field>& fields,
                        const std::optional<avi::IndexReport>& index) {
  beginItem(chunk);
  if (!fields.empty()) {
    json_.key("fields");
    json_.beginArray();
    for (const avi::Field& field : fields) writeField(json_, field);
    json_.endArray();
  }
  if (index) writeIndex(json_, *index);
  json_.endObject();
  passOn(false);
}

void OutlineJson::problem(const avi::Problem& problem, std::size_t) {
  ++problemCount_;
  if (problems_.size() < kMaxProblems) problems_.push_back(problem);
}

void OutlineJson::finish(bool isAvi, std::uint64_t readErrors, bool stopped) {
  json_.key("is_avi");
  json_.boolean(isAvi);
  json_.key("problems");
  json_.beginArray();
  for (const avi::Problem& problem : problems_) {
    json_.beginObject();
    json_.member("offset", problem.offset);
    json_.member("text", inWords(problem));
    json_.endObject();
  }
  json_.endArray();
  json_.member("problem_count", problemCount_);
  json_.member("read_errors", readErrors);
  json_.member("stopped", stopped);
  json_.endObject();
  take_(json_.take() + "\n");
}

}  // namespace zelvo::cli
