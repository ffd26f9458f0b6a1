/// All inputs of one command, so that no output of it takes the place of any of them.
/// Decision: command-line, No output is any input
#pragma once

#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/file_manager.h"

namespace zelvo::cli {

/// Remembers what the inputs were when the command began; an input may be missing, or become another file since.
/// Thread: main.
class CommandInputs {
 public:
  CommandInputs(const std::vector<std::string>& paths, platform::FileManager& fileManager);

  /// The input that a file put at `output` would replace: the same path, the same place in the same folder, or the same
  /// file through a link or under another name. Nothing when there is none.
  [[nodiscard]] std::optional<std::string> at(const std::string& output) const;

  /// `at(output)` as a sentence about `input`, whose output that would be. Its own name is left to the rules of a
  /// single output, so nothing is answered for it.
  [[nodiscard]] std::optional<std::string> refusal(const std::string& input, const std::string& output) const;

 private:
  /// A name in a folder, whether something bears it or not.
  struct Place {
    std::optional<platform::FileAttributes> folder;
    std::string name;
  };
  [[nodiscard]] Place placeOf(const std::string& path) const;
  void know(std::string key, std::size_t input) { known_.try_emplace(std::move(key), input); }
  [[nodiscard]] static std::string fileKey(const platform::FileAttributes& file);

  platform::FileManager& fileManager_;
  std::vector<std::string> paths_;
  /// The first input of each path, file and place.
  std::unordered_map<std::string, std::size_t> known_;
};

}  // namespace zelvo::cli
