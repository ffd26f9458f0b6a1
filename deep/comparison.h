/// What the normal repair keeps of a film, beside what the deep one has.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "deep/film_end.h"
#include "platform/deep_outlets.h"
#include "platform/translator.h"
#include "salvage/salvage_report.h"

namespace zelvo::deep {

/// A command line for the program that tells what the normal repair would keep.
[[nodiscard]] std::vector<std::string> checkArguments(const std::string& input);

/// `check`: how that program ended, with what it printed. `deep`: null when the deep repair has nothing.
[[nodiscard]] platform::DeepComparison comparisonOf(const FilmEnd& check, const salvage::SalvageReport* deep,
                                                    const platform::Translator& translator);

}  // namespace zelvo::deep
