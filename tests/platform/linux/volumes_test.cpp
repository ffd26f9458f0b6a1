#include "platform/linux/storage_mounts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "storage/volume_list.h"
#include "tests/platform/linux/mock_machine.h"
#include "tests/support/trees.h"

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

TEST_F(LinuxVolumes, BindMountsOfFoldersAndFilesOfBtrfsAreNone) {
  plug("sata");
  mount({"0:40 /@ / rw - btrfs /dev/sda2 rw,subvolid=256,subvol=/@",
         "0:40 /@home /home rw - btrfs /dev/sda2 rw,subvolid=257,subvol=/@home",
         "0:40 /@home/u/Videos /srv/videos rw - btrfs /dev/sda2 rw,subvolid=257,subvol=/@home",
         "0:40 /@/etc/hosts /srv/hosts rw - btrfs /dev/sda2 rw,subvolid=256,subvol=/@",
         "0:40 / /mnt/all rw - btrfs /dev/sda2 rw,subvolid=5,subvol=/",
         "0:40 /some /mnt/some rw - btrfs /dev/sda2 rw,subvolid=5,subvol=/"});
  EXPECT_THAT(volumes(), ElementsAre("/ from /dev/disk0s2", "/home from /dev/disk0s2", "/mnt/all from /dev/disk0s2"));
}

TEST_F(LinuxVolumes, SubVolumeMayHaveAnyName) {
  plug("sata");
  mount({"0:40 /a,b\\040c /mnt/x rw - btrfs /dev/sda2 rw,subvolid=300,subvol=/a,b\\040c",
         "0:40 /x/a /mnt/y rw - btrfs /dev/sda2 rw,subvolid=300,subvol=/a"});
  EXPECT_THAT(volumes(), ElementsAre("/mnt/x from /dev/disk0s2"));
}

TEST_F(LinuxVolumes, ReadOnlyMountIsToldFromAWritableOne) {
  plug("sata");
  mount({"8:1 / /a rw,relatime - ext4 /dev/sda1 rw", "8:2 / /b ro,relatime - ext4 /dev/sda2 rw",
         "8:3 / /c rw,relatime - hfsplus /dev/sda3 ro,errors=remount-ro",
         "8:4 / /d rw - ext4 /dev/sda4 rw,errors=remount-ro"});
  LinuxStorageSnapshot system = snapshot();
  EXPECT_FALSE(system.mountFacts("/a").readOnly);
  EXPECT_TRUE(system.mountFacts("/b").readOnly);
  EXPECT_TRUE(system.mountFacts("/c").readOnly);
  EXPECT_FALSE(system.mountFacts("/d").readOnly);
  EXPECT_EQ(system.mountFacts("/b").mountedFrom, "/dev/disk0s2");
  EXPECT_EQ(system.mountFacts("/nowhere").mountedFrom, "");
}

TEST_F(LinuxVolumes, AllAreAskedForTheirSpaceAtOnceAndNobodyElseIs) {
  plug("sata");
  mount({"0:31 / /srv rw - nfs4 host:/export rw", "0:30 / /tmp rw - tmpfs tmpfs rw",
         "0:36 / /cloud rw - fuse.rclone cloud: rw", "8:2 / / rw - ext4 /dev/sda2 rw",
         "8:2 /x /srv/x rw - ext4 /dev/sda2 rw", "0:42 / /tank rw - zfs tank rw"});
  static_cast<void>(snapshot());
  EXPECT_EQ(probe_.asked, (std::vector<std::vector<std::string>>{{"/", "/tank", places_.volumesFolder}}));
}

TEST_F(LinuxVolumes, SourceOutsideTheFolderOfDevicesIsNotLookedAt) {
  const std::string node = (folder_ / "node").string();
  const std::string make = "mknod '" + node + "' b 8 2 2>/dev/null";
  if (std::system(make.c_str()) != 0) GTEST_SKIP() << "only root makes device nodes";
  mount({"0:36 / /archive rw - fuse.archive " + node + " rw"});
  EXPECT_THAT(volumes(), ElementsAre());  // a look would have taken it for a volume on a disk
}

