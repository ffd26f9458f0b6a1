#include "cli/command_inputs.h"

#include <algorithm>

#include "cli/output_place.h"
#include "cli/shown_text.h"
#include "platform/paths.h"
#include "platform/same_file.h"

namespace zelvo::cli {

CommandInputs::CommandInputs(const std::vector<std::string>& paths, platform::FileManager& fileManager)
    : fileManager_(fileManager) {
  inputs_.reserve(paths.size());
  for (const std::string& path : paths) {
    inputs_.push_back({path, fileManager_.attributesFollowingLinks(path), placeOf(path)});
  }
}

CommandInputs::Place CommandInputs::placeOf(const std::string& path) const {
  return {fileManager_.attributesFollowingLinks(platform::folderOf(path)), path.substr(path.rfind('/') + 1)};
}

std::optional<std::string> CommandInputs::at(const std::string& output) const {
  const auto file = fileManager_.attributesFollowingLinks(output);
  const Place place = placeOf(output);
  const auto found = std::find_if(inputs_.begin(), inputs_.end(), [&](const Input& input) {
    return input.path == output || platform::areOneFile(input.file, file) ||
           (input.place.name == place.name && platform::areOneFile(input.place.folder, place.folder));
  });
  if (found == inputs_.end()) return std::nullopt;
  return found->path;
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
