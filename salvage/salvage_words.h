/// What a deep repair found and did, in words for a person: in English, and what a window shows of it in the language
/// of a translator.
#pragma once

#include <string>
#include <string_view>

#include "platform/translator.h"
#include "salvage/salvage_report.h"

namespace zelvo::salvage {

[[nodiscard]] std::string_view nameOf(SalvageVerdict verdict);
[[nodiscard]] std::string_view nameOf(HeaderOrigin origin);
[[nodiscard]] std::string_view nameOf(LossCause cause);
/// The same for a person: "wrong size". A text that a translator knows, as doneAbout.
[[nodiscard]] std::string_view wordsFor(LossCause cause);
[[nodiscard]] std::string_view nameOf(SlotState state);

/// What a stream holds: "video", "sound", "text" or "data", which are texts that a translator knows.
[[nodiscard]] std::string_view kindOf(const SalvagedStream& stream);
/// Its codec, as people call it.
[[nodiscard]] std::string codecOf(const SalvagedStream& stream,
                                  const platform::Translator& translator = platform::englishTranslator());

/// One sentence that a layman understands: how much of the film is there.
[[nodiscard]] std::string verdictSentence(const SalvageReport& report,
                                          const platform::Translator& translator = platform::englishTranslator());
/// What became of one stream's chunks: "1,234 chunks, 12 mended, 3 lost (0.12 s)".
[[nodiscard]] std::string streamWords(const SalvagedStream& stream,
                                      const platform::Translator& translator = platform::englishTranslator());
/// One stretch of damage: where, what, and what was done about it.
[[nodiscard]] std::string spanWords(const SalvagedSpan& span, const SalvageReport& report);
/// The same for somebody who looks at the film: when, how many pictures and pieces of sound, and why.
[[nodiscard]] std::string lossWords(const SalvagedSpan& span, const SalvageReport& report,
                                    const platform::Translator& translator = platform::englishTranslator());
/// What was done about a cause.
[[nodiscard]] std::string_view doneAbout(LossCause cause);
/// By what a stretch of damage is known: "index" when the film's own index tells what was there, else "chunks".
[[nodiscard]] std::string_view evidenceOf(const SalvagedSpan& span, const SalvageReport& report);
/// How sure it is: "high", or "fair" where only what is left around it tells.
[[nodiscard]] std::string_view confidenceOf(const SalvagedSpan& span, const SalvageReport& report);

/// How many chunks found no room. \pre there are some.
[[nodiscard]] std::string leftOutWords(const SalvageReport& report);

/// What a transfer as text had done, and that it is undone.
[[nodiscard]] std::string transferWords(const SalvageReport& report);

}  // namespace zelvo::salvage
