// The program on a pretended machine: what it prints, and how it ends, where the system's own tables are missing, empty
// or full.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>

#include "platform/linux/property_lists.h"
#include "tests/platform/linux/mock_machine.h"
#include "tests/support/recorded_system.h"

namespace zelvo::tests {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class DrivesOnAMachine : public MockMachine {
 protected:
  struct Ran {
    int status = -1;
    std::string output;
    std::string errors;
  };

  DrivesOnAMachine() {
    // Only the program is to see the pretended machine, and no shell to run with what a sanitizer loads.
    static_cast<void>(preload());
    ::unsetenv("LD_PRELOAD");
    mountTable({});
  }

  /// What this program was started with.
  [[nodiscard]] static const std::string& preload() {
    static const std::string loaded = std::getenv("LD_PRELOAD") ? std::getenv("LD_PRELOAD") : "";
    return loaded;
  }

  /// Where the pretended system is.
  [[nodiscard]] std::filesystem::path root() const {
    gchar* const path = umockdev_testbed_get_root_dir(testbed_);
    const std::filesystem::path root(path);
    g_free(path);
    return root;
  }
  /// The table that the program reads; as `mount`.
  void mountTable(const std::vector<std::string>& lines) {
    std::filesystem::create_directories(root() / "proc/self");
    places_.mountTable = (root() / "proc/self/mountinfo").string();
    mount(lines);
  }
  [[nodiscard]] std::string contentOf(const std::string& name) const {
    std::ifstream file(folder_ / name);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
  }
  [[nodiscard]] Ran run(const std::string& arguments) const {
    const std::string command = "LD_PRELOAD='" + preload() + "' ASAN_OPTIONS=detect_leaks=0 " + ZELVO_PROGRAM + " " +
                                arguments + " >'" + (folder_ / "out").string() + "' 2>'" +
                                (folder_ / "errors").string() + "'";
    return {std::system(command.c_str()) / 256, contentOf("out"), contentOf("errors")};
  }
  /// How the schema's checker ends. It is no part of the pretended machine.
  [[nodiscard]] int fitsTheSchema(const std::string& json) const {
    std::ofstream(folder_ / "json") << json;
    const std::string command = "env -u UMOCKDEV_DIR python3 -m jsonschema -i '" + (folder_ / "json").string() +
                                "' " ZELVO_DRIVES_SCHEMA " >/dev/null 2>&1";
    return std::system(command.c_str());
  }
};

TEST_F(DrivesOnAMachine, WithoutAListOfDevicesThereIsASentenceAndAnError) {
  std::filesystem::remove_all(root() / "sys");
  const Ran ran = run("drives");
  EXPECT_EQ(ran.status, 3);
  EXPECT_THAT(ran.errors, HasSubstr("the system's disks could not be listed (status 0xe00002bc); is /sys mounted?\n"));
}

TEST_F(DrivesOnAMachine, EmptyListOfDevicesIsNoError) {
  std::filesystem::create_directories(root() / "sys/class/block");
  const Ran ran = run("drives");
  EXPECT_EQ(ran.status, 0) << ran.errors;
  EXPECT_EQ(ran.output, "No writable disks were found.\n");
  EXPECT_EQ(ran.errors, "");
}

TEST_F(DrivesOnAMachine, WithoutAMountTableThereIsASentenceAndAnErrorAndTheDisksAreShown) {
  plug("sata");
  std::filesystem::remove(places_.mountTable);
  std::filesystem::create_directory(places_.mountTable);  // or the program would see the real one
  const Ran ran = run("drives");
  EXPECT_EQ(ran.status, 3);
  EXPECT_THAT(ran.errors, HasSubstr("the mounted volumes could not be listed: "));
  EXPECT_THAT(ran.output, HasSubstr("/dev/sda "));
}

TEST_F(DrivesOnAMachine, RecordWithoutAMountTableEndsWithAnErrorAndSaysWhy) {
  plug("sata");
  std::filesystem::remove(places_.mountTable);
  std::filesystem::create_directory(places_.mountTable);
  const Ran ran = run("drives --record -");
  EXPECT_EQ(ran.status, 3);
  EXPECT_THAT(ran.errors, HasSubstr("the mounted volumes could not be listed: "));
  EXPECT_THAT(ran.output, HasSubstr("<key>Volumes Error</key>"));
}

TEST_F(DrivesOnAMachine, RecordWithoutAListOfDevicesEndsWithAnError) {
  std::filesystem::remove_all(root() / "sys");
  const Ran ran = run("drives --record '" + (folder_ / "record").string() + "'");
  EXPECT_EQ(ran.status, 3);
  EXPECT_THAT(ran.errors, HasSubstr("the system's disks could not be listed"));
  EXPECT_THAT(contentOf("record"), HasSubstr("<key>Status</key>"));
}

TEST_F(DrivesOnAMachine, RecordIsVerboseWhenAskedTo) {
  plug("sata");
  EXPECT_EQ(run("drives --record -").errors, "");
  const Ran ran = run("drives --record - --verbose");
  EXPECT_EQ(ran.status, 0);
  EXPECT_THAT(ran.errors, HasSubstr("properties:\n****"));
  EXPECT_THAT(ran.output, HasSubstr("<plist"));
  EXPECT_THAT(ran.output, Not(HasSubstr("properties:\n")));
}

TEST_F(DrivesOnAMachine, RecordOfTheMachineGivesItsInventory) {
  plug("sata");
  plug("card_whole");
  mountTable({"8:2 / / ro - ext4 /dev/sda2 ro", "179:0 / " + folder_.string() + " rw - vfat /dev/mmcblk0 rw"});
  const Ran ran = run("drives --record -");
  ASSERT_EQ(ran.status, 0) << ran.errors;
  platform::linux_::LinuxPropertyLists lists;
  const auto tree = lists.parse(std::as_bytes(std::span(ran.output)), ran.output.size());
  ASSERT_TRUE(tree.has_value());
  RecordedSystem recorded(*tree);
  Arrays again;
  platform::NoPrintSink nowhere;
  storage::initialDriveList(recorded, recorded, again.media, again.volumes, nowhere);
  const Arrays arrays = inventory();
  EXPECT_EQ(again.media, arrays.media);
  EXPECT_EQ(again.volumes, arrays.volumes);
  EXPECT_GT(recorded.space(folder_.string()).capacity, 0U);
  EXPECT_TRUE(recorded.mountFacts("/").readOnly);
}

TEST_F(DrivesOnAMachine, JsonFitsItsSchemaWhichAllowsNothingElse) {
  for (const char* hardware : {"sata", "stick", "card_whole", "nvme", "mapper", "loop"}) plug(hardware);
  mountTable({"8:2 / / ro - ext4 /dev/sda2 ro", "8:3 / " + folder_.string() + "/none rw - hfsplus /dev/sda3 rw",
              "179:0 / " + folder_.string() + " rw - vfat /dev/mmcblk0 rw", "0:42 / /tmp rw - zfs tank/data rw",
              "8:17 / /mnt/\xFF rw - vfat /dev/sdb1 rw"});
  const Ran ran = run("drives --json");
  ASSERT_EQ(ran.status, 0) << ran.errors;
  EXPECT_EQ(fitsTheSchema(ran.output), 0) << ran.output;
  const auto with = [&ran](const std::string& from, const std::string& to) {
    std::string changed = ran.output;
    const std::size_t at = changed.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return changed.replace(at, from.size(), to);
  };
  EXPECT_NE(fitsTheSchema(with("\"read only\":true", "\"read onely\":true")), 0);
  EXPECT_NE(fitsTheSchema(with("\"read only\":true,", "")), 0);
  EXPECT_NE(fitsTheSchema(with("\"connection\":\"SATA\"", "\"connection\":\"SATA\",\"more\":1")), 0);
  EXPECT_NE(fitsTheSchema(with("\"connection\":\"SATA\"", "\"connection\":\"rope\"")), 0);
  EXPECT_NE(fitsTheSchema(with("\"version\":1", "\"version\":1,\"more\":1")), 0);
}

TEST_F(DrivesOnAMachine, MountPointThatIsNotUtf8KeepsItsRow) {
  plug("stick");
  mountTable({"8:17 / /mnt/a\xFF rw - vfat /dev/sdb1 rw"});
  EXPECT_THAT(run("drives").output, ::testing::ContainsRegex("\n  /dev/sdb1 .* /mnt/a"));
  const std::string json = run("drives --json").output;
  EXPECT_THAT(json, HasSubstr(R"("Mounted Path":"/mnt/a)"
                              "\xEF\xBF\xBD"
                              R"(","native node":"/dev/sdb1","path_hex":"2f6d6e742f61ff")"));
  EXPECT_THAT(run("drives --record -").output, HasSubstr("<string>2f6d6e742f61ff</string>"));
}

}  // namespace
}  // namespace zelvo::tests
