/// Files and folders copied and removed with all they hold.
#pragma once

#include <string>
#include <system_error>

namespace zelvo::platform {

/// Thread: any.
class FolderTrees {
 public:
  virtual ~FolderTrees() = default;
  /// Copies a file or a folder with its modes. Links are copied as links, whatever they lead to. The copy is made
  /// beside `to` and gets its name when it is whole, so `to` is there complete or not at all.
  /// Failure: something at `to` already, or a copy that could not be made whole; then nothing stays behind.
  [[nodiscard]] virtual std::error_code copy(const std::string& from, const std::string& to) = 0;
  /// Removes a file, a link (never what it leads to) or a folder with all it holds. What is mounted at the path or
  /// below it stays, with the folders above it. Nothing there is no error. The first error is answered; the rest goes
  /// on.
  [[nodiscard]] virtual std::error_code remove(const std::string& path) = 0;
};

}  // namespace zelvo::platform
