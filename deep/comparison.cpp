#include "deep/comparison.h"

#include <array>
#include <optional>

#include "deep/texts.h"
#include "platform/json_reader.h"
#include "platform/shown_text.h"
#include "salvage/salvage_words.h"

namespace zelvo::deep {

namespace {

using platform::Translator;

struct Kept {
  std::uint64_t pieces = 0;
  std::uint64_t bytes = 0;
};

struct ComparedKind {
  std::string_view normal;  ///< in what the check prints
  std::string_view deep;    ///< as `salvage::kindOf` says it
  std::string_view about;
  std::string_view pieces;
};

constexpr std::array<ComparedKind, 2> kKinds{
    ComparedKind{"video", "video", texts::kPictures, texts::kKeptPictures},
    ComparedKind{"audio", "sound", texts::kSound, texts::kKeptPieces},
};

std::uint64_t countIn(const platform::JsonValue& object, std::string_view name) {
  const platform::JsonValue* value = object.member(name);
  return value == nullptr ? 0 : value->count().value_or(0);
}

std::string textIn(const platform::JsonValue& object, std::string_view name) {
  const platform::JsonValue* value = object.member(name);
  return value == nullptr ? std::string() : value->text().value_or("");
}

Kept keptByNormal(const platform::JsonValue& check, std::string_view kind) {
  Kept kept;
  const platform::JsonValue* streams = check.member("streams");
  if (streams == nullptr) return kept;
  for (const platform::JsonValue& stream : streams->items()) {
    if (textIn(stream, "kind") != kind) continue;
    kept.pieces += countIn(stream, "chunks");
    kept.bytes += countIn(stream, "bytes");
  }
  return kept;
}

Kept keptByDeep(const salvage::SalvageReport& report, std::string_view kind) {
  Kept kept;
  for (const salvage::SalvagedStream& stream : report.streams) {
    if (salvage::kindOf(stream) != kind) continue;
    const salvage::SlotTally all = stream.all();
    const salvage::SlotTally& lost = stream.of(salvage::SlotState::lost);
    const salvage::SlotTally& refilled = stream.of(salvage::SlotState::refilled);
    kept.pieces += all.chunks - lost.chunks - refilled.chunks;
    kept.bytes += all.bytes - lost.bytes - refilled.bytes;
  }
  return kept;
}

std::string wordsOf(const Kept& kept, const ComparedKind& kind, const Translator& translator) {
  if (kept.pieces == 0) return translator.translated(texts::kNothingKept);
  return translator.counted(kind.pieces, kept.pieces) + " (" + platform::shownSize(kept.bytes, translator) + ")";
}

}  // namespace

std::vector<std::string> checkArguments(const std::string& input) { return {"check", "--json", "--", input}; }

platform::DeepComparison comparisonOf(const FilmEnd& check, const salvage::SalvageReport* deep,
                                      const Translator& translator) {
  platform::DeepComparison comparison;
  const auto json = platform::readJson(check.printed);
  if (!check.isJudged() || !json || !json->isObject()) {
    comparison.sentence = translator.translated(texts::kNotCompared);
    return comparison;
  }
  const std::string outcome = textIn(*json, "outcome");
  if (outcome != "repairable") {
    comparison.sentence = translator.translated(texts::kNormalRefuses);
    return comparison;
  }
  std::uint64_t normalBytes = 0;
  std::uint64_t deepBytes = 0;
  for (const ComparedKind& kind : kKinds) {
    const Kept normal = keptByNormal(*json, kind.normal);
    const Kept deeper = deep == nullptr ? Kept{} : keptByDeep(*deep, kind.deep);
    normalBytes += normal.bytes;
    deepBytes += deeper.bytes;
    if (normal.pieces + deeper.pieces == 0) continue;
    comparison.rows.push_back(
        {translator.translated(kind.about), wordsOf(normal, kind, translator), wordsOf(deeper, kind, translator)});
  }
  const std::string_view sentence = deepBytes > normalBytes   ? texts::kDeepKeepsMore
                                    : deepBytes < normalBytes ? texts::kNormalKeepsMore
                                                              : texts::kBothKeepAsMuch;
  comparison.sentence = translator.translated(sentence);
  return comparison;
}

}  // namespace zelvo::deep
