/// The options by which a command hears of a film's rescue from a failing disk: --map, --map-offset.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "cli/command.h"
#include "cli/environment.h"
#include "salvage/scan/rescue_map.h"

namespace zelvo::cli {

/// A map that was read, and where a film begins in it. Thread: any, once made.
struct ChosenRescue {
  std::string path;
  salvage::RescueMap map;
  std::optional<std::uint64_t> offset;  ///< none when the map is that of the film itself

  /// What the map tells of the film `name`, which is printable; a sentence when it tells of no byte of it.
  [[nodiscard]] std::variant<salvage::FilmRescue, std::string> of(const std::string& name,
                                                                  std::uint64_t filmSize) const;
};

/// What stands on the command line. Thread: main.
class RescueChoice {
 public:
  /// Adds the options to those of a command.
  void addTo(std::vector<Option>& options);
  [[nodiscard]] std::optional<std::string> misuse(std::size_t inputs) const;
  [[nodiscard]] const std::optional<std::string>& mapPath() const { return map_; }
  /// A sentence when the map is the file at one of `outputs`, or would be; empty names are none.
  [[nodiscard]] std::optional<std::string> replacedBy(const std::vector<std::string>& outputs,
                                                      Environment& environment) const;
  /// Reads the map; null without one, a sentence when it cannot be used.
  [[nodiscard]] std::variant<std::shared_ptr<const ChosenRescue>, std::string> read(Environment& environment) const;

 private:
  std::optional<std::string> map_;
  std::optional<std::string> offset_;
};

}  // namespace zelvo::cli
