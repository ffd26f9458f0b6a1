#include "platform/same_file.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/linux/file_manager.h"
#include "tests/support/temp_folder.h"

namespace zelvo::tests {
namespace {

namespace fs = std::filesystem;
using platform::areOneFile;
using platform::FileAttributes;

TEST(SameFile, NumbersAreThoseOfADevice) {
  const FileAttributes file{.device = 1, .identity = 7};
  EXPECT_TRUE(areOneFile(file, FileAttributes{.size = 5, .device = 1, .identity = 7}));
  EXPECT_FALSE(areOneFile(file, FileAttributes{.device = 2, .identity = 7}));
  EXPECT_FALSE(areOneFile(file, FileAttributes{.device = 1, .identity = 8}));
}

TEST(SameFile, WhatCannotBeLookedAtIsNoFile) {
  EXPECT_FALSE(areOneFile(std::nullopt, FileAttributes{}));
  EXPECT_FALSE(areOneFile(FileAttributes{}, std::nullopt));
  EXPECT_FALSE(areOneFile(std::nullopt, std::nullopt));
}

TEST(SameFile, PathsAreFollowed) {
  const TempFolder folder;
  platform::linux_::LinuxFileManager manager;
  const std::string file = folder.put("a", "x");
  const std::string other = folder.put("b", "x");
  fs::create_hard_link(file, folder.path("hard"));
  fs::create_symlink("a", folder.path("link"));
  fs::create_symlink("nowhere", folder.path("dangling"));

  EXPECT_TRUE(areOneFile(manager, file, file));
  EXPECT_TRUE(areOneFile(manager, file, folder.path("hard")));
  EXPECT_TRUE(areOneFile(manager, folder.path("link"), file));
  EXPECT_FALSE(areOneFile(manager, file, other));
  EXPECT_FALSE(areOneFile(manager, folder.path("dangling"), folder.path("dangling")));
  EXPECT_FALSE(areOneFile(manager, file, std::nullopt));
}

}  // namespace
}  // namespace zelvo::tests
