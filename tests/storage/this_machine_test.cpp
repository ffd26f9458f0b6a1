// The snapshot of the machine that runs the tests, against what the kernel's own tables say, read here by other means;
// and the program on this machine.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "platform/headless/path_probe.h"
#include "platform/linux/storage.h"

namespace zelvo::tests {
namespace {

namespace fs = std::filesystem;
using platform::linux_::LinuxStorageSnapshot;
using ::testing::HasSubstr;

/// A temporary folder that goes with its holder.
class OwnFolder {
 public:
  OwnFolder() {
    std::string pattern = (fs::temp_directory_path() / "zelvo-drives-XXXXXX").string();
    if (!::mkdtemp(pattern.data())) throw std::runtime_error("no temporary folder");
    folder_ = pattern;
  }
  OwnFolder(const OwnFolder&) = delete;
  OwnFolder& operator=(const OwnFolder&) = delete;
  ~OwnFolder() { fs::remove_all(folder_); }
  [[nodiscard]] const fs::path& path() const { return folder_; }

 private:
  fs::path folder_;
};

std::string contentOf(const fs::path& path) {
  std::ifstream file(path);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

std::string firstLine(const fs::path& path) {
  const std::string text = contentOf(path);
  return text.substr(0, text.find('\n'));
}

/// Node and writability of each medium.
std::map<std::string, bool> mediaOf(LinuxStorageSnapshot& system) {
  std::map<std::string, bool> nodes;
  const auto all = system.serviceMatching("IOMedia");
  std::unique_ptr<platform::RegistryIterator> media;
  EXPECT_EQ(system.matchingServices(&*all, media), 0U);
  while (const auto medium = media ? media->next() : nullptr) {
    const auto node = system.nativeNode(*medium->properties().text("BSD Name"));
    EXPECT_TRUE(node.has_value());
    nodes[node.value_or("")] = medium->properties().isTrue("Writable");
  }
  return nodes;
}

/// Node and writability of each whole disk, as the kernel lists them.
std::map<std::string, bool> disksOfSysBlock() {
  std::map<std::string, bool> expected;
  for (const auto& entry : fs::directory_iterator("/sys/block")) {
    const std::string name = entry.path().filename();
    if (name.starts_with("ram") || name.starts_with("zram") || name.starts_with("sr")) continue;
    if (firstLine(entry.path() / "size") == "0" || firstLine(entry.path() / "hidden") == "1") continue;
    const std::string uevent = contentOf(entry.path() / "uevent");
    const std::size_t at = uevent.find("DEVNAME=") + 8;
    expected["/dev/" + uevent.substr(at, uevent.find('\n', at) - at)] = firstLine(entry.path() / "ro") == "0";
  }
  return expected;
}

TEST(ThisMachine, WholeDisksAreThoseOfSysBlock) {
  platform::headless::HeadlessPathProbe probe;
  // A disk may come or go meanwhile: what counts is a look between two listings that agree.
  constexpr int kTries = 20;
  std::map<std::string, bool> expected;
  std::map<std::string, bool> found;
  bool steady = false;
  for (int tries = 0; tries < kTries && !steady; ++tries) {
    expected = disksOfSysBlock();
    LinuxStorageSnapshot system(probe);
    found = mediaOf(system);
    steady = disksOfSysBlock() == expected;
  }
  ASSERT_TRUE(steady) << "disks come and go all the time";
  for (const auto& [node, writable] : expected) {
    ASSERT_TRUE(found.contains(node)) << node;
    EXPECT_EQ(found.at(node), writable) << node;
  }
}

TEST(ThisMachine, VolumesOnBlockDevicesAreThoseOfTheMountTable) {
  const OwnFolder folder;
  struct Line {
    std::string number, root;
  };
  std::map<std::string, Line> last;  // by mount point; a later line covers an earlier one
  const std::string content = contentOf("/proc/self/mountinfo");
  const fs::path copy = folder.path() / "mountinfo";  // read once, looked at by both
  std::ofstream(copy) << content;
  std::istringstream table(content);
  for (std::string line; std::getline(table, line);) {
    std::istringstream fields(line);
    std::string id, parent, number, root, target;
    fields >> id >> parent >> number >> root >> target;
    last[target] = {number, root};
  }
  platform::headless::HeadlessPathProbe probe;
  LinuxStorageSnapshot system(probe, {.mountTable = copy.string()});
  const auto paths = system.mountedLocalVolumePaths();
  EXPECT_FALSE(system.mountTableError());
  for (const auto& [target, line] : last) {
    if (line.number.starts_with("0:") || line.root != "/" || target.find('\\') != std::string::npos) continue;
    EXPECT_THAT(paths, ::testing::Contains(target));
    const std::string uevent = contentOf("/sys/dev/block/" + line.number + "/uevent");
    const std::size_t at = uevent.find("DEVNAME=");
    if (at == std::string::npos) continue;
    const std::string node = "/dev/" + uevent.substr(at + 8, uevent.find('\n', at) - at - 8);
    const std::string from = system.mountedFromName(target).name;
    EXPECT_EQ(system.nativeNode(from.substr(std::string("/dev/").size())).value_or(from), node);
  }
  for (const std::string& path : paths) {
    if (path.find_first_of(" \t\n\\") == std::string::npos) {
      EXPECT_TRUE(last.contains(path)) << path;
    }
  }
}

struct Ran {
  int status = -1;
  std::string output;
};

/// Runs the program with its errors among its output.
Ran run(const std::string& arguments) {
  Ran ran;
  std::FILE* pipe = ::popen((std::string(ZELVO_PROGRAM) + " " + arguments + " 2>&1").c_str(), "r");
  if (!pipe) return ran;
  std::array<char, 4096> buffer{};
  while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), pipe)) {
    ran.output.append(buffer.data(), count);
  }
  ran.status = ::pclose(pipe) / 256;
  return ran;
}

