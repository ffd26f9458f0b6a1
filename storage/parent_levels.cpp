#include "storage/parent_levels.h"

#include <array>
#include <string>

#include "storage/media_walk.h"
#include "storage/printed_form.h"

namespace zelvo::storage {

namespace {

using platform::PropertyDictionary;
using platform::PropertyValue;

constexpr std::array<const char*, kParentLevels> kHeaders{"parentIteratorProperties:", "parentIteratorProperties2:",
                                                          "parentIteratorProperties3:", "parentIteratorProperties4:"};

struct CopiedText {
  const char* key;
  const char* storedAs;
};

constexpr std::array<CopiedText, 6> kDeviceCharacteristics{{
    {"Vendor Identification", media_key::kVendorIdentification},
    {"Product Identification", media_key::kProductIdentification},
    {"Product Revision Level", media_key::kProductRevisionLevel},
    {"Model", media_key::kDeviceModel},
    {"Serial Number", media_key::kDeviceSerial},
    {"Revision", media_key::kDeviceRevision},
}};

void copyUnlessGiven(const PropertyDictionary& properties, const char* key, Entry& entry, const char* storedAs) {
  if (const PropertyValue* value = properties.find(key)) entry.setIfAbsent(storedAs, *value);
}

bool hasIcon(const Entry& entry) {
  return entry.contains(media_key::kIconBundle) || entry.contains(media_key::kIconFile);
}

// The icon's two keys go together: one level's bundle with another level's file would name no icon.
void takeIconUnlessGiven(const PropertyDictionary& properties, Entry& entry) {
  const PropertyDictionary* icon = properties.dictionary("IOMediaIcon");
  if (!icon || hasIcon(entry)) return;
  copyUnlessGiven(*icon, "CFBundleIdentifier", entry, media_key::kIconBundle);
  copyUnlessGiven(*icon, "IOBundleResourceFile", entry, media_key::kIconFile);
}

void takeConnection(const PropertyDictionary& properties, Entry& entry) {
  const PropertyDictionary* protocol = properties.dictionary("Protocol Characteristics");
  const std::string* interconnect = protocol ? protocol->text("Physical Interconnect") : nullptr;
  if (!interconnect) return;
  if (*interconnect == "SATA") entry.set(media_key::kWhetherSATA, std::int32_t{1});
  // Deliberate: FireWire is filed under the USB flag.
  if (*interconnect == "USB" || *interconnect == "FireWire") entry.set(media_key::kWhetherUSB, std::int32_t{1});
}

void takeParent(const PropertyDictionary& properties, Entry& entry) {
  takeIconUnlessGiven(properties, entry);
  takeConnection(properties, entry);
  const std::string* ioClass = properties.text("IOClass");
  if (ioClass && *ioClass == "AppleSDXCBlockStorageDevice") {
    entry.set(media_key::kWhetherCardReader, std::int32_t{1});
    if (const PropertyDictionary* card = properties.dictionary("Card Characteristics")) {
      copyUnlessGiven(*card, "Product Revision Level", entry, media_key::kProductRevisionLevel);
    }
  }
  if (const PropertyDictionary* device = properties.dictionary("Device Characteristics")) {
    for (const CopiedText& text : kDeviceCharacteristics) copyUnlessGiven(*device, text.key, entry, text.storedAs);
  }
}

// NOLINTNEXTLINE(misc-no-recursion): four levels at most
void takeParents(const platform::RegistryObject& object, std::size_t level, Entry& entry,
                 platform::PrintSink& printed) {
  if (level >= kParentLevels) return;
  const auto parents = object.parentIterator("IOService");
  while (parents) {
    const auto parent = parents->next();
    if (!parent) break;
    if (printed.isRead()) {
      printed.print(std::string(kHeaders[level]) + "\n" + printedForm(parent->properties()));
    }
    takeParent(parent->properties(), entry);
    takeParents(*parent, level + 1, entry, printed);
  }
}

}  // namespace

void describeDevice(const platform::RegistryObject& medium, Entry& entry, platform::PrintSink& printed) {
  takeIconUnlessGiven(medium.properties(), entry);
  takeParents(medium, 0, entry, printed);
  if (hasIcon(entry)) return;
  entry.set(media_key::kIconBundle, "com.apple.iokit.IOStorageFamily");
  entry.set(media_key::kIconFile, "Removable.icns");
}

}  // namespace zelvo::storage
