// The program where the system gives it no thread or little memory: it always ends with a code and a sentence.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/cli/program.h"
#include "tests/support/small_avi.h"
#include "tests/support/temp_folder.h"

namespace zelvo::tests {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

class Shortage : public testing::Test {
 protected:
  void SetUp() override { writeFile(input_, SmallAvi{}.bytes()); }

  const TempFolder folder_;
  const std::string input_ = folder_ / "in.avi";
};

TEST_F(Shortage, WithoutASecondThreadEveryCommandAnswersThree) {
  fs::permissions(folder_.path(), fs::perms::all);
  std::vector<std::string> limited{"prlimit", "--nproc=1"};
  // The limit does not hold for root.
  if (run({"id", "-u"}).out == "0\n") {
    limited.insert(limited.begin(), {"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"});
  }
  std::vector<std::string> version = limited;
  version.insert(version.end(), {ZELVO_AVI, "--version"});
  if (run(version).exit != 0) GTEST_SKIP() << "another user may not run the program where it was built";

  for (const char* command : {"repair", "check"}) {
    std::vector<std::string> line = limited;
    line.insert(line.end(), {ZELVO_AVI, command, input_});
    const Ended ended = run(line);

    EXPECT_EQ(ended.exit, 3) << command << ": " << ended.err;
    EXPECT_THAT(ended.err, HasSubstr("the system gives no thread"));
  }
  EXPECT_EQ(folder_.names(), std::vector<std::string>{"in.avi"});
}

TEST_F(Shortage, HoweverLittleMemoryThereIsItEndsWithACode) {
  const auto limitedTo = [](std::uint64_t bytes, std::vector<std::string> command) {
    command.insert(command.begin(), {"prlimit", "--as=" + std::to_string(bytes)});
    return run(command);
  };
  if (limitedTo(1000000000, zelvoAvi({"--version"})).exit != 0) GTEST_SKIP() << "this build needs far more room";
  bool done = false;
  bool refused = false;
  for (std::uint64_t megabytes = 24; megabytes < 400; megabytes += megabytes < 120 ? 4 : 40) {
    const Ended ended = limitedTo(megabytes << 20U, zelvoAvi({"repair", "--force", input_}));
    if (ended.exit == 127 || ended.err.find("error while loading") != std::string::npos) continue;

    SCOPED_TRACE(std::to_string(megabytes) + " MiB: " + ended.err);
    EXPECT_EQ(ended.signal, 0);
    EXPECT_TRUE(ended.exit == 0 || ended.exit == 3) << ended.exit;
    if (ended.exit == 3) {
      EXPECT_TRUE(ended.err.find("memory") != std::string::npos || ended.err.find("thread") != std::string::npos);
      EXPECT_EQ(folder_.names(), std::vector<std::string>{"in.avi"});
      refused = true;
    } else {
      done = true;
    }
    fs::remove(folder_ / "in-repaired.avi");
  }
  EXPECT_TRUE(done);
  EXPECT_TRUE(refused);
}

}  // namespace
}  // namespace zelvo::tests
