/// A machine with pieces of hardware that umockdev pretends to have (see make_devices.py), and a mount table of its
/// own. The program is started with umockdev's library before all others.
#pragma once

#include <gtest/gtest.h>
#include <umockdev.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/headless/path_probe.h"
#include "platform/linux/storage.h"
#include "storage/drive_inventory.h"

namespace zelvo::tests {

class MockMachine : public ::testing::Test {
 protected:
  MockMachine() : testbed_(umockdev_testbed_new()) {
    // Asked after the first testbed: before it the answer is no. Without the pretended system the tests would look at
    // the real one, so that is a failure.
    if (!umockdev_in_mock_environment()) throw std::runtime_error("start this program through umockdev");
    std::string pattern = (std::filesystem::temp_directory_path() / "zelvo-storage-XXXXXX").string();
    if (!::mkdtemp(pattern.data())) throw std::runtime_error("no temporary folder");
    folder_ = pattern;
    places_.mountTable = (folder_ / "mountinfo").string();
    places_.volumesFolder = (folder_ / "Volumes").string();
    mount({});
  }
  ~MockMachine() override {
    g_object_unref(testbed_);
    std::filesystem::remove_all(folder_);
  }

  void plug(const std::string& hardware) {
    std::ifstream file(std::string(ZELVO_MOCK_DEVICES) + "/" + hardware + ".umockdev");
    std::ostringstream text;
    text << file.rdbuf();
    GError* error = nullptr;
    ASSERT_TRUE(umockdev_testbed_add_from_string(testbed_, text.str().c_str(), &error)) << error->message;
  }

  /// Lines of a mount table without their first two numbers: "179:0 / /mnt/card rw - ext4 /dev/mmcblk0 rw".
  void mount(const std::vector<std::string>& lines) {
    std::ofstream file(places_.mountTable);
    file << "20 1 0:5 / /proc rw - proc proc rw\n";
    int number = 30;
    for (const std::string& line : lines) file << number++ << " 1 " << line << "\n";
  }

  [[nodiscard]] platform::linux_::LinuxStorageSnapshot snapshot() const {
    return platform::linux_::LinuxStorageSnapshot(probe_, places_);
  }

  struct Arrays {
    storage::Entries media;
    storage::Entries volumes;
    /// The device (or the volume) of that name; empty when there is none.
    [[nodiscard]] storage::Entry at(const std::string& bsdName, bool volume = false) const {
      for (const storage::Entry& entry : media) {
        const std::string* path = entry.text("device path");
        if (path && *path == "/dev/r" + bsdName && entry.contains("WhetherVolume") == volume) return entry;
      }
      return {};
    }
  };

  [[nodiscard]] Arrays inventory() const {
    platform::linux_::LinuxStorageSnapshot system = snapshot();
    Arrays arrays;
    platform::NoPrintSink nowhere;
    storage::initialDriveList(system, system, arrays.media, arrays.volumes, nowhere);
    return arrays;
  }

  /// "disk0=/dev/sda" for each medium, writable or not.
  [[nodiscard]] std::vector<std::string> names() const {
    platform::linux_::LinuxStorageSnapshot system = snapshot();
    std::unique_ptr<platform::RegistryIterator> media;
    const auto all = system.serviceMatching("IOMedia");
    EXPECT_EQ(system.matchingServices(&*all, media), 0U);
    std::vector<std::string> found;
    while (const auto medium = media->next()) {
      const std::string name = *medium->properties().text("BSD Name");
      found.push_back(name + "=" + system.nativeNode(name).value_or("?"));
    }
    return found;
  }

  [[nodiscard]] std::string devicePath(const std::string& end) const { return "/sys/devices/" + end; }

  UMockdevTestbed* testbed_;
  std::filesystem::path folder_;
  platform::linux_::StoragePlaces places_;
  mutable platform::headless::HeadlessPathProbe probe_;
};

}  // namespace zelvo::tests
