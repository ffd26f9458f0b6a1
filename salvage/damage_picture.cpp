#include "salvage/damage_picture.h"

#include <algorithm>
#include <string>

#include "platform/shown_text.h"
#include "salvage/salvage_words.h"

namespace zelvo::salvage {

namespace {

using platform::DamageBar;
using platform::DamageMark;
using platform::DamagePaint;
using platform::Translator;

DamagePaint paintOf(LossCause cause) {
  switch (cause) {
    case LossCause::sizeField:
    case LossCause::code:
    case LossCause::moved:
      return DamagePaint::mended;
    case LossCause::doubled:
      return DamagePaint::doubled;
    case LossCause::inserted:
    case LossCause::foreign:
      return DamagePaint::foreign;
    case LossCause::overwritten:
    case LossCause::zeroed:
    case LossCause::unreadable:
    case LossCause::unrescued:
    case LossCause::missing:
    case LossCause::cut:
      break;
  }
  return DamagePaint::lost;
}

/// In the film: what is left out of it takes no time of it, and of what was hit a part may still be there.
DamagePaint paintInFilm(const SpanShare& share, LossCause cause) {
  if (share.gone > 0) return DamagePaint::lost;
  if (share.hurt > 0) return DamagePaint::hurt;
  const DamagePaint paint = paintOf(cause);
  return paint == DamagePaint::lost ? DamagePaint::hurt : paint;
}

DamageBar fileBar(const SalvageReport& report, const Translator& translator) {
  DamageBar bar{.name = translator.translated("The damaged file"),
                .length = platform::shownSize(report.inputSize, translator),
                .extent = static_cast<double>(report.inputSize - report.returnsLeftOut),
                .isTime = false,
                .marks = {}};
  const auto add = [&bar](std::uint64_t begin, std::uint64_t end, DamagePaint paint, std::size_t loss) {
    bar.marks.push_back({static_cast<double>(begin), static_cast<double>(end), paint, loss});
  };
  if (report.headerEnd > 0) add(0, report.headerEnd, DamagePaint::header, DamageMark::kNoLoss);
  for (const TemplateSource& index : report.indexes) {
    add(index.offset, index.offset + index.entries * index.entrySize, DamagePaint::index, DamageMark::kNoLoss);
  }
  if (report.verdict == SalvageVerdict::hopeless) add(0, report.inputSize, DamagePaint::lost, DamageMark::kNoLoss);
  for (std::size_t i = 0; i < report.spans.size(); ++i) {
    const PlanSpan& span = report.spans[i].span;
    add(span.begin, span.end, paintOf(span.cause), i);
  }
  return bar;
}

DamageBar streamBar(const SalvageReport& report, std::size_t stream, const Translator& translator) {
  const SalvagedStream& told = report.streams[stream];
  DamageBar bar{.name = translator.translated(kindOf(told)) + ", " + codecOf(told, translator),
                .length = platform::shownTime(told.all().seconds, translator),
                .extent = told.all().seconds,
                .isTime = true,
                .marks = {}};
  for (std::size_t i = 0; i < report.spans.size(); ++i) {
    const SalvagedSpan& span = report.spans[i];
    for (const SpanShare& share : span.streams) {
      if (share.stream != stream) continue;
      bar.marks.push_back({span.begin, span.end, paintInFilm(share, span.span.cause), i});
    }
  }
  return bar;
}

}  // namespace

platform::DamagePicture damagePicture(const SalvageReport& report, const Translator& translator) {
  platform::DamagePicture picture;
  picture.bars.push_back(fileBar(report, translator));
  for (std::size_t stream = 0; stream < report.streams.size(); ++stream) {
    picture.bars.push_back(streamBar(report, stream, translator));
  }
  for (const SalvagedSpan& span : report.spans)
    picture.losses.push_back({lossWords(span, report, translator), span.begin});
  picture.lossesLeftOut = report.spansLeftOut;
  return picture;
}

}  // namespace zelvo::salvage
