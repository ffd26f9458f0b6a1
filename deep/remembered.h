/// What the deep repair remembers from one start of the window to the next: keys of its settings.
#pragma once

#include <string_view>

namespace zelvo::deep::remembered {

inline constexpr std::string_view kFilmsFolder = "deep/films-folder";      ///< where films were added from last
inline constexpr std::string_view kDonorFolder = "deep/donor-folder";      ///< where a donor was chosen last
inline constexpr std::string_view kSaveFolder = "deep/save-folder";        ///< where a film was saved last
inline constexpr std::string_view kOutputFolder = "deep/output-folder";    ///< of several films
inline constexpr std::string_view kWrittenFolder = "deep/written-folder";  ///< that several films were last written to
inline constexpr std::string_view kSavesReport = "deep/saves-report";      ///< "yes" or "no"

}  // namespace zelvo::deep::remembered
