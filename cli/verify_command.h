/// Looks at films by decoding them: one film, as the command `verify` and `salvage --verify` do it.
#pragma once

#include <memory>
#include <string>

#include "cli/environment.h"
#include "cli/verify_words.h"

namespace zelvo::cli {

/// Decodes one film on a worker and judges it. Shows how far it is, unless nobody sees it.
/// Thread: main.
[[nodiscard]] VerifyOutcome verifyFilm(Environment& environment, const std::string& inputPath,
                                       const platform::PlayChoices& choices);

}  // namespace zelvo::cli
