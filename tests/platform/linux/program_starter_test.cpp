#include "platform/linux/program_starter.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "tests/support/temp_folder.h"

namespace zelvo::tests {
namespace {

class ProgramStarterTest : public testing::Test {
 protected:
  [[nodiscard]] std::string program(const std::string& script) const {
    const std::string path = folder.put("program", "#!/bin/sh\n" + script + "\n");
    EXPECT_EQ(::chmod(path.c_str(), 0700), 0);
    return path;
  }
  /// Waits for the end; false when it does not come.
  [[nodiscard]] static bool ends(const platform::StartedProgram& started) {
    constexpr int kLongestMilliseconds = 20000;
    pollfd wait{.fd = started.descriptor(), .events = POLLIN, .revents = 0};
    return ::poll(&wait, 1, kLongestMilliseconds) == 1;
  }

  TempFolder folder;
  platform::linux_::LinuxProgramStarter starter;
};

TEST_F(ProgramStarterTest, StatusTellsAFailure) {
  for (const int status : {0, 3}) {
    const auto started = starter.start(program("exit " + std::to_string(status)), "");
    ASSERT_NE(started, nullptr);
    ASSERT_TRUE(ends(*started));
    EXPECT_EQ(started->hasFailed(), status != 0);
  }
}

TEST_F(ProgramStarterTest, RunningProgramHasNotFailed) {
  const auto started = starter.start(program("exec sleep 1"), "");
  ASSERT_NE(started, nullptr);
  EXPECT_FALSE(started->hasFailed());
  ASSERT_TRUE(ends(*started));
  EXPECT_FALSE(started->hasFailed());
}

TEST_F(ProgramStarterTest, MissingProgramIsNotStarted) { EXPECT_EQ(starter.start(folder.path("gone"), ""), nullptr); }

TEST_F(ProgramStarterTest, ArgumentIsOneWhateverItHolds) {
  const auto started =
      starter.start(program("printf '%s|' \"$#\" \"$1\" > '" + folder.path("told") + "'"), "a b; $(c)");
  ASSERT_NE(started, nullptr);
  ASSERT_TRUE(ends(*started));
  EXPECT_EQ(folder.content("told"), "1|a b; $(c)|");
}

/// It has a session of its own, streams that lead nowhere, and no other descriptor; signals are as at a login.
TEST_F(ProgramStarterTest, NothingOfOursIsHandedOn) {
  const int open = ::fcntl(::open("/dev/null", O_RDONLY | O_CLOEXEC), F_DUPFD, 100);  // without O_CLOEXEC
  ASSERT_GE(open, 100);
  const auto ignoredBefore = std::signal(SIGPIPE, SIG_IGN);
  const auto started = starter.start(
      program("{ readlink /proc/$$/fd/0; readlink /proc/$$/fd/2; [ -e /proc/$$/fd/" + std::to_string(open) +
              " ] && echo open; read -r pid name state parent group session rest < /proc/$$/stat\n"
              "[ $session = $$ ] && echo session; grep -c 'SigIgn:.*0000$' /proc/$$/status; pwd; } > '" +
              folder.path("told") + "'"),
      "");
  std::signal(SIGPIPE, ignoredBefore);
  ::close(open);
  ASSERT_NE(started, nullptr);
  ASSERT_TRUE(ends(*started));
  EXPECT_EQ(folder.content("told"),
            "/dev/null\n/dev/null\nsession\n1\n" + std::filesystem::current_path().string() + "\n");
}

}  // namespace
}  // namespace zelvo::tests
