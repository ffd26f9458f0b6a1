/// The report of a deep repair as its page shows it, and as plain text. Thread: any.
#pragma once

#include <string>

#include "platform/deep_outlets.h"
#include "platform/translator.h"
#include "salvage/salvage_report.h"

namespace zelvo::deep {

/// `film`: the damaged film's file name.
[[nodiscard]] platform::DeepResult resultOf(const salvage::SalvageReport& report, const std::string& film,
                                            const platform::Translator& translator);

/// Of a film that the deep repair could not even look into; `reason` is a sentence, or empty.
[[nodiscard]] platform::DeepResult hopelessResult(const std::string& film, const std::string& reason,
                                                  const platform::Translator& translator);

/// All that is told of it, a line each: for a clipboard.
[[nodiscard]] std::string plainText(const platform::DeepResult& result, const platform::Translator& translator);

/// What a stream holds: "Pictures".
[[nodiscard]] std::string kindWords(const salvage::SalvagedStream& stream, const platform::Translator& translator);

}  // namespace zelvo::deep
