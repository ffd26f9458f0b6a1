#include "platform/linux/linux_storage.h"

#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <cerrno>

#include "platform/linux/linux_file_manager.h"
#include "platform/linux/linux_storage_registry.h"

namespace zelvo::platform::linux_ {

namespace {

/// Number of the block device behind a mount; 0 when there is none.
std::uint64_t deviceNumber(const Mount& mount, const std::vector<BlockDevice>& devices) {
  if (major(mount.number) != 0) return mount.number;
  // The kernel made the number up, as it does for file systems that may span devices; the source names one of them.
  for (const BlockDevice& device : devices) {
    if (device.node == mount.source || std::ranges::find(device.links, mount.source) != device.links.end()) {
      return device.number;
    }
  }
  struct stat status {};
  const bool isPath = mount.source.starts_with('/');
  if (!isPath || ::stat(mount.source.c_str(), &status) != 0 || !S_ISBLK(status.st_mode)) return 0;
  return status.st_rdev;
}

}  // namespace

LinuxStorageSnapshot::LinuxStorageSnapshot(const StoragePlaces& places) : devices_(readBlockDevices(deviceError_)) {
  giveBsdNames(devices_);
  media_ = mediaObjects(devices_);
  for (const Mount& mount : readMountTable(places.mountTable, mountError_)) addVolume(mount);
  readVolumesFolder(places.volumesFolder);
}

void LinuxStorageSnapshot::addVolume(const Mount& mount) {
  const std::uint64_t number = deviceNumber(mount, devices_);
  if (!isLocalVolume(mount, number != 0)) return;
  const auto device = std::ranges::find(devices_, number, &BlockDevice::number);
  const bool listed = number != 0 && device != devices_.end();
  if (listed && mount.target == "/") rootLabel_ = device->fileSystemLabel;
  volumes_.push_back({mount.target, listed ? "/dev/" + device->bsdName : mount.source});
}

void LinuxStorageSnapshot::readVolumesFolder(const std::string& folder) {
  LinuxFileManager files;
  const auto attributes = files.attributesFollowingLinks(folder);
  if (attributes && attributes->kind == FileAttributes::Kind::folder) {
    for (const std::string& name : files.list(folder)) {
      volumesFolder_.push_back({name, files.linkTarget(folder + "/" + name)});
    }
    return;
  }
  // A name with a slash in it (a label may be "/") could not stand in a folder, and would lose what is before the slash.
  const bool fits = !rootLabel_.empty() && rootLabel_.find('/') == std::string::npos;
  volumesFolder_.push_back({fits ? rootLabel_ : "Root", "/"});
}

std::optional<MatchingDictionary> LinuxStorageSnapshot::serviceMatching(std::string_view className) {
  return MatchingDictionary{std::string(className), {}};
}

RegistryStatus LinuxStorageSnapshot::matchingServices(const MatchingDictionary* matching,
                                                      std::unique_ptr<RegistryIterator>& found) {
  if (!matching) return kRegistryBadArgument;
  if (deviceError_) return kRegistryError;
  RegistryObjects matched;
  std::ranges::copy_if(media_, std::back_inserter(matched), [matching](const auto& object) {
    if (object->className() != matching->className) return false;
    return std::ranges::all_of(matching->properties, [&object](const PropertyMember& wanted) {
      const PropertyValue* value = object->properties().find(wanted.key);
      return value && *value == wanted.value;
    });
  });
  found = iterate(std::move(matched));
  return kRegistrySuccess;
}

std::optional<std::string> LinuxStorageSnapshot::nativeNode(std::string_view bsdName) {
  const auto device = std::ranges::find(devices_, bsdName, &BlockDevice::bsdName);
  if (device == devices_.end() || device->node.empty()) return std::nullopt;
  return device->node;
}

std::vector<std::string> LinuxStorageSnapshot::mountedLocalVolumePaths() {
  std::vector<std::string> paths;
  for (const Volume& volume : volumes_) paths.push_back(volume.mountPoint);
  return paths;
}

MountedFrom LinuxStorageSnapshot::mountedFromName(const std::string& mountPoint) {
  const auto volume = std::ranges::find(volumes_, mountPoint, &Volume::mountPoint);
  if (volume == volumes_.end()) return {"", std::make_error_code(std::errc::no_such_file_or_directory)};
  return {volume->mountedFrom, {}};
}

FreeSpace LinuxStorageSnapshot::freeSpace(const std::string& mountPoint) {
  struct statvfs status {};
  while (::statvfs(mountPoint.c_str(), &status) != 0) {
    if (errno != EINTR) return {0, {errno, std::generic_category()}};
  }
  return {static_cast<std::uint64_t>(status.f_bavail) * status.f_frsize, {}};
}

}  // namespace zelvo::platform::linux_
