#include "salvage/report_json.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string>

#include "platform/shown_text.h"
#include "salvage/salvage_words.h"

namespace zelvo::salvage {

namespace {

using platform::JsonValue;
using platform::JsonWriter;

constexpr std::size_t kMaxReportStreams = 100;
constexpr std::size_t kMaxReportIndexes = 100'000;
constexpr std::array<std::string_view, 3> kBelongings{"unknown", "own", "foreign"};
constexpr int kCodeDigits = 8;
constexpr std::string_view kHexMark = "0x";

/// The four characters, or, where they are no plain text, the number that they are.
std::string codeText(avi::FourCC code) {
  std::string text;
  for (const std::byte one : code.bytes()) text += static_cast<char>(one);
  const auto isPlain = [](char one) { return one >= ' ' && one <= '~'; };
  return std::ranges::all_of(text, isPlain) ? text : platform::shownHex(code.value, kCodeDigits);
}

std::optional<avi::FourCC> codeOf(const std::string& text) {
  avi::FourCC code;
  if (text.size() == code.bytes().size()) {
    return avi::FourCC::at(std::as_bytes(std::span(text)));
  }
  const char* const end = text.data() + text.size();
  if (!text.starts_with(kHexMark)) return std::nullopt;
  const auto [stop, error] = std::from_chars(text.data() + kHexMark.size(), end, code.value, 16);
  if (error != std::errc() || stop != end) return std::nullopt;
  return code;
}

// ---- Writing -----------------------------------------------------------------------------------------------------

/// In microseconds, of which words that are made of them later show nothing; three places stand always.
void write(JsonWriter& json, std::string_view name, double seconds) {
  constexpr int kPlaces = 6;
  constexpr std::size_t kMayGo = 3;
  std::string text = platform::fixedPoint(std::isfinite(seconds) ? seconds : 0, kPlaces);
  for (std::size_t i = 0; i < kMayGo && text.ends_with('0'); ++i) text.pop_back();
  json.key(name);
  json.literal(text);
}

void write(JsonWriter& json, std::string_view name, const SlotTally& tally) {
  json.key(name);
  json.beginObject();
  json.member("chunks", tally.chunks);
  json.member("bytes", tally.bytes);
  write(json, "seconds", tally.seconds);
  json.endObject();
}

void writeStreams(JsonWriter& json, const SalvageReport& report) {
  json.key("streams");
  json.beginArray();
  for (const SalvagedStream& stream : report.streams) {
    json.beginObject();
    json.member("kind", kindOf(stream));
    json.member("codec", codecOf(stream));
    json.member("type", codeText(stream.type));
    json.member("handler", codeText(stream.handler));
    if (stream.formatTag) json.member("format_tag", *stream.formatTag);
    json.member("number", stream.number);
    json.member("header", nameOf(stream.origin));
    write(json, "all", stream.all());
    for (std::size_t state = 0; state < kSlotStates; ++state) {
      write(json, nameOf(static_cast<SlotState>(state)), stream.slots[state]);
    }
    json.endObject();
  }
  json.endArray();
}

void writeFields(JsonWriter& json, const SalvageReport& report) {
  json.key("fields");
  json.beginArray();
  for (const FoundField& field : report.fields) {
    json.beginObject();
    json.member("number", field.stream);
    json.member("name", field.name);
    json.member("value", field.value);
    json.key("alternatives");
    json.beginArray();
    for (const std::string& other : field.alternatives) json.text(other);
    json.endArray();
    json.endObject();
  }
  json.endArray();
  json.member("streams_without_header", report.streamsWithoutHeader);
}

void writeIndexes(JsonWriter& json, const SalvageReport& report) {
  json.key("indexes");
  json.beginArray();
  for (const TemplateSource& index : report.indexes) {
    json.beginObject();
    json.member("offset", index.offset);
    json.member("entries", index.entries);
    json.member("entry_size", index.entrySize);
    json.member("film", kBelongings[static_cast<std::size_t>(index.belonging)]);
    json.endObject();
  }
  json.endArray();
  json.member("indexed_chunks", report.indexedChunks);
}

void writeOffset(JsonWriter& json, std::string_view name, const std::optional<std::uint64_t>& offset) {
  json.key(name);
  if (offset) {
    json.number(*offset);
  } else {
    json.null();
  }
}

void writeSpans(JsonWriter& json, const SalvageReport& report) {
  json.key("spans");
  json.beginArray();
  for (const SalvagedSpan& span : report.spans) {
    json.beginObject();
    json.member("begin", span.span.begin);
    json.member("end", span.span.end);
    writeOffset(json, "original_begin", span.span.originalBegin);
    writeOffset(json, "original_end", span.span.originalEnd);
    write(json, "time_begin", span.begin);
    write(json, "time_end", span.end);
    json.member("cause", nameOf(span.span.cause));
    json.member("done", doneAbout(span.span.cause));
    json.member("evidence", evidenceOf(span, report));
    json.member("confidence", confidenceOf(span, report));
    json.member("chunks", span.span.slots);
    json.key("streams");
    json.beginArray();
    for (const SpanShare& share : span.streams) {
      json.beginObject();
      json.member("stream", share.stream);
      json.member("gone", share.gone);
      json.member("hurt", share.hurt);
      json.endObject();
    }
    json.endArray();
    json.endObject();
  }
  json.endArray();
  json.member("spans_left_out", report.spansLeftOut);
  json.member("chunks_left_out", report.chunksLeftOut);
}

// ---- Reading -----------------------------------------------------------------------------------------------------

/// Reads members of one object; once one is missing or of another kind, `isWhole` is false.
class ReportMembers {
 public:
  explicit ReportMembers(const JsonValue& object) : object_(object), isWhole_(object.isObject()) {}

