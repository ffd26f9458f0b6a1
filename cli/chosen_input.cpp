#include "cli/chosen_input.h"

#include <array>
#include <utility>

#include "cli/shown_text.h"

namespace zelvo::cli {

namespace {

std::string unreadable(const std::string& path, std::error_code error) {
  if (error == std::errc::no_such_file_or_directory) return "there is no file named " + printable(path) + ".";
  return printable(path) + " cannot be read: " + error.message() + ".";
}

}  // namespace

std::variant<ChosenInput, std::string> chooseInput(const std::string& path, platform::Files& files,
                                                   platform::FileManager& fileManager, FirstByte firstByte) {
  using Kind = platform::FileAttributes::Kind;
  if (path.empty()) return "an input's name is empty.";
  const auto attributes = fileManager.attributesFollowingLinks(path);
  // Looked at before it is opened: opening a device can already do something to it.
  if (attributes && attributes->kind == Kind::folder) {
    return printable(path) + " is a folder; name the AVI file itself.";
  }
  if (attributes && attributes->kind != Kind::regularFile) {
    return printable(path) +
           " is not a regular file but a pipe, a device or the like; copy what it holds to a file first.";
  }
  auto opened = files.openForReading(path);
  if (!opened.file) return unreadable(path, opened.error);
  if (!attributes) return printable(path) + " cannot be looked at.";
  if (firstByte == FirstByte::left) return ChosenInput{path, *attributes, std::move(opened.file)};
  std::array<std::byte, 1> first{};
  const platform::IoResult probe = opened.file->readAt(0, first);
  if (probe.error) return unreadable(path, probe.error);
  return ChosenInput{path, *attributes, std::move(opened.file)};
}

std::optional<std::string> becameShorter(const ChosenInput& input) {
  const std::uint64_t now = input.file->size();
  if (now >= input.attributes.size) return std::nullopt;
  return printable(input.path) + " became shorter while it was read, from " + counted(input.attributes.size, "byte") +
         " to " + shownNumber(now) + "; nothing was written. Try again when nothing else uses it.";
}

}  // namespace zelvo::cli
