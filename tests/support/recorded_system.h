/// A machine's storage as a tree tells it: what `recordedSystem` writes down, a registry dump on its own (a dictionary
/// with children, or an array of them), or a tree written by hand.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/media_registry.h"
#include "platform/property_value.h"
#include "platform/volume_source.h"

namespace zelvo::tests {

class RecordedSystem final : public platform::MediaRegistry, public platform::VolumeSource {
 public:
  explicit RecordedSystem(const platform::PropertyValue& tree);

  /// How many iterators and objects of this registry are held at the moment, and what has been asked of it.
  [[nodiscard]] int iteratorsHeld() const { return *iteratorsHeld_; }
  [[nodiscard]] const std::vector<std::string>& asked() const { return asked_; }

  std::optional<platform::MatchingDictionary> serviceMatching(std::string_view className) override;
  platform::RegistryStatus matchingServices(const platform::MatchingDictionary* matching,
                                            std::unique_ptr<platform::RegistryIterator>& found) override;
  std::optional<std::string> nativeNode(std::string_view bsdName) override;

  std::vector<std::string> mountedLocalVolumePaths() override;
  std::error_code mountTableError() override;
  std::vector<platform::VolumesFolderEntry> volumesFolder() override;
  platform::MountedFrom mountedFromName(const std::string& mountPoint) override;
  platform::VolumeSpace space(const std::string& mountPoint) override;
  platform::MountFacts mountFacts(const std::string& mountPoint) override;

 private:
  struct Object;

  void load(const platform::PropertyValue& tree, const std::shared_ptr<const Object>& parent);
  [[nodiscard]] const platform::PropertyDictionary* volumeAt(const std::string& mountPoint) const;

  std::vector<std::shared_ptr<Object>> objects_;
  platform::PropertyDictionary system_;
  std::shared_ptr<int> iteratorsHeld_ = std::make_shared<int>(0);
  std::vector<std::string> asked_;
};

/// The tree of a recorded file beside the tests ("mac_with_card.plist").
[[nodiscard]] platform::PropertyValue recordedTree(const std::string& name);

}  // namespace zelvo::tests