TEST_F(LinuxVolumes, SpaceIsWhatTheVolumeAnswered) {
  plug("sata");
  mount({"8:1 / /a rw - ext4 /dev/sda1 rw", "8:2 / /b rw - ext4 /dev/sda2 rw"});
  probe_.known["/a"] = {.answered = true, .error = {}, .free = 7, .capacity = 9};
  probe_.known["/b"] = {.answered = true, .error = std::make_error_code(std::errc::permission_denied)};
  LinuxStorageSnapshot system = snapshot();
  EXPECT_EQ(system.space("/a").free, 7U);
  EXPECT_EQ(system.space("/a").capacity, 9U);
  EXPECT_EQ(system.space("/b").error, std::errc::permission_denied);
  EXPECT_FALSE(system.mountedFromName("/b").error);  // the mount table tells its device all the same
  EXPECT_EQ(system.space("/nowhere").error, std::errc::no_such_file_or_directory);
}

TEST_F(LinuxVolumes, VolumeThatDoesNotAnswerCountsAsAFailedStatfs) {
  plug("sata");
  mount({"8:1 / /dead rw - ext4 /dev/sda1 rw", "8:2 / /b rw - ext4 /dev/sda2 rw"});
  probe_.dead = {"/dead"};
  LinuxStorageSnapshot system = snapshot();
  KeptPrint printed;
  storage::Entries entries;
  storage::volumeList(system, entries, printed);
  ASSERT_EQ(entries.size(), 2U);
  EXPECT_EQ(entries[0], (storage::Entry{{"Mounted Path", "/dead"}}));
  EXPECT_EQ(*entries[1].text("Volume Path"), "/dev/disk0s2");
  EXPECT_EQ(printed.text, "statfs failed: Connection timed out\n");
  EXPECT_EQ(system.space("/dead").error, std::errc::timed_out);
  EXPECT_EQ(system.mountFacts("/dead").mountedFrom, "/dev/disk0s1");
}

TEST_F(LinuxVolumes, FolderOfVolumesThatDoesNotAnswerIsNotLookedInto) {
  plug("sata");
  mount({"8:2 / / rw - ext4 /dev/sda2 rw"});
  std::filesystem::create_directory(places_.volumesFolder);
  std::filesystem::create_symlink("/", places_.volumesFolder + "/Alias");
  probe_.dead = {places_.volumesFolder};
  LinuxStorageSnapshot system = snapshot();
  ASSERT_EQ(system.volumesFolder().size(), 1U);
  EXPECT_EQ(system.volumesFolder()[0].name, "Root Disk");
}

TEST_F(LinuxVolumes, MountPointInTheFolderOfVolumesIsTakenForNoLink) {
  plug("sata");
  std::filesystem::create_directory(places_.volumesFolder);
  const std::string alias = places_.volumesFolder + "/Alias";
  std::filesystem::create_symlink("/", alias);
  mount({"0:31 / " + alias + " rw - nfs4 host:/export rw"});  // as if it hung; a look at it would find a link
  LinuxStorageSnapshot system = snapshot();
  ASSERT_EQ(system.volumesFolder().size(), 1U);
  EXPECT_EQ(system.volumesFolder()[0].linkTarget, std::nullopt);
}

TEST_F(LinuxVolumes, DataSetNamedLikeADiskIsNoDisk) {
  plug("sata");
  mount({"0:42 / /a rw - zfs tank/disk0s2 rw", "0:43 / /b rw - zfs pool/disk0 rw", "0:44 / /c rw - zfs pool/disk1 rw"});
  const Arrays arrays = inventory();
  EXPECT_THAT(volumes(), ElementsAre("/a from zfs:tank/disk0s2", "/b from zfs:pool/disk0", "/c from pool/disk1"));
  for (const storage::Entry& medium : arrays.media) EXPECT_FALSE(medium.contains("WhetherVolume"));
}

}  // namespace
}  // namespace zelvo::tests