class DrivesProgram : public ::testing::Test {
 protected:
  OwnFolder own_;
  const fs::path folder_ = own_.path();
};

TEST_F(DrivesProgram, RecordDoesNotReplaceAFile) {
  const fs::path file = folder_ / "kept";
  std::ofstream(file) << "mine";
  const Ran ran = run("drives --record " + file.string());
  EXPECT_EQ(ran.status, 3);
  EXPECT_THAT(ran.output, HasSubstr("exists already and was left as it is; name another file."));
  EXPECT_EQ(contentOf(file), "mine");
  EXPECT_EQ(std::distance(fs::directory_iterator(folder_), {}), 1);
}

TEST_F(DrivesProgram, RecordIntoAMissingFolderIsAnError) {
  const Ran ran = run("drives --record " + (folder_ / "none" / "file").string());
  EXPECT_EQ(ran.status, 3);
  EXPECT_THAT(ran.output, HasSubstr("could not be written: No such file or directory."));
}

TEST_F(DrivesProgram, JsonAndTreeTogetherAreWrongUse) { EXPECT_EQ(run("drives --json --tree").status, 2); }

TEST_F(DrivesProgram, RecordAndJsonTogetherAreWrongUse) {
  EXPECT_EQ(run("drives --json --record " + (folder_ / "x").string()).status, 2);
  EXPECT_FALSE(fs::exists(folder_ / "x"));
}

TEST_F(DrivesProgram, JsonFitsItsSchema) {
  const Ran ran = run("drives --json");
  EXPECT_EQ(ran.status, 0);
  const fs::path file = folder_ / "drives.json";
  std::ofstream(file) << ran.output;
  const std::string check = "python3 -m jsonschema -i " + file.string() + " " + ZELVO_DRIVES_SCHEMA + " 2>&1";
  EXPECT_EQ(std::system(check.c_str()), 0);
}

}  // namespace
}  // namespace zelvo::tests
