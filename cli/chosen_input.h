/// A file that the user named as input: looked at, opened for reading, never written to. Sizes are in bytes.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>

#include "platform/file_manager.h"
#include "platform/files.h"

namespace zelvo::cli {

struct ChosenInput {
  std::string path;
  platform::FileAttributes attributes;  ///< of what the path leads to
  std::shared_ptr<platform::ReadableFile> file;
};

/// Whether the first byte of an input is tried. Of a failing disk it is not: the rest may be there, and a stop would
/// have to wait for a read that hangs.
enum class FirstByte { tried, left };

/// Follows links and opens the file. What is not a regular file, or cannot be read, is answered as a sentence for the
/// user instead.
[[nodiscard]] std::variant<ChosenInput, std::string> chooseInput(const std::string& path, platform::Files& files,
                                                                 platform::FileManager& fileManager,
                                                                 FirstByte firstByte = FirstByte::tried);

/// A sentence when the file is shorter by now than when it was chosen, so that nothing of it can be trusted.
[[nodiscard]] std::optional<std::string> becameShorter(const ChosenInput& input);

}  // namespace zelvo::cli
