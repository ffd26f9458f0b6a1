/// Where a repaired file goes, and how it gets there: it is written under a hidden name in the same folder, and only
/// the whole file takes the final name. Nothing that the user has is touched unless he said so. Sizes are in bytes.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "cli/chosen_input.h"
#include "platform/file_manager.h"
#include "platform/files.h"
#include "platform/new_files.h"
#include "platform/relaxed.h"

namespace zelvo::cli {

/// A path of the output, and what may be done on the way to it.
struct OutputChoice {
  std::string path;
  bool mayReplace = false;   ///< an existing file gives way
  bool makesFolder = false;  ///< the file's own folder is created when it is missing
};

/// "FOLDER/clip.avi" gives "FOLDER/clip-repaired.avi", or "DIR/clip-repaired.avi" with a `directory` given. Only the
/// endings of video files that this program is for are taken off the name.
[[nodiscard]] std::string repairedPath(const std::string& input, const std::optional<std::string>& directory);
/// The same with "-salvaged.avi".
[[nodiscard]] std::string salvagedPath(const std::string& input, const std::optional<std::string>& directory);

/// A file under a hidden name that nobody can guess, open for writing; removed when it is let go, unless it was
/// renamed.
/// Thread: one at a time.
class HiddenFile {
 public:
  /// `written` counts the bytes that are written to it; it outlives the file.
  HiddenFile(platform::FileManager& fileManager, platform::NewFiles& newFiles,
             platform::Relaxed<std::uint64_t>& written)
      : fileManager_(fileManager), newFiles_(newFiles), written_(written) {}
  HiddenFile(const HiddenFile&) = delete;
  HiddenFile& operator=(const HiddenFile&) = delete;
  ~HiddenFile() { remove(); }

  /// Creates it, empty, in `folder`. // Decision: command-line, Outputs are hidden until they are whole
  [[nodiscard]] std::error_code create(const std::string& folder);
  /// The same in the output's folder. Where it is to replace a file, nobody else may look into it meanwhile.
  /// Decision: command-line, A replaced output keeps its permissions
  [[nodiscard]] std::error_code create(const std::string& folder, const OutputChoice& output);
  [[nodiscard]] const std::string& path() const { return path_; }
  /// Open from its creation until `close`.
  /// Decision: command-line, Outputs are hidden until they are whole
  [[nodiscard]] platform::WritableFile* file() const { return file_.get(); }
  /// Waits until all of it lies on the medium, and closes it; answers the first failure.
  [[nodiscard]] std::error_code flushAndClose();
  /// Gives it its final name. A file that it replaces leaves it its permissions. Failure: it stays hidden, and
  /// std::errc::file_exists when something bears the name.
  [[nodiscard]] std::error_code renameTo(const OutputChoice& output);
  void remove();

 private:
  platform::FileManager& fileManager_;
  platform::NewFiles& newFiles_;
  platform::Relaxed<std::uint64_t>& written_;
  std::string path_;                          ///< empty while there is none
  std::unique_ptr<platform::FileLock> lock_;  ///< until it has its name: a file without one has lost its writer
  std::unique_ptr<platform::WritableFile> file_;
  std::optional<std::uint32_t> own_;  ///< permissions of a new file, once it has others
};

/// Looks at an output before the long work; a sentence for the user when it cannot be.
/// Decision: command-line, A refused output is a failure
[[nodiscard]] std::optional<std::string> refusal(const OutputChoice& output, const ChosenInput& input,
                                                 platform::FileManager& fileManager);
/// The same of an output that is no film.
[[nodiscard]] std::optional<std::string> refusal(const OutputChoice& output, platform::FileManager& fileManager);

/// Why the final name could not be given.
[[nodiscard]] std::string renameRefused(const OutputChoice& output, std::error_code error);

/// Asks whether `needed` bytes fit into `folder`; a sentence with both figures when they do not.
[[nodiscard]] std::optional<std::string> spaceMissing(const std::string& folder, std::uint64_t needed,
                                                      platform::FileManager& fileManager);

}  // namespace zelvo::cli
