/// Sizes of files as the application's own texts say them.
#pragma once

#include <cstdint>
#include <string>

#include "platform/translator.h"

namespace zelvo::app {

/// "12.3 MB", of 1,000,000 bytes each; "12 bytes" of what would be no tenth of one, and from 10,000 MB on "12.3 GB".
[[nodiscard]] std::string shownSize(std::uint64_t bytes,
                                    const platform::Translator& translator = platform::englishTranslator());

}  // namespace zelvo::app
