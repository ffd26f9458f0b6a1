#include "platform/linux/user.h"

#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <optional>
#include <string>

namespace zelvo::tests {
namespace {

using platform::linux_::cacheFolder;
using platform::linux_::configFolder;
using platform::linux_::homeDirectory;

/// A variable of the environment for the length of a test.
class Variable {
 public:
  Variable(const char* name, const char* value) : name_(name) {
    if (const char* const before = std::getenv(name)) before_ = before;
    if (value != nullptr) {
      ::setenv(name, value, 1);
    } else {
      ::unsetenv(name);
    }
  }
  ~Variable() {
    if (before_) {
      ::setenv(name_, before_->c_str(), 1);
    } else {
      ::unsetenv(name_);
    }
  }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

 private:
  const char* name_;
  std::optional<std::string> before_;
};

TEST(LinuxUser, HomeIsTakenWithoutASlashAtItsEnd) {
  const Variable home("HOME", "/home/anna/");
  EXPECT_EQ(homeDirectory(), "/home/anna");
}

TEST(LinuxUser, AHomeThatIsNoWholePathIsLookedUp) {
  const Variable home("HOME", "somewhere");
  EXPECT_TRUE(homeDirectory().starts_with('/'));
  EXPECT_FALSE(homeDirectory().ends_with("somewhere"));
}

TEST(LinuxUser, HomeWithoutAVariableIsTheListedOne) {
  const Variable home("HOME", nullptr);
  const passwd* const listed = ::getpwuid(::getuid());
  ASSERT_NE(listed, nullptr);
  EXPECT_EQ(homeDirectory(), listed->pw_dir);
}

TEST(LinuxUser, HomeMayBeTheRootOfAll) {
  const Variable cache("XDG_CACHE_HOME", nullptr);
  for (const char* root : {"/", "//"}) {
    const Variable home("HOME", root);
    EXPECT_EQ(homeDirectory(), "/");
    EXPECT_EQ(cacheFolder(), "/.cache");
  }
}

TEST(LinuxUser, CacheFolderIsTheGivenOneOrLiesInHome) {
  const Variable home("HOME", "/home/anna");
  {
    const Variable given("XDG_CACHE_HOME", "/var/cache/anna/");
    EXPECT_EQ(cacheFolder(), "/var/cache/anna");
  }
  {
    const Variable given("XDG_CACHE_HOME", "cache");
    EXPECT_EQ(cacheFolder(), "/home/anna/.cache");
  }
  const Variable given("XDG_CACHE_HOME", nullptr);
  EXPECT_EQ(cacheFolder(), "/home/anna/.cache");
}

TEST(LinuxUser, ConfigFolderIsTheGivenOneOrLiesInHome) {
  const Variable home("HOME", "/home/anna");
  {
    const Variable given("XDG_CONFIG_HOME", "/etc/anna/");
    EXPECT_EQ(configFolder(), "/etc/anna");
  }
  const Variable given("XDG_CONFIG_HOME", nullptr);
  EXPECT_EQ(configFolder(), "/home/anna/.config");
}

}  // namespace
}  // namespace zelvo::tests
