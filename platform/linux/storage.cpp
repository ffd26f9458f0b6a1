#include "platform/linux/storage.h"

#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <algorithm>

#include "platform/linux/file_manager.h"
#include "platform/linux/storage_registry.h"

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
  // Any text may be the source of a mount. A path elsewhere may lead to a disk that hangs.
  const bool isNode = mount.source.starts_with("/dev/") && mount.source.find("/../") == std::string::npos;
  if (!isNode || ::stat(mount.source.c_str(), &status) != 0 || !S_ISBLK(status.st_mode)) return 0;
  return status.st_rdev;
}

}  // namespace

LinuxStorageSnapshot::LinuxStorageSnapshot(PathProbe& probe, const StoragePlaces& places)
    : devices_(readBlockDevices(places.blockDevices, deviceError_)) {
  giveBsdNames(devices_);
  media_ = mediaObjects(devices_);
  const std::vector<Mount> mounts = readMountTable(places.mountTable, mountError_);
  for (const Mount& mount : mounts) addVolume(mount);

  std::vector<std::string> paths = mountedLocalVolumePaths();
  paths.push_back(places.volumesFolder);
  const std::vector<PathAnswer> answers = probe.ask(paths);
  for (std::size_t at = 0; at < volumes_.size(); ++at) {
    volumes_[at].space = {answers[at].free, answers[at].capacity, answers[at].error};
    volumes_[at].answers = answers[at].answered;
  }
  readVolumesFolder(answers.back().answered ? places.volumesFolder : "", mounts);
}

void LinuxStorageSnapshot::addVolume(const Mount& mount) {
  if (!mayBeLocalVolume(mount)) return;
  const std::uint64_t number = deviceNumber(mount, devices_);
  if (!isLocalVolume(mount, number != 0)) return;
  const auto device = std::ranges::find(devices_, number, &BlockDevice::number);
  const bool listed = number != 0 && device != devices_.end();
  if (listed && mount.target == "/") rootLabel_ = device->fileSystemLabel;
  const std::string from = listed ? "/dev/" + device->bsdName : sourceThatNamesNoDisk(mount);
  volumes_.push_back({mount.target, {from, mount.readOnly}, {}, true});
}

std::string LinuxStorageSnapshot::sourceThatNamesNoDisk(const Mount& mount) const {
  // Whoever looks for a disk takes what follows the first five characters, "/dev/" of a device, for its name; so a data
  // set "tank/disk0" would be taken for the disk of that name.
  constexpr std::size_t kPrefix = 5;
  const std::string name = mount.source.size() > kPrefix ? mount.source.substr(kPrefix) : "";
  const bool namesOne = !name.empty() && std::ranges::find(devices_, name, &BlockDevice::bsdName) != devices_.end();
  return namesOne ? mount.type + ":" + mount.source : mount.source;
}

void LinuxStorageSnapshot::readVolumesFolder(const std::string& folder, const std::vector<Mount>& mounts) {
  LinuxFileManager files;
  const auto attributes = folder.empty() ? std::nullopt : files.attributesFollowingLinks(folder);
  if (attributes && attributes->kind == FileAttributes::Kind::folder) {
    for (const std::string& name : files.list(folder)) {
      const std::string path = folder + "/" + name;
      // A mount point is no link, and what is mounted there may hang.
      const bool isMountPoint = std::ranges::find(mounts, path, &Mount::target) != mounts.end();
      volumesFolder_.push_back({name, isMountPoint ? std::nullopt : files.linkTarget(path)});
    }
    return;
  }
  // A name with a slash in it (a label may be "/") could not stand in a folder, and would lose what is before the
  // slash.
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

const LinuxStorageSnapshot::Volume* LinuxStorageSnapshot::volumeAt(const std::string& mountPoint) const {
  const auto volume = std::ranges::find(volumes_, mountPoint, &Volume::mountPoint);
  return volume == volumes_.end() ? nullptr : &*volume;
}

MountedFrom LinuxStorageSnapshot::mountedFromName(const std::string& mountPoint) {
  const Volume* volume = volumeAt(mountPoint);
  if (!volume) return {"", std::make_error_code(std::errc::no_such_file_or_directory)};
  if (!volume->answers) return {"", volume->space.error};
  return {volume->facts.mountedFrom, {}};
}

VolumeSpace LinuxStorageSnapshot::space(const std::string& mountPoint) {
  const Volume* volume = volumeAt(mountPoint);
  return volume ? volume->space : VolumeSpace{0, 0, std::make_error_code(std::errc::no_such_file_or_directory)};
}

MountFacts LinuxStorageSnapshot::mountFacts(const std::string& mountPoint) {
  const Volume* volume = volumeAt(mountPoint);
  return volume ? volume->facts : MountFacts{};
}

}  // namespace zelvo::platform::linux_
