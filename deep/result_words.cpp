#include "deep/result_words.h"

#include <algorithm>
#include <utility>

#include "deep/texts.h"
#include "platform/shown_text.h"
#include "salvage/damage_picture.h"
#include "salvage/salvage_words.h"

namespace zelvo::deep {

namespace {

using platform::Translator;

platform::DeepVerdict verdictOf(salvage::SalvageVerdict verdict) {
  switch (verdict) {
    case salvage::SalvageVerdict::clean:
      return platform::DeepVerdict::clean;
    case salvage::SalvageVerdict::repaired:
      return platform::DeepVerdict::repaired;
    case salvage::SalvageVerdict::partial:
      return platform::DeepVerdict::partial;
    case salvage::SalvageVerdict::hopeless:
      break;
  }
  return platform::DeepVerdict::hopeless;
}

std::string headerWords(const salvage::SalvageReport& report, const Translator& translator) {
  using salvage::HeaderOrigin;
  const auto countOf = [&](HeaderOrigin origin) {
    return static_cast<std::size_t>(
        std::ranges::count_if(report.streams, [origin](const auto& one) { return one.origin == origin; }));
  };
  const std::size_t all = report.streams.size();
  const std::size_t own = countOf(HeaderOrigin::own);
  if (own == all) return translator.translated(report.hasMainHeader ? texts::kOwnHeader : texts::kMainHeaderMade);
  std::string words;
  for (const auto& [text, origin] :
       {std::pair(texts::kHeadersOwn, HeaderOrigin::own), std::pair(texts::kHeadersGiven, HeaderOrigin::donor),
        std::pair(texts::kHeadersMade, HeaderOrigin::synthesised)}) {
    const std::size_t count = countOf(origin);
    if (count == 0) continue;
    words += (words.empty() ? "" : "; ") + platform::filled(translator.translated(text), {std::to_string(count)});
  }
  return words;
}

std::string fieldWords(const salvage::FoundField& field, const Translator& translator) {
  std::string others;
  for (const std::string& other : field.alternatives) others += (others.empty() ? "" : ", ") + other;
  return platform::filled(translator.translated(texts::kChosenField),
                          {translator.translated(field.name), field.value, others});
}

}  // namespace

std::string kindWords(const salvage::SalvagedStream& stream, const Translator& translator) {
  const std::string_view kind = salvage::kindOf(stream);
  if (kind == "video") return translator.translated(texts::kPictures);
  if (kind == "sound") return translator.translated(texts::kSound);
  return translator.translated(kind == "text" ? texts::kText : texts::kData);
}

platform::DeepResult resultOf(const salvage::SalvageReport& report, const std::string& film,
                              const Translator& translator) {
  platform::DeepResult result;
  result.film = film;
  result.verdict = verdictOf(report.verdict);
  result.sentence = salvage::verdictSentence(report, translator);
  const auto add = [&](std::string_view about, std::string words) {
    result.lines.push_back({translator.translated(about), std::move(words)});
  };
  for (const salvage::SalvagedStream& stream : report.streams) {
    result.lines.push_back({kindWords(stream, translator),
                            salvage::codecOf(stream, translator) + ", " + salvage::streamWords(stream, translator)});
  }
  if (report.verdict != salvage::SalvageVerdict::hopeless) add(texts::kHeader, headerWords(report, translator));
  for (const salvage::FoundField& field : report.fields) {
    if (!field.alternatives.empty()) add(texts::kChosen, fieldWords(field, translator));
  }
  if (report.isDonorUseless) add(texts::kOtherFilm, translator.translated(texts::kDonorUseless));
  if (report.streamsWithoutHeader > 0) {
    add(texts::kLeftOut, translator.counted(texts::kStreamsLeftOut, report.streamsWithoutHeader));
  }
  if (report.chunksLeftOut > 0) add(texts::kLeftOut, translator.counted(texts::kChunksLeftOut, report.chunksLeftOut));
  if (report.returnsLeftOut > 0)
    add(texts::kTransfer, translator.counted(texts::kReturnsLeftOut, report.returnsLeftOut));
  if (report.unreadable > 0) add(texts::kUnreadable, translator.counted(texts::kZerosThere, report.unreadable));
  if (report.lacksDecoder) add(texts::kDecoder, translator.translated(texts::kDecoderMissing));
  result.picture = salvage::damagePicture(report, translator);
  return result;
}

platform::DeepResult hopelessResult(const std::string& film, const std::string& reason, const Translator& translator) {
  platform::DeepResult result;
  result.film = film;
  result.sentence = salvage::verdictSentence(salvage::SalvageReport{}, translator);
  if (!reason.empty()) result.lines.push_back({translator.translated(texts::kWhy), reason});
  return result;
}

std::string plainText(const platform::DeepResult& result, const Translator& translator) {
  std::string text = result.film + "\n" + result.sentence + "\n";
  for (const platform::DeepLine& line : result.lines) text += line.about + ": " + line.words + "\n";
  if (!result.picture.losses.empty()) text += "\n" + translator.translated(texts::kDamage) + "\n";
  for (const platform::DamageLoss& loss : result.picture.losses) text += loss.words + "\n";
  if (result.picture.lossesLeftOut > 0) {
    text += translator.counted(texts::kMorePlaces, result.picture.lossesLeftOut) + "\n";
  }
  return text;
}

}  // namespace zelvo::deep
