/// The registry of storage devices: objects with properties, each below its parents in a plane. The media (whole disks
/// and partitions) are asked for by class and properties; what stands above a medium (its partition scheme, the disk,
/// its driver, the device) is reached by going up from parent to parent.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/property_value.h"

namespace zelvo::platform {

class RegistryIterator;

/// One object of the registry. Its content does not change while it is held.
class RegistryObject {
 public:
  virtual ~RegistryObject() = default;
  /// The object's class ("IOMedia").
  [[nodiscard]] virtual const std::string& className() const = 0;
  /// A number that no other object of the same registry has.
  [[nodiscard]] virtual std::uint64_t entryID() const = 0;
  [[nodiscard]] virtual const PropertyDictionary& properties() const = 0;
  /// The parents in a plane ("IOService"), nearest level only; null when there is no such plane.
  [[nodiscard]] virtual std::unique_ptr<RegistryIterator> parentIterator(std::string_view plane) const = 0;
};

/// Goes over objects once. Letting go of it releases it.
class RegistryIterator {
 public:
  virtual ~RegistryIterator() = default;
  /// The next object; null after the last.
  [[nodiscard]] virtual std::shared_ptr<const RegistryObject> next() = 0;
};

/// What to look for: objects of a class that have all of the properties.
struct MatchingDictionary {
  std::string className;
  PropertyDictionary properties;
};

/// 0 is success; other values are the registry's own and are shown in hexadecimal.
using RegistryStatus = std::uint32_t;

/// Statuses that a registry of ours answers.
constexpr RegistryStatus kRegistrySuccess = 0;
constexpr RegistryStatus kRegistryError = 0xe00002bc;
constexpr RegistryStatus kRegistryBadArgument = 0xe00002c2;

/// Thread: one at a time.
class MediaRegistry {
 public:
  virtual ~MediaRegistry() = default;

  /// A dictionary that matches every object of a class; nothing when it cannot be made.
  [[nodiscard]] virtual std::optional<MatchingDictionary> serviceMatching(std::string_view className) = 0;

  /// Looks for the objects that match. On success `found` goes over them, on failure it is left as it was.
  /// Null for `matching` is a bad argument.
  [[nodiscard]] virtual RegistryStatus matchingServices(const MatchingDictionary* matching,
                                                        std::unique_ptr<RegistryIterator>& found) = 0;

  /// The system's own node for a medium's "BSD Name" ("/dev/sda2" for "disk0s2"), to show or to open; nothing when the
  /// name is not known.
  [[nodiscard]] virtual std::optional<std::string> nativeNode(std::string_view bsdName) = 0;
};

}  // namespace zelvo::platform
