#include "platform/paths.h"

#include <gtest/gtest.h>

namespace zelvo::tests {
namespace {

using platform::folderOf;
using platform::nameOf;
using platform::pathIn;

TEST(FolderOf, PathWithoutAFolderLiesHere) {
  EXPECT_EQ(folderOf("a"), ".");
  EXPECT_EQ(folderOf(""), ".");
  EXPECT_EQ(folderOf("/a"), "/");
  EXPECT_EQ(folderOf("//a"), "/");
  EXPECT_EQ(folderOf("a/b"), "a");
  EXPECT_EQ(folderOf("/a//b"), "/a");
  EXPECT_EQ(folderOf("a/b/"), "a");
  EXPECT_EQ(folderOf("a/"), ".");
}

TEST(FolderOf, RootIsItsOwn) {
  EXPECT_EQ(folderOf("/"), "/");
  EXPECT_EQ(folderOf("///"), "/");
}

TEST(NameOf, IsTheLastPart) {
  EXPECT_EQ(nameOf("/a/b"), "b");
  EXPECT_EQ(nameOf("/a/b//"), "b");
  EXPECT_EQ(nameOf("b"), "b");
  EXPECT_EQ(nameOf("/"), "");
  EXPECT_EQ(nameOf(""), "");
}

TEST(PathIn, HasOneSlashBetween) {
  EXPECT_EQ(pathIn("a", "b"), "a/b");
  EXPECT_EQ(pathIn("a/", "b"), "a/b");
  EXPECT_EQ(pathIn("/", "b"), "/b");
}

}  // namespace
}  // namespace zelvo::tests
