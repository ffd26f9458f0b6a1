#include "cli/drive_view.h"

#include <algorithm>
#include <map>
#include <memory>
#include <string_view>

#include "storage/device_name.h"

namespace zelvo::cli {

namespace {

using storage::Entries;
using storage::Entry;
namespace media_key = storage::media_key;
namespace volume_key = storage::volume_key;

constexpr std::string_view kDevice = "/dev/";
constexpr std::string_view kRawDevice = "/dev/r";

std::string textIn(const Entry& entry, const char* key) {
  const std::string* text = entry.text(key);
  return text ? *text : "";
}

std::string trimmed(const std::string& text) {
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  if (first == std::string::npos) return "";
  return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

std::string withoutPrefix(const std::string& path, std::string_view prefix) {
  return path.starts_with(prefix) ? path.substr(prefix.size()) : "";
}

/// "disk1" for "disk1s2"; empty for the name of a disk.
std::string diskOf(const std::string& bsdName) {
  const std::size_t s = bsdName.rfind('s');
  if (s == std::string::npos || s == 0 || std::ranges::count(bsdName, 's') < 2) return "";
  return bsdName.substr(0, s);
}

/// The connection that the nearest object above a medium tells.
// NOLINTNEXTLINE(misc-no-recursion): as deep as the levels that are looked at
std::string connectionAbove(const platform::RegistryObject& object, int levels) {
  const auto parents = levels > 0 ? object.parentIterator("IOService") : nullptr;
  while (parents) {
    const auto parent = parents->next();
    if (!parent) break;
    const auto* protocol = parent->properties().dictionary("Protocol Characteristics");
    const std::string* told = protocol ? protocol->text("Physical Interconnect") : nullptr;
    const std::string connection = told ? *told : connectionAbove(*parent, levels - 1);
    if (!connection.empty()) return connection;
  }
  return "";
}

VolumeView volumeView(const Entry& volume, platform::VolumeSource& source) {
  const std::string mountPoint = textIn(volume, volume_key::kMountedPath);
  // Without an answer of its own the volume has no name either; it is named as it would be.
  const std::string symlinkName = textIn(volume, volume_key::kSymlinkName);
  const std::string* name = volume.text(volume_key::kVolumeName);
  const std::string path = symlinkName.empty() ? mountPoint : symlinkName;
  return {name ? *name : std::string(storage::afterLastSlash(path)), mountPoint, source.space(mountPoint),
          source.mountFacts(mountPoint).readOnly};
}

}  // namespace

std::map<std::string, std::string> connectionsOf(platform::MediaRegistry& registry) {
  constexpr int kLevels = 4;
  std::map<std::string, std::string> connections;
  const auto matching = registry.serviceMatching("IOMedia");
  std::unique_ptr<platform::RegistryIterator> media;
  if (!matching || registry.matchingServices(&*matching, media) != platform::kRegistrySuccess) return connections;
  while (const auto medium = media->next()) {
    const std::string* name = medium->properties().text("BSD Name");
    if (name) connections[*name] = connectionAbove(*medium, kLevels);
  }
  return connections;
}

std::string kindOf(const Entry& entry, const std::string& connection) {
  if (entry.contains(media_key::kWhetherCardReader)) return "card";
  if (connection == "Virtual Interface") return "virtual";
  if (connection == "PCI-Express") return "PCIe";
  return connection;
}

std::string bsdNameOf(const Entry& entry, platform::VolumeSource& source) {
  if (entry.contains(media_key::kDevicePath)) return withoutPrefix(textIn(entry, media_key::kDevicePath), kRawDevice);
  const std::string* from = entry.text(volume_key::kVolumePath);
  return withoutPrefix(from ? *from : source.mountFacts(textIn(entry, volume_key::kMountedPath)).mountedFrom, kDevice);
}

std::optional<std::string> nativeNodeOf(const Entry& entry, platform::MediaRegistry& registry,
                                        platform::VolumeSource& source) {
  const std::string name = bsdNameOf(entry, source);
  return name.empty() ? std::nullopt : registry.nativeNode(name);
}

InventoryView inventoryView(const Entries& responseFindMedia, const Entries& finalArrayForVolumes,
                            platform::MediaRegistry& registry, platform::VolumeSource& source) {
  const auto connections = connectionsOf(registry);
  std::vector<DriveView> found;
  for (const Entry& entry : responseFindMedia) {
    const std::string name = bsdNameOf(entry, source);
    // A disk mounted without partitions is there twice; the first entry tells all that the second does.
    if (!name.empty() && std::ranges::find(found, name, &DriveView::bsdName) != found.end()) continue;
    const auto connection = connections.find(name);
    const std::string path = textIn(entry, media_key::kDevicePath);
    found.push_back({name,
                     nativeNodeOf(entry, registry, source).value_or(path),
                     kindOf(entry, connection == connections.end() ? "" : connection->second),
                     trimmed(textIn(entry, media_key::kDeviceModel)),
                     trimmed(textIn(entry, media_key::kDeviceSerial)),
                     entry.number(media_key::kDeviceSize),
                     {},
                     {}});
  }

  InventoryView view;
  for (const Entry& volume : finalArrayForVolumes) {
    const std::string name = bsdNameOf(volume, source);
    const auto drive = std::ranges::find(found, name, &DriveView::bsdName);
    if (!name.empty() && drive != found.end()) {
      drive->volumes.push_back(volumeView(volume, source));
    } else if (nativeNodeOf(volume, registry, source)) {
      ++view.readOnlyVolumes;
    } else {
      const std::string* from = volume.text(volume_key::kVolumePath);
      const std::string mountPoint = textIn(volume, volume_key::kMountedPath);
      view.others.push_back({from ? *from : source.mountFacts(mountPoint).mountedFrom, volumeView(volume, source)});
    }
  }

  for (DriveView& drive : found) {
    const auto disk = std::ranges::find(view.drives, diskOf(drive.bsdName), &DriveView::bsdName);
    auto& place = disk == view.drives.end() || disk->bsdName.empty() ? view.drives : disk->partitions;
    place.push_back(std::move(drive));
  }
  return view;
}

}  // namespace zelvo::cli
