/// Paths that stand in a file or come from standard input, one after the other.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace zelvo::cli {

/// Splits a text as it comes in. Paths are bytes as they are; empty ones count for nothing.
class InputList {
 public:
  /// `separator` ends each path.
  explicit InputList(char separator) : separator_(separator) {}
  /// False when the text cannot be a list: a path is longer than any file system keeps, holds a zero byte between
  /// lines, or there are more than a batch takes.
  [[nodiscard]] bool add(std::string_view text);
  /// The last one may lack its end.
  [[nodiscard]] bool finish();
  [[nodiscard]] std::vector<std::string> take() { return std::move(paths_); }
  /// How many were there when something went wrong, that one included.
  [[nodiscard]] std::size_t lines() const { return lines_; }

 private:
  [[nodiscard]] bool keep();
  const char separator_;
  std::string open_;
  std::size_t lines_ = 0;
  std::vector<std::string> paths_;
};

/// Reads the list at `path`, or standard input for "-". A sentence when it cannot be read, or is no list.
/// Thread: main.
[[nodiscard]] std::variant<std::vector<std::string>, std::string> readInputList(const std::string& path,
                                                                                char separator);

}  // namespace zelvo::cli
