/// The storage of this machine at one moment: its block devices as a registry of media, and its mounted volumes. Both
/// are read together and speak of a device under the same name, so that they cannot disagree.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/linux/storage_devices.h"
#include "platform/linux/storage_mounts.h"
#include "platform/media_registry.h"
#include "platform/path_probe.h"
#include "platform/volume_source.h"

namespace zelvo::platform::linux_ {

/// Where the snapshot reads what is not read through libudev.
struct StoragePlaces {
  std::string blockDevices = "/sys/class/block";
  std::string mountTable = "/proc/self/mountinfo";
  std::string volumesFolder = "/Volumes";
};

/// Thread: any, after its making, which is when the system is looked at.
class LinuxStorageSnapshot final : public MediaRegistry, public VolumeSource {
 public:
  /// Reads the system. No root is needed, and nothing is opened but the system's own tables. The volumes are asked for
  /// their space by `probe`, all at once, so that one that hangs holds up nothing.
  /// Failure: shows in `matchingServices` (a bad status) and in `mountTableError`.
  explicit LinuxStorageSnapshot(PathProbe& probe, const StoragePlaces& places = {});

  [[nodiscard]] std::optional<MatchingDictionary> serviceMatching(std::string_view className) override;
  [[nodiscard]] RegistryStatus matchingServices(const MatchingDictionary* matching,
                                                std::unique_ptr<RegistryIterator>& found) override;
  /// "/dev/sda2" for "disk0s2".
  [[nodiscard]] std::optional<std::string> nativeNode(std::string_view bsdName) override;

  [[nodiscard]] std::vector<std::string> mountedLocalVolumePaths() override;
  [[nodiscard]] std::error_code mountTableError() override { return mountError_; }
  /// Where "/Volumes" is no folder, one alias that leads to "/": the label of the root file system, or "Root".
  /// Decision: inventory, A missing folder of volumes gets one link
  [[nodiscard]] std::vector<VolumesFolderEntry> volumesFolder() override { return volumesFolder_; }
  /// "/dev/disk0s2", or the source as the mount table has it where no listed device is behind the mount. A source that
  /// would pass for one of our disks has its file system's type before it: "zfs:tank/disk0".
  /// Decision: inventory, Volumes come from the mount table alone
  [[nodiscard]] MountedFrom mountedFromName(const std::string& mountPoint) override;
  [[nodiscard]] VolumeSpace space(const std::string& mountPoint) override;
  [[nodiscard]] MountFacts mountFacts(const std::string& mountPoint) override;

 private:
  struct Volume {
    std::string mountPoint;
    MountFacts facts;
    VolumeSpace space;
    bool answers = true;
  };

  void addVolume(const Mount& mount);
  [[nodiscard]] std::string sourceThatNamesNoDisk(const Mount& mount) const;
  void readVolumesFolder(const std::string& folder, const std::vector<Mount>& mounts);
  /// Null when there is none.
  [[nodiscard]] const Volume* volumeAt(const std::string& mountPoint) const;

  std::error_code deviceError_;  // before the devices, whose reading sets it
  std::vector<BlockDevice> devices_;
  std::vector<std::shared_ptr<const RegistryObject>> media_;
  std::vector<Volume> volumes_;
  std::error_code mountError_;
  std::string rootLabel_;
  std::vector<VolumesFolderEntry> volumesFolder_;
};

}  // namespace zelvo::platform::linux_
