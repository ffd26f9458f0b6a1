#include "cli/output_place.h"

#include <algorithm>
#include <random>
#include <utility>

#include "avi/name_endings.h"
#include "cli/shown_text.h"
#include "engine/counted_file.h"
#include "platform/hidden_names.h"
#include "platform/paths.h"
#include "platform/ran_out.h"
#include "platform/same_file.h"

namespace zelvo::cli {

namespace {

using Kind = platform::FileAttributes::Kind;

/// Names in a folder are at most this long on every usual file system, in bytes.
constexpr std::size_t kLongestName = 255;
/// Reading and writing by the owner alone.
constexpr std::uint32_t kOwnerOnly = 0600;

std::string_view fileName(std::string_view path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

bool equalsIgnoringCase(std::string_view text, std::string_view lowerCase) {
  return std::equal(text.begin(), text.end(), lowerCase.begin(), lowerCase.end(), [](char one, char lower) {
    return (one >= 'A' && one <= 'Z' ? static_cast<char>(one - 'A' + 'a') : one) == lower;
  });
}

std::string_view withoutVideoEnding(std::string_view name) {
  const std::size_t dot = name.rfind('.');
  if (dot == 0 || dot == std::string_view::npos) return name;
  const bool isVideo =
      std::any_of(avi::kNameEndings.begin(), avi::kNameEndings.end(),
                  [ending = name.substr(dot + 1)](std::string_view one) { return equalsIgnoringCase(ending, one); });
  return isVideo ? name.substr(0, dot) : name;
}

std::string outputPath(const std::string& input, const std::optional<std::string>& directory, std::string_view ending) {
  const std::string name = std::string(withoutVideoEnding(fileName(input))) + std::string(ending);
  if (directory) return platform::pathIn(*directory, name);
  return input.substr(0, input.size() - fileName(input).size()) + name;
}

std::string hiddenName() {
  std::random_device random;
  std::string name(platform::kHiddenBeginning);
  for (int i = 0; i < 3; ++i) name += shownHex(random(), 8).substr(2);
  return name.append(platform::kHiddenEnd);
}

std::optional<std::string> folderRefusal(const OutputChoice& output, platform::FileManager& fileManager) {
  std::string folder = platform::folderOf(output.path);
  auto there = fileManager.attributesFollowingLinks(folder);
  if (!there && output.makesFolder) {
    folder = platform::folderOf(folder);
    there = fileManager.attributesFollowingLinks(folder);
  }
  if (!there) return "there is no folder " + printable(folder) + "; create it or name another one.";
  if (there->kind != Kind::folder) return printable(folder) + " is not a folder.";
  if (!fileManager.isWritable(folder)) {
    return "the folder " + printable(folder) + " may not be written to; name another one with -o or --output-dir.";
  }
  return std::nullopt;
}

}  // namespace

std::string repairedPath(const std::string& input, const std::optional<std::string>& directory) {
  return outputPath(input, directory, "-repaired.avi");
}

std::string salvagedPath(const std::string& input, const std::optional<std::string>& directory) {
  return outputPath(input, directory, "-salvaged.avi");
}

std::error_code HiddenFile::create(const std::string& folder) {
  std::error_code error;
  // A name that exists already is as good as impossible; should it happen, another one is tried.
  for (int attempt = 0; attempt < 8; ++attempt) {
    const std::string candidate = platform::pathIn(folder, hiddenName());
    auto created = newFiles_.createNewFile(candidate);
    if (created.file) {
      lock_ = newFiles_.lockNewFile(candidate);
      // Whoever removes what dead programs have left may take it for that before it is locked.
      if (!lock_ && !fileManager_.exists(candidate)) continue;
      path_ = candidate;
      file_ = std::make_unique<engine::CountedFile>(std::move(created.file), written_);
      return {};
    }
    error = created.error;
    if (error != std::errc::file_exists) break;
  }
  return error;
}

// Permissions that cannot be set are those of a file system that has none, so no failure comes of them.

std::error_code HiddenFile::create(const std::string& folder, const OutputChoice& output) {
  if (const std::error_code error = create(folder)) return error;
  const auto created = fileManager_.attributes(path_);
  if (created && output.mayReplace && fileManager_.exists(output.path)) {
    own_ = created->permissions;
    static_cast<void>(newFiles_.setPermissions(path_, kOwnerOnly));
  }
  return {};
}

std::error_code HiddenFile::renameTo(const OutputChoice& output) {
  const auto replaced = output.mayReplace ? fileManager_.attributesFollowingLinks(output.path) : std::nullopt;
  if (replaced) {
    static_cast<void>(newFiles_.setPermissions(path_, replaced->permissions));
  } else if (own_) {
    static_cast<void>(newFiles_.setPermissions(path_, *own_));
  }
  const std::error_code error =
      output.mayReplace ? fileManager_.rename(path_, output.path) : newFiles_.renameToNew(path_, output.path);
  if (!error) {
    path_.clear();
    lock_.reset();
  }
  return error;
}

std::error_code HiddenFile::flushAndClose() {
  const std::error_code flushing = file_->flush();
  const std::error_code closing = file_->close();
  file_.reset();
  return flushing ? flushing : closing;
}

void HiddenFile::remove() {
  file_.reset();
  if (path_.empty()) return;
  // Nothing can be done about a file that will not go, and nothing may leave here while memory is short.
  static_cast<void>(platform::ranOut([this] { static_cast<void>(fileManager_.remove(path_)); }));
  path_.clear();
  lock_.reset();
}

std::optional<std::string> refusal(const OutputChoice& output, const ChosenInput& input,
                                   platform::FileManager& fileManager) {
  if (!output.path.empty() &&
      platform::areOneFile(fileManager.attributesFollowingLinks(output.path), input.attributes)) {
    return "input and output are the same file, " + printable(output.path) +
           "; an input is never written to. Name another output.";
  }
  return refusal(output, fileManager);
}

std::optional<std::string> refusal(const OutputChoice& output, platform::FileManager& fileManager) {
  const std::string shown = printable(output.path);
  if (output.path.empty()) return "the output's name is empty.";
  if (output.path.ends_with('/')) {
    return "the output must be named as a file, not as a folder: " + shown;
  }
  if (fileName(output.path).size() > kLongestName) {
    return "the name of the output would be too long: " + shown + "; name a shorter one with -o.";
  }
  const auto target = fileManager.attributesFollowingLinks(output.path);
  if (target && target->kind == Kind::folder) return shown + " is a folder; name a file in it.";
  if (target && target->kind != Kind::regularFile) return shown + " is not a regular file; name another output.";
  if (fileManager.attributes(output.path) && !output.mayReplace) {
    return shown + " exists already; use --force to replace it, or name another output.";
  }
  return folderRefusal(output, fileManager);
}

std::string renameRefused(const OutputChoice& output, std::error_code error) {
  if (error == std::errc::file_exists) {
    return printable(output.path) + " has appeared meanwhile and was left as it is; use --force to replace it.";
  }
  return printable(output.path) + " cannot be given its name: " + error.message() + ".";
}

std::optional<std::string> spaceMissing(const std::string& folder, std::uint64_t needed,
                                        platform::FileManager& fileManager) {
  const auto free = fileManager.freeSpace(folder);
  if (!free || *free >= needed) return std::nullopt;
  return "there is not enough free space in " + printable(folder) + ": " + shownSize(needed) + " are needed, " +
         shownSize(*free) + " are free. Free some, or name another place.";
}

}  // namespace zelvo::cli
