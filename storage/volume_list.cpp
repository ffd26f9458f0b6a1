// 1. One entry per mounted local volume.
// 2. The start-up volume is mounted at "/", which has no last component; its name comes from its link in "/Volumes".
// 3. Each volume's name, and what it is mounted from.
#include "storage/volume_list.h"

#include "storage/device_name.h"

namespace zelvo::storage {

void volumeList(platform::VolumeSource& volumes, Entries& finalArrayForVolumes, platform::PrintSink& printed) {
  for (const std::string& path : volumes.mountedLocalVolumePaths()) {
    finalArrayForVolumes.push_back({{volume_key::kMountedPath, path}});
  }
  for (const platform::VolumesFolderEntry& entry : volumes.volumesFolder()) {
    if (!entry.linkTarget) continue;
    for (Entry& volume : finalArrayForVolumes) {
      const std::string* mountedPath = volume.text(volume_key::kMountedPath);
      if (mountedPath && *mountedPath == *entry.linkTarget) {
        volume.set(volume_key::kSymlinkName, "/Volumes/" + entry.name);
      }
    }
  }
  FindVolumeNames(volumes, finalArrayForVolumes, printed);
}

void FindVolumeNames(platform::VolumeSource& volumes, Entries& volumeArray, platform::PrintSink& printed) {
  for (Entry& volume : volumeArray) {
    const std::string* mountedPath = volume.text(volume_key::kMountedPath);
    // Decision: inventory, Limits count the zero byte
    if (!mountedPath || !fitsCString(*mountedPath, kMountPointCapacity)) continue;
    const platform::MountedFrom mountedFrom = volumes.mountedFromName(*mountedPath);
    if (mountedFrom.error) {
      printed.print("statfs failed: " + mountedFrom.error.message() + "\n");
      continue;
    }
    const std::string* symlinkName = volume.text(volume_key::kSymlinkName);
    volume.set(volume_key::kVolumeName, std::string(afterLastSlash(symlinkName ? *symlinkName : *mountedPath)));
    volume.set(volume_key::kVolumePath, mountedFrom.name);
  }
}

}  // namespace zelvo::storage
