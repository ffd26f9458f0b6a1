#include "salvage/batch_line.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "platform/json_reader.h"
#include "platform/json_writer.h"

namespace zelvo::salvage {

namespace {

using platform::JsonValue;
using platform::JsonWriter;

constexpr std::uint64_t kJournalVersion = 1;
constexpr std::array<std::string_view, 3> kStateNames{"naming", "done", "failed"};
constexpr std::size_t kMaxName = 64;

void writeText(JsonWriter& json, std::string_view name, const std::string& text) {
  json.key(name);
  text.empty() ? json.null() : json.text(text);
}

void writeOutput(JsonWriter& json, const std::optional<BatchOutput>& output) {
  json.key("output");
  if (!output) {
    json.null();
    return;
  }
  json.beginObject();
  json.pathMembers(output->path);
  json.member("size", output->size);
  json.member("device", output->device);
  json.member("inode", output->inode);
  json.key("modified");
  json.integer(output->modified);
  if (!output->sha256.empty()) json.member("sha256", output->sha256);
  json.endObject();
}

bool readText(const JsonValue& object, std::string_view name, std::string& text) {
  const JsonValue* member = object.member(name);
  if (member == nullptr || member->isNull()) return true;
  auto found = member->text();
  if (!found) return false;
  text = std::move(*found);
  return true;
}

template <class Number>
bool readNumber(const std::optional<Number>& found, Number& number) {
  if (found) number = *found;
  return found.has_value();
}

bool readCount(const JsonValue& object, std::string_view name, std::uint64_t& count) {
  const JsonValue* member = object.member(name);
  return member != nullptr && readNumber(member->count(), count);
}

bool readTime(const JsonValue& object, std::int64_t& time) {
  const JsonValue* member = object.member("modified");
  return member != nullptr && readNumber(member->integer(), time);
}

bool readSha256(const JsonValue& object, std::string& checksum) {
  if (!readText(object, "sha256", checksum)) return false;
  const auto isDigit = [](char one) { return (one >= '0' && one <= '9') || (one >= 'a' && one <= 'f'); };
  return checksum.empty() || (checksum.size() == 64 && std::ranges::all_of(checksum, isDigit));
}

bool readPath(const JsonValue& object, std::string& path) {
  const auto found = object.path();
  if (!found || found->empty() || found->find('\0') != std::string::npos) return false;
  path = *found;
  return true;
}

bool readOutput(const JsonValue& line, std::optional<BatchOutput>& output) {
  const JsonValue* member = line.member("output");
  if (member == nullptr || member->isNull()) return true;
  output.emplace();
  return member->isObject() && readPath(*member, output->path) && readCount(*member, "size", output->size) &&
         readCount(*member, "device", output->device) && readCount(*member, "inode", output->inode) &&
         readTime(*member, output->modified) && readSha256(*member, output->sha256);
}

bool readFigures(const JsonValue& line, std::vector<BatchFigure>& figures) {
  const JsonValue* member = line.member("figures");
  if (member == nullptr) return true;
  if (!member->isObject() || member->members().size() > kMaxFigures) return false;
  for (const auto& [name, value] : member->members()) {
    const auto number = value.number();
    if (!number || name.empty() || name.size() > kMaxName) return false;
    figures.push_back({name, *number});
  }
  return true;
}

bool readPicture(const JsonValue& line, std::vector<BatchPicture>& picture) {
  const JsonValue* member = line.member("picture");
  if (member == nullptr) return true;
  if (member->kind() != JsonValue::Kind::array || member->items().size() > kMaxPictureRows) return false;
  for (const JsonValue& item : member->items()) {
    BatchPicture& row = picture.emplace_back();
    if (!readText(item, "name", row.name) || !readText(item, "cells", row.cells)) return false;
    if (row.name.size() > kMaxName || row.cells.size() > kMaxPictureCells) return false;
    if (row.cells.find_first_not_of(kPictureLetters) != std::string::npos) return false;
  }
  return true;
}

bool readState(const JsonValue& object, LineState& state) {
  std::string name;
  if (!readText(object, "state", name)) return false;
  const auto found = std::ranges::find(kStateNames, name);
  state = static_cast<LineState>(found - kStateNames.begin());
  return found != kStateNames.end();
}

bool readInput(const JsonValue& object, BatchLine& line) {
  const JsonValue* input = object.member("input");
  return input != nullptr && input->isObject() && readPath(*input, line.input) &&
         readCount(*input, "size", line.inputSize) && readTime(*input, line.inputModified) &&
         readSha256(*input, line.inputSha256);
}

bool readRest(const JsonValue& object, BatchLine& line) {
  const JsonValue* seconds = object.member("seconds");
  if (seconds == nullptr || !readNumber(seconds->number(), line.seconds) || line.seconds < 0) return false;
  const JsonValue* exit = object.member("exit");
  const auto code = exit == nullptr ? std::nullopt : exit->count();
  if (!code || *code > 255) return false;
  line.exit = static_cast<int>(*code);
  const JsonValue* adopted = object.member("adopted");
  if (adopted != nullptr && !readNumber(adopted->boolean(), line.isAdopted)) return false;
  return readCount(object, "peak_memory", line.peakMemory);
}

/// A number as short as it can be without losing anything.
std::string exactly(double value) {
  std::array<char, 32> text{};
  const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), value);
  return {text.data(), end};
}

}  // namespace

