#include "cli/new_output.h"

#include <span>
#include <utility>

#include "cli/shown_text.h"
#include "platform/paths.h"

namespace zelvo::cli {

NewOutput::NewOutput(Environment& environment, const CommandInputs& inputs, OutputChoice place)
    : environment_(environment), inputs_(inputs), place_(std::move(place)), folder_(platform::folderOf(place_.path)) {}

std::optional<std::string> NewOutput::create(HiddenFile& file, std::uint64_t needed) {
  if (place_.makesFolder) {
    if (const std::error_code error = environment_.fileManager.createFolder(folder_)) {
      return "the folder " + printable(folder_) + " cannot be created: " + error.message() + ".";
    }
  }
  if (auto sentence = spaceMissing(folder_, needed, environment_.fileManager)) return sentence;
  if (const std::error_code error = file.create(folder_, place_)) {
    return "no file can be created in " + printable(folder_) + ": " + error.message() + ".";
  }
  return std::nullopt;
}

std::optional<std::string> NewOutput::publish(HiddenFile& file) {
  // A link can have come to lead to an input since the look before the work.
  if (const auto replaced = inputs_.at(place_.path)) {
    return printable(place_.path) + " leads to " + printable(*replaced) +
           " by now, which is an input of this command; an input is never written to. Name another output.";
  }
  if (const std::error_code error = file.renameTo(place_)) return renameRefused(place_, error);
  return std::nullopt;
}

std::optional<std::string> NewOutput::keepName() {
  std::error_code error = environment_.newFiles.flushFolder(folder_);
  if (!error && place_.makesFolder) error = environment_.newFiles.flushFolder(platform::folderOf(folder_));
  if (!error) return std::nullopt;
  return printable(place_.path) + " is written, but a power cut could still take its name from it: " + error.message() +
         ".";
}

std::string NewOutput::writeFailed(std::uint64_t offset, std::error_code cause) const {
  return "writing " + printable(place_.path) + " failed after " + shownSize(offset) + ": " + cause.message() +
         ". Nothing of it was left behind.";
}

std::optional<std::string> writeText(Environment& environment, const CommandInputs& inputs, const OutputChoice& place,
                                     std::string_view text) {
  if (auto sentence = refusal(place, environment.fileManager)) return sentence;
  platform::Relaxed<std::uint64_t> written;
  NewOutput output(environment, inputs, place);
  HiddenFile hidden(environment.fileManager, environment.newFiles, written);
  if (auto sentence = output.create(hidden, text.size())) return sentence;
  const auto bytes = std::as_bytes(std::span(text));
  const platform::IoResult result = hidden.file()->writeAt(0, bytes);
  if (result.error) return output.writeFailed(result.count, result.error);
  if (const std::error_code error = hidden.flushAndClose()) return output.writeFailed(text.size(), error);
  if (auto sentence = output.publish(hidden)) return sentence;
  return output.keepName();
}

std::optional<std::string> readsFailed(const std::string& inputPath, const avi::ReadFailures& failures,
                                       std::string_view consequence) {
  if (failures.count == 0) return std::nullopt;
  return counted(failures.count, "read") + " of " + printable(inputPath) + " failed, the first at byte " +
         shownNumber(failures.firstOffset) + ": " + failures.firstCause.message() + "." + std::string(consequence);
}

}  // namespace zelvo::cli
