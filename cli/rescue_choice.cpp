#include "cli/rescue_choice.h"

#include <utility>

#include "cli/chosen_input.h"
#include "cli/command_inputs.h"
#include "cli/shown_text.h"

namespace zelvo::cli {

namespace {

std::string_view wordsFor(salvage::RescueMapProblem problem) {
  using salvage::RescueMapProblem;
  switch (problem) {
    case RescueMapProblem::unreadable:
      break;
    case RescueMapProblem::noStatus:
      return "there is no status line, which holds a position and a status";
    case RescueMapProblem::notABlock:
      return "this is no block, which holds a position, a size above zero and a status";
    case RescueMapProblem::unknownStatus:
      return "the status is none of those that a map has";
    case RescueMapProblem::tooFar:
      return "the block ends beyond 2^63 bytes";
    case RescueMapProblem::gap:
      return "the block begins after the end of the one before it";
    case RescueMapProblem::overlap:
      return "the block begins before the end of the one before it";
    case RescueMapProblem::tooLong:
      return "more than 1,000,000 stretches were not rescued";
  }
  return "it cannot be read";
}

std::string faultSentence(const std::string& path, const salvage::RescueMapFault& fault) {
  const std::string name = printable(path);
  if (fault.problem == salvage::RescueMapProblem::unreadable)
    return "the map " + name + " cannot be read: " + fault.cause.message() + ".";
  return name + " is no map of ddrescue: line " + shownNumber(fault.line) + ": " +
         std::string(wordsFor(fault.problem)) + ".";
}

}  // namespace

std::variant<salvage::FilmRescue, std::string> ChosenRescue::of(const std::string& name, std::uint64_t filmSize) const {
  if (auto rescue = salvage::rescueOf(map, offset, filmSize)) return std::move(*rescue);
  return "the map " + printable(path) + " tells of no byte of " + name + ": it goes from " + shownNumber(map.begin) +
         " to " + shownNumber(map.end) + ". --map-offset tells where the film begins in the map of a whole disk.";
}

void RescueChoice::addTo(std::vector<Option>& options) {
  options.push_back({"--map",
                     "the map file that ddrescue kept of the film's copy; what it says was not rescued counts "
                     "as lost (for one input)",
                     &map_, "FILE"});
  options.push_back(
      {"--map-offset", "where the film begins in the map, in bytes, when that is of a whole disk", &offset_, "N"});
}

std::optional<std::string> RescueChoice::misuse(std::size_t inputs) const {
  if (map_ && inputs > 1) return "--map takes one input.";
  if (offset_ && !map_) return "--map-offset needs --map.";
  if (offset_ && !salvage::rescueNumber(*offset_))
    return "--map-offset takes a number of bytes, such as 1048576 or 0x100000.";
  return std::nullopt;
}

std::optional<std::string> RescueChoice::replacedBy(const std::vector<std::string>& outputs,
                                                    Environment& environment) const {
  if (!map_) return std::nullopt;
  const CommandInputs map({*map_}, environment.fileManager);
  for (const std::string& output : outputs) {
    if (output.empty() || !map.at(output)) continue;
    return printable(output) + " is the map of the rescue, which is never written to. Name another output.";
  }
  return std::nullopt;
}

std::variant<std::shared_ptr<const ChosenRescue>, std::string> RescueChoice::read(Environment& environment) const {
  if (!map_) return std::shared_ptr<const ChosenRescue>();
  auto chosen = chooseInput(*map_, environment.files, environment.fileManager);
  if (auto* sentence = std::get_if<std::string>(&chosen)) return std::move(*sentence);
  auto read = salvage::readRescueMap(*std::get<ChosenInput>(chosen).file);
  if (const auto* fault = std::get_if<salvage::RescueMapFault>(&read)) return faultSentence(*map_, *fault);
  auto rescue = std::make_shared<ChosenRescue>();
  rescue->path = *map_;
  rescue->map = std::move(std::get<salvage::RescueMap>(read));
  if (offset_) rescue->offset = salvage::rescueNumber(*offset_);
  return std::shared_ptr<const ChosenRescue>(std::move(rescue));
}

}  // namespace zelvo::cli
