/// MD5 digests of data, files and web resources, as 32 lower-case hexadecimal digits.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>

#include "platform/digest.h"
#include "platform/files.h"
#include "platform/web.h"

namespace zelvo::update {

/// Thread: any.
class Hashes {
 public:
  Hashes(platform::Digest& digest, platform::Files& files, platform::Web& web);

  /// `md5:` the digest of data; of none, nothing. Data of no bytes are hashed like any other.
  [[nodiscard]] std::optional<std::string> md5(std::optional<std::span<const std::byte>> data);
  /// `hashString:` the digest of a whole web resource when `text` begins with "http", else of the file at that path.
  /// Blocks for as long as bytes keep coming. Failure: nothing when not all of it could be read.
  [[nodiscard]] std::optional<std::string> hashString(const std::string& text);

 private:
  platform::Digest& digest_;
  platform::Files& files_;
  platform::Web& web_;
};

}  // namespace zelvo::update