std::string journalLine(const BatchLine& line) {
  JsonWriter json;
  json.beginObject();
  json.member("version", kJournalVersion);
  json.member("state", kStateNames[static_cast<std::size_t>(line.state)]);
  json.member("command", line.command);
  json.member("options", line.options);
  json.key("input");
  json.beginObject();
  json.pathMembers(line.input);
  json.member("size", line.inputSize);
  json.key("modified");
  json.integer(line.inputModified);
  if (!line.inputSha256.empty()) json.member("sha256", line.inputSha256);
  json.endObject();
  writeOutput(json, line.output);
  json.member("outcome", line.outcome);
  writeText(json, "verdict", line.verdict);
  writeText(json, "reason", line.reason);
  json.member("exit", static_cast<unsigned>(line.exit));
  json.key("figures");
  json.beginObject();
  for (const BatchFigure& figure : line.figures) {
    json.key(figure.name);
    json.literal(exactly(figure.value));
  }
  json.endObject();
  json.key("picture");
  json.beginArray();
  for (const BatchPicture& row : line.picture) {
    json.beginObject();
    json.member("name", row.name);
    json.member("cells", row.cells);
    json.endObject();
  }
  json.endArray();
  json.key("seconds");
  json.seconds(line.seconds);
  json.member("peak_memory", line.peakMemory);
  if (line.isAdopted) json.member("adopted", true);
  json.endObject();
  return json.take() + "\n";
}

std::optional<BatchLine> readJournalLine(std::string_view text) {
  if (text.size() > kMaxJournalLine) return std::nullopt;
  const auto object = platform::readJson(text);
  std::uint64_t version = 0;
  if (!object || !object->isObject() || !readCount(*object, "version", version) || version != kJournalVersion) {
    return std::nullopt;
  }
  BatchLine line;
  const bool isWhole = readState(*object, line.state) && readText(*object, "command", line.command) &&
                       readText(*object, "options", line.options) && readInput(*object, line) &&
                       readOutput(*object, line.output) && readText(*object, "outcome", line.outcome) &&
                       readText(*object, "verdict", line.verdict) && readText(*object, "reason", line.reason) &&
                       readFigures(*object, line.figures) && readPicture(*object, line.picture) &&
                       readRest(*object, line);
  if (!isWhole || line.command.empty() || line.outcome.empty() || line.command.size() > kMaxName ||
      line.outcome.size() > kMaxName || line.verdict.size() > kMaxName) {
    return std::nullopt;
  }
  if (line.state == LineState::naming && !line.output) return std::nullopt;
  return line;
}

}  // namespace zelvo::salvage
