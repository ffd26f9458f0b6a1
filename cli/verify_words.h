/// What a look at a film by decoding it found, in words for a person and as JSON. Sizes and offsets are in bytes.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/outcome.h"
#include "salvage/playing/film_check.h"

namespace zelvo::cli {

class JsonWriter;

struct VerifyOutcome {
  Outcome outcome;                          ///< `streams` stays empty
  std::optional<salvage::FilmCheck> check;  ///< none when the film was not looked at
};

[[nodiscard]] std::string_view nameOf(salvage::FilmVerdict verdict);
[[nodiscard]] std::string_view nameOf(platform::PlayedKind kind);
[[nodiscard]] std::string_view nameOf(salvage::PlayErrorKind kind);
[[nodiscard]] std::string_view nameOf(platform::SeekEnd end);

/// One sentence that a layman understands: whether the film plays, and if not, why.
[[nodiscard]] std::string verdictSentence(const salvage::FilmCheck& check);
/// "0:03.20 to 0:04.00, at byte 1,234: 20 packets of which no picture came".
[[nodiscard]] std::string faultWords(const salvage::PlayError& fault);
/// Everything that is wrong, a line each, without ends; with `all` each place, else the first few of each stream.
[[nodiscard]] std::vector<std::string> checkLines(const salvage::FilmCheck& check, bool all);

/// Several lines for a person; `all`: every fault.
[[nodiscard]] std::string inWords(const VerifyOutcome& outcome, bool all);
/// One line, its end included; docs/cli-verify.schema.json describes it.
[[nodiscard]] std::string inJson(const VerifyOutcome& outcome);
/// The check as a value, null without one.
void writeCheck(JsonWriter& json, const std::optional<salvage::FilmCheck>& check);

}  // namespace zelvo::cli
