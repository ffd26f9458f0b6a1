#include "platform/linux/memory_view.h"

#include <gtest/gtest.h>

#include "tests/support/temp_folder.h"

namespace zelvo::platform::linux_ {
namespace {

class MemoryView : public testing::Test {
 protected:
  MemoryView() { put("/proc/meminfo", "MemTotal:  9000 kB\nMemAvailable:     4000 kB\n"); }
  void put(const std::string& path, const std::string& content) { tests::writeFile(folder_.path() + path, content); }
  [[nodiscard]] std::optional<std::uint64_t> available() const { return LinuxMemoryView(folder_.path()).available(); }

 private:
  const tests::TempFolder folder_;
};

TEST_F(MemoryView, IsWhatTheSystemHasWithoutGroups) { EXPECT_EQ(available(), 4000U * 1024); }

TEST_F(MemoryView, UnknownIsNothing) { EXPECT_FALSE(LinuxMemoryView("/nowhere/at/all").available()); }

TEST_F(MemoryView, GroupsAboveThisOneCountToo) {
  put("/proc/self/cgroup", "0::/outer/inner\n");
  put("/sys/fs/cgroup/outer/memory.max", "1000000\n");
  put("/sys/fs/cgroup/outer/memory.current", "400000\n");
  put("/sys/fs/cgroup/outer/inner/memory.max", "max\n");
  put("/sys/fs/cgroup/outer/inner/memory.current", "1\n");
  EXPECT_EQ(available(), 600000U);
}

TEST_F(MemoryView, FilesThatWereReadDoNotCountAsUsed) {
  put("/proc/self/cgroup", "0::/one\n");
  put("/sys/fs/cgroup/one/memory.max", "1000000\n");
  put("/sys/fs/cgroup/one/memory.current", "900000\n");
  put("/sys/fs/cgroup/one/memory.stat", "anon 1\ninactive_file 500000\n");
  EXPECT_EQ(available(), 600000U);
}

TEST_F(MemoryView, FirstVersionOfGroupsIsKnown) {
  put("/proc/self/cgroup", "5:cpu:/other\n4:memory,x:/job/\n");
  put("/sys/fs/cgroup/memory/job/memory.limit_in_bytes", "300\n");
  put("/sys/fs/cgroup/memory/job/memory.usage_in_bytes", "500\n");
  EXPECT_EQ(available(), 0U);
}

TEST_F(MemoryView, ALimitAboveWhatTheSystemHasChangesNothing) {
  put("/proc/self/cgroup", "0::/\nnonsense\n:\n");
  put("/sys/fs/cgroup/memory.max", "99999999999\n");
  put("/sys/fs/cgroup/memory.current", "0\n");
  EXPECT_EQ(available(), 4000U * 1024);
}

}  // namespace
}  // namespace zelvo::platform::linux_
