// For each medium:
// 1. Read its properties and its name.
// 2. Look whether a volume is mounted from it.
// 3. A mounted partition: its kind.
// 4. Anything else: its icon and what its parents tell.
// 5. Its size. 6. Its device path; it joins the array.
// 7. A whole disk mounted without partitions joins the array once more, as a volume.
// 8. A card reader is filed under USB.
#include "storage/media_walk.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string>

#include "storage/device_name.h"
#include "storage/parent_levels.h"
#include "storage/partition_content.h"
#include "storage/printed_form.h"

namespace zelvo::storage {

namespace {

using platform::PropertyDictionary;
using platform::PropertyValue;

void copyIfPresent(const PropertyDictionary& properties, const char* key, Entry& entry, const char* storedAs) {
  if (const PropertyValue* value = properties.find(key)) entry.set(storedAs, *value);
}

bool isMounted(std::string_view bsdName, const Entries& volumeArray) {
  return std::ranges::any_of(volumeArray, [bsdName](const Entry& volume) {
    const std::string* volumePath = volume.text(volume_key::kVolumePath);
    if (!volumePath) return false;
    const std::size_t name = positionOfCharacter(*volumePath, kDevicePrefixLength);
    // Only a path longer than the prefix names anything: "none" and "tmpfs" do not.
    return name < volumePath->size() && std::string_view(*volumePath).substr(name) == bsdName;
  });
}

// Deliberate: the name's count of "s" tells a whole disk from a partition. "disk2" has one, "disk1s2" has two.
bool namesWholeDisk(std::string_view bsdName) { return std::ranges::count(bsdName, 's') == 1; }

void describeMountedPartition(const PropertyDictionary& properties, Entry& entry) {
  if (const PropertyValue* content = properties.find("Content")) {
    const std::string* text = content->text();
    entry.set(media_key::kContent, std::string(normalisedContent(text ? *text : std::string())));
  }
  copyIfPresent(properties, "Preferred Block Size", entry, media_key::kBlockSize);
  entry.set(media_key::kWhetherVolume, std::int32_t{1});
}

/// Writes "/dev/r" and the name, with a zero byte after, into `bsdPath`. False when the name does not fit.
bool formDevicePath(std::string_view bsdName, std::span<char> bsdPath) {
  constexpr std::string_view kRawDevice = "/dev/r";
  if (bsdPath.size() <= kRawDevice.size()) return false;
  const std::span<char> remaining = bsdPath.subspan(kRawDevice.size());
  if (!fitsCString(bsdName, remaining.size())) return false;
  std::ranges::copy(kRawDevice, bsdPath.begin());
  *std::ranges::copy(bsdName, remaining.begin()).out = '\0';
  return true;
}

void addMedium(const platform::RegistryObject& medium, std::span<char> bsdPath, Entries& mediaArray,
               const Entries& volumeArray, platform::PrintSink& printed) {
  const PropertyDictionary& properties = medium.properties();
  if (printed.isRead()) printed.print("properties:\n********************\n" + printedForm(properties));

  Entry entry;
  const std::string* bsdName = properties.text("BSD Name");
  const bool mounted = bsdName && isMounted(*bsdName, volumeArray);
  const bool wholeDiskMounted = mounted && namesWholeDisk(*bsdName);
  if (mounted && !wholeDiskMounted) {
    describeMountedPartition(properties, entry);
  } else {
    describeDevice(medium, entry, printed);
  }

  copyIfPresent(properties, "Size", entry, media_key::kDeviceSize);
  copyIfPresent(properties, "Preferred Block Size", entry, media_key::kBlockSize);
  if (bsdName && formDevicePath(*bsdName, bsdPath)) entry.set(media_key::kDevicePath, bsdPath.data());

  const std::size_t place = mediaArray.size();
  mediaArray.push_back(entry);
  if (wholeDiskMounted) {
    entry.set(media_key::kWhetherVolume, std::int32_t{1});
    mediaArray.push_back(std::move(entry));
  }
  // Deliberate: the copy above was made before a card reader is filed under USB, so only the device says so.
  Entry& device = mediaArray[place];
  if (device.contains(media_key::kWhetherCardReader)) device.set(media_key::kWhetherUSB, std::int32_t{1});
}

}  // namespace

int FindMediaMain(platform::MediaRegistry& registry, Entries& mediaArray, const Entries& volumeArray,
                  platform::PrintSink& printed) {
  std::array<char, kBSDPathCapacity> bsdPath{"/dev/rdisk0"};
  std::unique_ptr<platform::RegistryIterator> mediaIterator;
  // Deliberate: neither answer changes what comes next. A failed search has printed its line and found nothing to walk.
  static_cast<void>(FindMedia(registry, mediaIterator, printed));
  GetBSDPath(mediaIterator.get(), bsdPath, mediaArray, volumeArray, printed);
  return 0;
}

platform::RegistryStatus FindMedia(platform::MediaRegistry& registry,
                                   std::unique_ptr<platform::RegistryIterator>& mediaIterator,
                                   platform::PrintSink& printed) {
  auto matching = registry.serviceMatching("IOMedia");
  if (matching) {
    matching->properties.set("Writable", true);
  } else {
    printed.print("IOServiceMatching returned a NULL dictionary.\n");
  }
  // Deliberate: without a dictionary the registry is asked all the same, and its bad status is printed too.
  // Decision: inventory, The walk goes on as far as it can
  const platform::RegistryStatus status = registry.matchingServices(matching ? &*matching : nullptr, mediaIterator);
  if (status != platform::kRegistrySuccess) {
    std::array<char, 64> line{};
    std::snprintf(line.data(), line.size(), "IOServiceGetMatchingServices returned 0x%08x\n", status);
    printed.print(line.data());
  }
  return status;
}

platform::RegistryStatus GetBSDPath(platform::RegistryIterator* mediaIterator, std::span<char> bsdPath,
                                    Entries& mediaArray, const Entries& volumeArray, platform::PrintSink& printed) {
  while (mediaIterator) {
    const auto medium = mediaIterator->next();
    if (!medium) break;
    addMedium(*medium, bsdPath, mediaArray, volumeArray, printed);
  }
  return platform::kRegistrySuccess;
}

}  // namespace zelvo::storage
