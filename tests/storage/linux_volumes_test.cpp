#include "platform/linux/linux_storage_mounts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/storage/mock_machine.h"

namespace zelvo::tests {
namespace {

using platform::linux_::LinuxStorageSnapshot;
using ::testing::ElementsAre;

class LinuxVolumes : public MockMachine {
 protected:
  /// "MOUNT POINT from NAME" for each volume.
  [[nodiscard]] std::vector<std::string> volumes() const {
    LinuxStorageSnapshot system = snapshot();
    std::vector<std::string> found;
    for (const std::string& path : system.mountedLocalVolumePaths()) {
      found.push_back(path + " from " + system.mountedFromName(path).name);
    }
    return found;
  }
};

TEST_F(LinuxVolumes, MemoryNetworkAndViewsAreNone) {
  plug("sata");
  mount({"0:30 / /tmp rw - tmpfs tmpfs rw", "0:31 / /srv rw - nfs4 host:/export rw",
         "0:32 / /mnt/smb rw - cifs //host/share rw", "0:33 / /overlay rw - overlay overlay rw",
         "0:34 / /home/u/ssh rw - fuse.sshfs u@host: rw", "0:35 / /home/u/cloud rw - fuse.rclone cloud: rw",
         "0:36 / /ceph rw - ceph 1.2.3.4:/ rw", "8:2 / / rw - ext4 /dev/sda2 rw"});
  EXPECT_THAT(volumes(), ElementsAre("/ from /dev/disk0s2"));
}

TEST_F(LinuxVolumes, FileSystemInUserSpaceOnABlockDeviceIsOne) {
  plug("stick");
  mount({"8:17 / /media/ntfs rw - fuseblk /dev/sdb1 rw"});
  EXPECT_THAT(volumes(), ElementsAre("/media/ntfs from /dev/disk0s1"));
}

TEST_F(LinuxVolumes, BtrfsIsFoundByItsSourceAndItsSubVolumesCount) {
  plug("sata");
  mount({"0:40 /@ / rw - btrfs /dev/sda2 rw", "0:40 /@home /home rw - btrfs /dev/sda2 rw"});
  EXPECT_THAT(volumes(), ElementsAre("/ from /dev/disk0s2", "/home from /dev/disk0s2"));
}

TEST_F(LinuxVolumes, SourceIsFoundByALinkToItsNode) {
  plug("mapper");
  mount({"0:41 / /data rw - btrfs /dev/mapper/vault rw"});
  EXPECT_THAT(volumes(), ElementsAre("/data from /dev/disk0"));
}

TEST_F(LinuxVolumes, PoolKeepsItsOwnName) {
  mount({"0:42 / /tank rw - zfs tank/data rw", "0:43 / /cache rw - bcachefs /dev/nowhere1:/dev/nowhere2 rw"});
  EXPECT_THAT(volumes(), ElementsAre("/tank from tank/data", "/cache from /dev/nowhere1:/dev/nowhere2"));
}

TEST_F(LinuxVolumes, BindMountOfASubTreeIsNone) {
  plug("sata");
  mount({"8:2 / / rw - ext4 /dev/sda2 rw", "8:2 /var/lib/x /srv/x rw - ext4 /dev/sda2 rw"});
  EXPECT_THAT(volumes(), ElementsAre("/ from /dev/disk0s2"));
}

TEST_F(LinuxVolumes, LastMountOnATargetWins) {
  plug("sata");
  plug("stick");
  mount({"8:2 / /mnt rw - ext4 /dev/sda2 rw", "8:17 / /mnt rw - vfat /dev/sdb1 rw",
         "8:3 / /hidden rw - hfsplus /dev/sda3 rw", "0:50 / /hidden rw - tmpfs tmpfs rw"});
  EXPECT_THAT(volumes(), ElementsAre("/mnt from /dev/disk1s1"));
}

TEST_F(LinuxVolumes, OctalEscapesAreDecoded) {
  plug("stick");
  mount({"8:17 / /media/a\\040b\\134c\\011d rw - vfat /dev/sdb1 rw"});
  EXPECT_THAT(volumes(), ElementsAre("/media/a b\\c\td from /dev/disk0s1"));
}

TEST_F(LinuxVolumes, BlockDeviceThatIsNoMediumKeepsItsSource) {
  mount({"8:99 / /gone rw - ext4 /dev/sdq3 rw"});
  EXPECT_THAT(volumes(), ElementsAre("/gone from /dev/sdq3"));
}

TEST_F(LinuxVolumes, MountPointThatIsNotInTheTableIsAnError) {
  LinuxStorageSnapshot system = snapshot();
  EXPECT_EQ(system.mountedFromName("/nowhere").error, std::errc::no_such_file_or_directory);
}

TEST_F(LinuxVolumes, MissingMountTableIsAnError) {
  places_.mountTable = (folder_ / "none").string();
  LinuxStorageSnapshot system = snapshot();
  EXPECT_EQ(system.mountTableError(), std::errc::no_such_file_or_directory);
  EXPECT_TRUE(system.mountedLocalVolumePaths().empty());
}

TEST_F(LinuxVolumes, FreeSpaceOfAMountPointThatIsGoneIsAnError) {
  EXPECT_EQ(snapshot().freeSpace((folder_ / "none").string()).error, std::errc::no_such_file_or_directory);
}

TEST_F(LinuxVolumes, FreeSpaceIsThatOfTheFileSystem) {
  const auto space = snapshot().freeSpace(folder_.string());
  EXPECT_FALSE(space.error);
  EXPECT_LE(space.bytes, std::filesystem::space(folder_).capacity);
}

}  // namespace
}  // namespace zelvo::tests
