/// Small registries and mount tables, written down in a test.
#pragma once

#include <string>
#include <vector>

#include "platform/print_sink.h"
#include "platform/property_value.h"

namespace zelvo::tests {

using platform::PropertyArray;
using platform::PropertyDictionary;
using platform::PropertyValue;

/// What a quality that is there is set to.
inline const PropertyValue kOne = std::int32_t{1};

/// An object of the registry with `properties`, below which `child` stands.
inline PropertyDictionary above(const PropertyDictionary& child, PropertyDictionary properties,
                                const char* className = "IOService") {
  properties.set("IOObjectClass", className);
  properties.set("IORegistryEntryChildren", PropertyArray{child});
  return properties;
}

/// A writable medium, unless `properties` say otherwise.
inline PropertyDictionary medium(PropertyDictionary properties) {
  properties.set("IOObjectClass", "IOMedia");
  properties.setIfAbsent("Writable", true);
  return properties;
}

inline PropertyDictionary mounted(const char* mountPoint, const char* from) {
  return {{"Mounted Path", mountPoint}, {"Mounted From", from}};
}

inline PropertyDictionary connectedBy(const char* interconnect) {
  return {{"Protocol Characteristics", PropertyDictionary{{"Physical Interconnect", interconnect}}}};
}

inline PropertyDictionary characteristics(PropertyDictionary texts) {
  return {{"Device Characteristics", std::move(texts)}};
}

inline PropertyDictionary icon(const char* bundle, const char* file) {
  return {{"IOMediaIcon", PropertyDictionary{{"CFBundleIdentifier", bundle}, {"IOBundleResourceFile", file}}}};
}

inline PropertyDictionary both(PropertyDictionary one, const PropertyDictionary& other) {
  for (const auto& member : other) one.set(member.key, member.value);
  return one;
}

/// The whole tree: objects without parents, and the mounted volumes.
inline PropertyValue machine(PropertyArray objects, PropertyArray volumes = {}) {
  return PropertyDictionary{{"Registry", std::move(objects)}, {"Volumes", std::move(volumes)}};
}

class KeptPrint final : public platform::PrintSink {
 public:
  void print(std::string_view part) override { text += part; }
  std::string text;
};

}  // namespace zelvo::tests
