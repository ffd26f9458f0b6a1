#include "storage/drive_inventory.h"

#include <optional>
#include <string>

#include "storage/device_name.h"

namespace zelvo::storage {

namespace {

/// The raw device's path for a volume's device path: "/dev/rdisk1s2" for "/dev/disk1s2".
std::optional<std::string> rawDevicePath(const Entry& volume) {
  const std::string* volumePath = volume.text(volume_key::kVolumePath);
  if (!volumePath) return std::nullopt;
  // Deliberate: index 5 is the place just after "/dev/". A path that has no such index stands for no device.
  const std::size_t place = positionOfCharacter(*volumePath, kDevicePrefixLength);
  if (positionOfCharacter(*volumePath, kDevicePrefixLength - 1) == volumePath->size()) return std::nullopt;
  return volumePath->substr(0, place) + "r" + volumePath->substr(place);
}

std::string trimmed(std::string_view text) {
  constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";
  const std::size_t first = text.find_first_not_of(kWhiteSpace);
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(kWhiteSpace) - first + 1));
}

}  // namespace

void initialDriveList(platform::MediaRegistry& registry, platform::VolumeSource& volumes, Entries& responseFindMedia,
                      Entries& finalArrayForVolumes, platform::PrintSink& printed) {
  responseFindMedia.clear();
  finalArrayForVolumes.clear();
  volumeList(volumes, finalArrayForVolumes, printed);
  FindMediaMain(registry, responseFindMedia, finalArrayForVolumes, printed);
  joinVolumesToMedia(finalArrayForVolumes, responseFindMedia);
  truncateDriveModelNumber(responseFindMedia);
}

void joinVolumesToMedia(const Entries& finalArrayForVolumes, Entries& responseFindMedia) {
  for (Entry& medium : responseFindMedia) {
    const std::string* found = medium.text(media_key::kDevicePath);
    if (!found || !medium.contains(media_key::kWhetherVolume)) continue;
    const std::string devicePath = *found;
    for (const Entry& volume : finalArrayForVolumes) {
      if (rawDevicePath(volume) != devicePath) continue;
      for (const auto* key : {volume_key::kVolumeName, volume_key::kMountedPath}) {
        if (const auto* value = volume.find(key)) medium.set(key, *value);
      }
    }
  }
}

void truncateDriveModelNumber(Entries& responseFindMedia) {
  for (Entry& medium : responseFindMedia) {
    if (medium.contains(media_key::kWhetherVolume)) continue;
    // Deliberate: a USB device that is not SATA keeps its texts as the device gives them.
    if (medium.contains(media_key::kWhetherUSB) && !medium.contains(media_key::kWhetherSATA)) continue;
    for (const auto* key : {media_key::kDeviceModel, media_key::kDeviceSerial, media_key::kDeviceRevision}) {
      const std::string* text = medium.text(key);
      medium.set(key, text ? trimmed(*text) : "-");
    }
  }
}

}  // namespace zelvo::storage
