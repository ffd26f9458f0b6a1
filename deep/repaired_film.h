/// What a deep repair brought of one film.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "deep/deep_services.h"
#include "deep/film_end.h"
#include "platform/deep_outlets.h"
#include "salvage/salvage_report.h"

namespace zelvo::deep {

struct RepairOrder {
  std::string input;
  std::string output;                ///< where the film is written
  std::string folder;                ///< for the reports; there, and empty
  std::optional<std::string> donor;  ///< an undamaged film of the same camera
};

struct RepairedFilm {
  RepairOrder order;
  FilmEnd end;
  std::string path;        ///< where the film lies; empty when there is none
  std::uint64_t size = 0;  ///< of that, in bytes
  std::optional<salvage::SalvageReport> report;
  platform::DeepResult result;
  bool lacksHeader = false;  ///< another film of the same camera may help
};

/// A command line for the program that does it.
[[nodiscard]] std::vector<std::string> repairArguments(const RepairOrder& order);

/// The report as a page for a browser, written by that program.
[[nodiscard]] std::string reportPage(const std::string& folder);

/// Puts together what there is once that program has ended. Thread: any.
[[nodiscard]] std::shared_ptr<const RepairedFilm> repairedFilm(const DeepServices& services, const RepairOrder& order,
                                                               const FilmEnd& end);

/// The whole text of a file; nothing when it cannot be read or is absurdly large. Thread: any.
[[nodiscard]] std::optional<std::string> wholeText(platform::Files& files, const std::string& path);

}  // namespace zelvo::deep