  [[nodiscard]] bool isWhole() const { return isWhole_; }

  template <class Number>
  void count(std::string_view name, Number& into) {
    const JsonValue* const member = find(name);
    const auto number = member == nullptr ? std::nullopt : member->count();
    if (number && *number <= std::numeric_limits<Number>::max()) {
      into = static_cast<Number>(*number);
    } else {
      isWhole_ = false;
    }
  }
  /// May be null, or missing.
  template <class Number>
  void count(std::string_view name, std::optional<Number>& into) {
    const JsonValue* const member = object_.member(name);
    if (member != nullptr && !member->isNull()) count(name, into.emplace());
  }
  void flag(std::string_view name, bool& into) {
    const JsonValue* const member = find(name);
    const auto flag = member == nullptr ? std::nullopt : member->boolean();
    into = flag.value_or(false);
    isWhole_ = isWhole_ && flag;
  }
  void seconds(std::string_view name, double& into) {
    const JsonValue* const member = find(name);
    const auto number = member == nullptr ? std::nullopt : member->number();
    if (number && *number >= 0) {
      into = *number;
    } else {
      isWhole_ = false;
    }
  }
  void text(std::string_view name, std::string& into) {
    const JsonValue* const member = find(name);
    auto text = member == nullptr ? std::nullopt : member->text();
    if (text) {
      into = std::move(*text);
    } else {
      isWhole_ = false;
    }
  }
  void code(std::string_view name, avi::FourCC& into) {
    std::string written;
    text(name, written);
    const auto code = codeOf(written);
    if (code) {
      into = *code;
    } else {
      isWhole_ = false;
    }
  }
  /// One of the values whose names `nameOfValue` knows, from the first on, `values` of them.
  template <class Value, class NameOf>
  void named(std::string_view name, Value& into, std::size_t values, const NameOf& nameOfValue) {
    std::string written;
    text(name, written);
    for (std::size_t i = 0; i < values; ++i) {
      if (nameOfValue(static_cast<Value>(i)) != written) continue;
      into = static_cast<Value>(i);
      return;
    }
    isWhole_ = false;
  }
  /// The items of an array of objects, `most` of them at the most, each by `readItem(ReportMembers&)` into a fresh one.
  template <class Item, class Read>
  void items(std::string_view name, std::vector<Item>& into, std::size_t most, const Read& readItem) {
    const JsonValue* const member = find(name);
    if (member == nullptr || member->kind() != JsonValue::Kind::array || member->items().size() > most) {
      isWhole_ = false;
      return;
    }
    into.reserve(member->items().size());
    for (const JsonValue& one : member->items()) {
      ReportMembers members(one);
      readItem(members, into.emplace_back());
      isWhole_ = isWhole_ && members.isWhole_;
    }
  }
  void texts(std::string_view name, std::vector<std::string>& into) {
    const JsonValue* const member = find(name);
    isWhole_ = isWhole_ && member != nullptr && member->kind() == JsonValue::Kind::array;
    if (!isWhole_) return;
    for (const JsonValue& one : member->items()) {
      auto text = one.text();
      isWhole_ = isWhole_ && text;
      into.push_back(std::move(text).value_or(""));
    }
  }
  /// The members of a member that is an object.
  [[nodiscard]] ReportMembers of(std::string_view name) {
    const JsonValue* const member = find(name);
    static const JsonValue none;
    return ReportMembers(member == nullptr ? none : *member);
  }
  void alsoNeeds(const ReportMembers& others) { isWhole_ = isWhole_ && others.isWhole_; }

 private:
  [[nodiscard]] const JsonValue* find(std::string_view name) const { return object_.member(name); }

