// The registry is asked from below (a medium, then its parents); the record is written from above. So:
// 1. Gather every object that stands above any medium, with its children in the order in which they were met.
// 2. Write the objects without parents, each with its children inside it.
#include "storage/system_record.h"

#include <algorithm>
#include <map>
#include <memory>
#include <vector>

#include "storage/device_name.h"

namespace zelvo::storage {

namespace {

using platform::PropertyArray;
using platform::PropertyDictionary;
using platform::RegistryObject;

class Gathering {
 public:
  // NOLINTNEXTLINE(misc-no-recursion): as deep as the registry is
  void add(const std::shared_ptr<const RegistryObject>& object) {
    if (!gathered_.emplace(object->entryID(), object).second) return;
    const auto parents = object->parentIterator("IOService");
    bool hasParents = false;
    while (parents) {
      const auto parent = parents->next();
      if (!parent) break;
      hasParents = true;
      children_[parent->entryID()].push_back(object->entryID());
      add(parent);
    }
    if (!hasParents) roots_.push_back(object->entryID());
  }

  [[nodiscard]] PropertyArray written(platform::MediaRegistry& registry) const { return written(roots_, registry); }

 private:
  // NOLINTNEXTLINE(misc-no-recursion): as above
  [[nodiscard]] PropertyArray written(const std::vector<std::uint64_t>& ids, platform::MediaRegistry& registry) const {
    PropertyArray objects;
    for (const std::uint64_t id : ids) {
      const RegistryObject& object = *gathered_.at(id);
      PropertyDictionary properties = object.properties();
      properties.set(record_key::kClass, object.className());
      properties.set(record_key::kEntryID, id);
      const std::string* bsdName = properties.text("BSD Name");
      const auto nativeNode = bsdName ? registry.nativeNode(*bsdName) : std::nullopt;
      if (nativeNode) properties.set(record_key::kNativeNode, *nativeNode);
      const auto children = children_.find(id);
      if (children != children_.end()) properties.set(record_key::kChildren, written(children->second, registry));
      objects.emplace_back(std::move(properties));
    }
    return objects;
  }

  std::map<std::uint64_t, std::shared_ptr<const RegistryObject>> gathered_;
  std::map<std::uint64_t, std::vector<std::uint64_t>> children_;
  std::vector<std::uint64_t> roots_;
};

void recordRegistry(platform::MediaRegistry& registry, PropertyDictionary& record) {
  const auto matching = registry.serviceMatching("IOMedia");
  if (!matching) record.set(record_key::kNoMatching, true);
  std::unique_ptr<platform::RegistryIterator> media;
  const auto status = registry.matchingServices(matching ? &*matching : nullptr, media);
  if (status != platform::kRegistrySuccess) record.set(record_key::kStatus, std::uint64_t{status});
  Gathering gathering;
  while (media) {
    const auto medium = media->next();
    if (!medium) break;
    gathering.add(medium);
  }
  record.set(record_key::kRegistry, gathering.written(registry));
}

PropertyDictionary recordedVolume(const std::string& mountPoint, platform::VolumeSource& volumes) {
  PropertyDictionary volume{{record_key::kMountedPath, mountPoint}};
  const platform::MountedFrom from = volumes.mountedFromName(mountPoint);
  const platform::MountFacts facts = volumes.mountFacts(mountPoint);
  if (from.error) volume.set(record_key::kMountedFromError, std::int32_t{from.error.value()});
  if (!from.error || !facts.mountedFrom.empty()) {
    volume.set(record_key::kMountedFrom, from.error ? facts.mountedFrom : from.name);
  }
  if (facts.readOnly) volume.set(record_key::kReadOnly, true);
  if (!isUtf8(mountPoint)) volume.set(record_key::kPathHex, hexOf(mountPoint));
  const platform::VolumeSpace space = volumes.space(mountPoint);
  if (space.error) {
    volume.set(record_key::kFreeSpaceError, std::int32_t{space.error.value()});
  } else {
    volume.set(record_key::kFreeSpace, space.free);
    volume.set(record_key::kCapacity, space.capacity);
  }
  return volume;
}

}  // namespace

PropertyDictionary recordedSystem(platform::MediaRegistry& registry, platform::VolumeSource& volumes) {
  PropertyDictionary record;
  recordRegistry(registry, record);
  PropertyArray mounted;
  for (const std::string& path : volumes.mountedLocalVolumePaths()) mounted.emplace_back(recordedVolume(path, volumes));
  record.set(record_key::kVolumes, std::move(mounted));
  if (const std::error_code error = volumes.mountTableError()) {
    record.set(record_key::kVolumesError, std::int32_t{error.value()});
  }
  PropertyArray folder;
  for (const platform::VolumesFolderEntry& entry : volumes.volumesFolder()) {
    PropertyDictionary written{{record_key::kName, entry.name}};
    if (entry.linkTarget) written.set(record_key::kLinkTarget, *entry.linkTarget);
    folder.emplace_back(std::move(written));
  }
  record.set(record_key::kVolumesFolder, std::move(folder));
  return record;
}

}  // namespace zelvo::storage
