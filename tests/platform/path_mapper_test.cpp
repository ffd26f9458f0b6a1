#include "platform/path_mapper.h"

#include <gtest/gtest.h>

namespace zelvo::tests {
namespace {

using platform::FixedPath;
using platform::FixedUrl;
using platform::PathMapper;

TEST(PathMapper, WithoutAPrefixEverythingStays) {
  const PathMapper mapper;
  EXPECT_EQ(mapper.mapped(FixedPath("/Applications/MPlayerX.app")), "/Applications/MPlayerX.app");
  EXPECT_EQ(mapper.mapped(FixedUrl("file:///Applications/A%20B/index.html")), "file:///Applications/A%20B/index.html");
}

TEST(PathMapper, MapsBelowThePrefix) {
  const PathMapper mapper("/opt");
  EXPECT_EQ(mapper.mapped(FixedPath("/Applications")), "/opt/zelvo/avi-repair/Applications");
  EXPECT_EQ(mapper.mapped(FixedPath("/Applications/MPlayerX.app")), "/opt/zelvo/avi-repair/Applications/MPlayerX.app");
}

TEST(PathMapper, ASlashAtThePrefixsEndChangesNothing) {
  EXPECT_EQ(PathMapper("/opt//").mapped(FixedPath("/Applications")), "/opt/zelvo/avi-repair/Applications");
  EXPECT_EQ(PathMapper("/").mapped(FixedPath("/Applications")), "/zelvo/avi-repair/Applications");
}

TEST(PathMapper, AnAddressGetsThePrefixEncoded) {
  const PathMapper mapper("/home/a user/100%");
  EXPECT_EQ(mapper.mapped(FixedUrl("file:///Applications/Zelvo%20AVI%20Repair/index.html")),
            "file:///home/a%20user/100%25/zelvo/avi-repair/Applications/Zelvo%20AVI%20Repair/index.html");
}

TEST(PathMapper, OnlyPathsBelowTheRootCanBeWritten) {
  EXPECT_TRUE(platform::fixed_path::liesBelowRoot("/Applications"));
  EXPECT_TRUE(platform::fixed_path::liesBelowRoot("/Applications/a"));
  EXPECT_FALSE(platform::fixed_path::liesBelowRoot("/Applications2/a"));
  EXPECT_FALSE(platform::fixed_path::liesBelowRoot("/home/user/film.avi"));
}

}  // namespace
}  // namespace zelvo::tests
