#include "platform/linux/bundle.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <system_error>

#include "platform/bytes.h"

namespace zelvo::platform::linux_ {

namespace {

constexpr std::string_view kFolderOfPrograms = "/Contents/MacOS";
constexpr std::string_view kList = "/Contents/Info.plist";

/// Our own list; it is a few hundred bytes long.
constexpr std::uint64_t kLargestList = std::uint64_t{1024} * 1024;

std::string bundleOf(std::string_view program) {
  const std::size_t slash = program.rfind('/');
  std::string_view folder = program.substr(0, slash == std::string_view::npos ? 0 : slash);
  if (folder.size() > kFolderOfPrograms.size() && folder.ends_with(kFolderOfPrograms)) {
    folder.remove_suffix(kFolderOfPrograms.size());
    return std::string(folder);
  }
  // So deep, it is also safe for whoever climbs from the bundle path and removes what he finds there.
  return std::string(folder) + std::string(LinuxBundle::kBelowPrefix);
}

PropertyDictionary listIn(Files& files, PropertyLists& lists, const std::string& path) {
  const auto opened = files.openForReading(path);
  if (!opened.file) return {};
  const std::uint64_t size = opened.file->size();
  if (size > kLargestList) return {};
  Bytes bytes(static_cast<std::size_t>(size));
  if (opened.file->readAt(0, bytes).count != bytes.size()) return {};
  const auto list = lists.parse(bytes, kLargestList);
  if (!list || list->dictionary() == nullptr) return {};
  return *list->dictionary();
}

}  // namespace

LinuxBundle::LinuxBundle(Files& files, PropertyLists& lists, std::string_view program)
    : bundlePath_(bundleOf(program)), info_(listIn(files, lists, bundlePath_ + std::string(kList))) {}

std::string LinuxBundle::runningProgram() {
  std::error_code error;
  return std::filesystem::read_symlink("/proc/self/exe", error).string();
}

std::optional<std::string> LinuxBundle::infoText(std::string_view key) const {
  const std::string* text = info_.text(key);
  if (text == nullptr) return std::nullopt;
  return *text;
}

std::optional<std::string> LinuxBundle::prefix() const {
  if (!bundlePath_.ends_with(kBelowPrefix)) return std::nullopt;
  const std::string above = bundlePath_.substr(0, bundlePath_.size() - kBelowPrefix.size());
  return above.empty() ? "/" : above;
}

}  // namespace zelvo::platform::linux_