  const JsonValue& object_;
  bool isWhole_;
};

void readTally(ReportMembers members, SlotTally& tally, ReportMembers& of) {
  members.count("chunks", tally.chunks);
  members.count("bytes", tally.bytes);
  members.seconds("seconds", tally.seconds);
  of.alsoNeeds(members);
}

void readStream(ReportMembers& members, SalvagedStream& stream) {
  constexpr std::size_t kOrigins = 3;
  members.code("type", stream.type);
  members.code("handler", stream.handler);
  members.count("format_tag", stream.formatTag);
  members.count("number", stream.number);
  members.named("header", stream.origin, kOrigins, [](HeaderOrigin origin) { return nameOf(origin); });
  for (std::size_t state = 0; state < kSlotStates; ++state) {
    readTally(members.of(nameOf(static_cast<SlotState>(state))), stream.slots[state], members);
  }
}

void readField(ReportMembers& members, FoundField& field) {
  members.count("number", field.stream);
  members.text("name", field.name);
  members.text("value", field.value);
  members.texts("alternatives", field.alternatives);
}

void readIndex(ReportMembers& members, TemplateSource& index) {
  members.count("offset", index.offset);
  members.count("entries", index.entries);
  members.count("entry_size", index.entrySize);
  members.named("film", index.belonging, kBelongings.size(),
                [](Belonging belonging) { return kBelongings[static_cast<std::size_t>(belonging)]; });
}

void readSpan(ReportMembers& members, SalvagedSpan& span) {
  constexpr std::size_t kCauses = 12;
  members.count("begin", span.span.begin);
  members.count("end", span.span.end);
  members.count("original_begin", span.span.originalBegin);
  members.count("original_end", span.span.originalEnd);
  members.seconds("time_begin", span.begin);
  members.seconds("time_end", span.end);
  members.named("cause", span.span.cause, kCauses, [](LossCause cause) { return nameOf(cause); });
  members.count("chunks", span.span.slots);
  members.items("streams", span.streams, kMaxReportStreams, [](ReportMembers& one, SpanShare& share) {
    one.count("stream", share.stream);
    one.count("gone", share.gone);
    one.count("hurt", share.hurt);
  });
}

}  // namespace

void writeReport(JsonWriter& json, const SalvageReport& report) {
  json.member("verdict", nameOf(report.verdict));
  json.member("sentence", verdictSentence(report));
  json.member("size", report.inputSize);
  json.member("returns_left_out", report.returnsLeftOut);
  json.member("main_header", report.hasMainHeader ? "own" : "synthesised");
  json.member("header_end", report.headerEnd);
  writeStreams(json, report);
  writeFields(json, report);
  writeIndexes(json, report);
  writeSpans(json, report);
  write(json, "sync_before", report.syncBefore);
  write(json, "sync_after", report.syncAfter);
  json.member("unreadable", report.unreadable);
  json.member("donor_useless", report.isDonorUseless);
  json.member("lacks_decoder", report.lacksDecoder);
}

std::optional<SalvageReport> readReport(std::string_view json) {
  constexpr std::size_t kVerdicts = 4;
  const auto whole = platform::readJson(json);
  const JsonValue* const told = whole ? whole->member("report") : nullptr;
  if (told == nullptr) return std::nullopt;
  SalvageReport report;
  ReportMembers members(*told);
  members.named("verdict", report.verdict, kVerdicts, [](SalvageVerdict verdict) { return nameOf(verdict); });
  members.count("size", report.inputSize);
  members.count("returns_left_out", report.returnsLeftOut);
  std::string mainHeader;
  members.text("main_header", mainHeader);
  report.hasMainHeader = mainHeader == nameOf(HeaderOrigin::own);
  members.count("header_end", report.headerEnd);
  members.items("streams", report.streams, kMaxReportStreams, readStream);
  members.items("fields", report.fields, kMaxReportStreams * kMaxReportStreams, readField);
  members.count("streams_without_header", report.streamsWithoutHeader);
  members.items("indexes", report.indexes, kMaxReportIndexes, readIndex);
  members.count("indexed_chunks", report.indexedChunks);
  members.items("spans", report.spans, kMaxSpans, readSpan);
  members.count("spans_left_out", report.spansLeftOut);
  members.count("chunks_left_out", report.chunksLeftOut);
  members.seconds("sync_before", report.syncBefore);
  members.seconds("sync_after", report.syncAfter);
  members.count("unreadable", report.unreadable);
  members.flag("donor_useless", report.isDonorUseless);
  members.flag("lacks_decoder", report.lacksDecoder);
  // What words and pictures are made from must fit together.
  const auto isOfStreams = [&report](const SpanShare& share) { return share.stream < report.streams.size(); };
  const auto fits = [&](const SalvagedSpan& span) {
    return span.span.begin <= span.span.end && span.begin <= span.end && std::ranges::all_of(span.streams, isOfStreams);
  };
  if (!members.isWhole() || report.returnsLeftOut > report.inputSize || !std::ranges::all_of(report.spans, fits)) {
    return std::nullopt;
  }
  return report;
}

}  // namespace zelvo::salvage
