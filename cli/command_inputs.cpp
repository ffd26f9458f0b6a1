#include "cli/command_inputs.h"

#include <algorithm>

#include "cli/output_place.h"
#include "cli/shown_text.h"
#include "platform/paths.h"
#include "platform/same_file.h"

namespace zelvo::cli {

CommandInputs::CommandInputs(const std::vector<std::string>& paths, platform::FileManager& fileManager)
    : fileManager_(fileManager), paths_(paths) {
  for (std::size_t i = 0; i < paths_.size(); ++i) {
    know("path " + paths_[i], i);
    if (const auto file = fileManager_.attributesFollowingLinks(paths_[i])) know("file " + fileKey(*file), i);
    const Place place = placeOf(paths_[i]);
    if (place.folder) know("place " + fileKey(*place.folder) + "/" + place.name, i);
  }
}

std::string CommandInputs::fileKey(const platform::FileAttributes& file) {
  return std::to_string(file.device) + ":" + std::to_string(file.identity);
}

CommandInputs::Place CommandInputs::placeOf(const std::string& path) const {
  return {fileManager_.attributesFollowingLinks(platform::folderOf(path)), path.substr(path.rfind('/') + 1)};
}

std::optional<std::string> CommandInputs::at(const std::string& output) const {
  std::size_t first = paths_.size();
  const auto look = [&](const std::string& key) {
    const auto found = known_.find(key);
    if (found != known_.end()) first = std::min(first, found->second);
  };
  look("path " + output);
  if (const auto file = fileManager_.attributesFollowingLinks(output)) look("file " + fileKey(*file));
  const Place place = placeOf(output);
  if (place.folder) look("place " + fileKey(*place.folder) + "/" + place.name);
  if (first == paths_.size()) return std::nullopt;
  return paths_[first];
}

std::optional<std::string> CommandInputs::refusal(const std::string& input, const std::string& output) const {
  const auto replaced = at(output);
  if (!replaced || *replaced == input || platform::areOneFile(fileManager_, *replaced, input)) return std::nullopt;
  const std::string name = *replaced == output ? "" : ", under the name " + printable(*replaced);
  return printable(input) + " is not repaired: its output would be " + printable(output) +
         ", which is an input of the same command" + name +
         "; an input is never written to. Repair it on its own with -o, or use --output-dir.";
}

}  // namespace zelvo::cli
