#include "tests/support/recorded_system.h"

#include <cerrno>
#include <fstream>
#include <span>
#include <sstream>
#include <stdexcept>

#include "platform/linux/property_lists.h"

namespace zelvo::tests {

using platform::PropertyDictionary;
using platform::PropertyValue;

namespace {

class Iterator final : public platform::RegistryIterator {
 public:
  Iterator(std::vector<std::shared_ptr<const platform::RegistryObject>> objects, std::shared_ptr<int> held)
      : objects_(std::move(objects)), held_(std::move(held)) {
    ++*held_;
  }
  ~Iterator() override { --*held_; }
  std::shared_ptr<const platform::RegistryObject> next() override {
    return at_ < objects_.size() ? objects_[at_++] : nullptr;
  }

 private:
  std::vector<std::shared_ptr<const platform::RegistryObject>> objects_;
  std::shared_ptr<int> held_;
  std::size_t at_ = 0;
};

/// The mount point of a recorded volume, byte by byte.
std::string mountPointOf(const PropertyDictionary& volume) {
  const std::string* hex = volume.text("path_hex");
  if (!hex) return *volume.text("Mounted Path");
  std::string bytes;
  for (std::size_t at = 0; at + 1 < hex->size(); at += 2) {
    bytes += static_cast<char>(std::stoi(hex->substr(at, 2), nullptr, 16));
  }
  return bytes;
}

std::error_code errorOf(std::uint64_t number) { return {static_cast<int>(number), std::generic_category()}; }

}  // namespace

struct RecordedSystem::Object final : platform::RegistryObject {
  const std::string& className() const override { return class_; }
  std::uint64_t entryID() const override { return id; }
  const PropertyDictionary& properties() const override { return own; }
  std::unique_ptr<platform::RegistryIterator> parentIterator(std::string_view plane) const override {
    if (plane != "IOService") return nullptr;
    return std::make_unique<Iterator>(parents, held);
  }

  std::string class_;
  std::uint64_t id = 0;
  PropertyDictionary own;
  std::vector<std::shared_ptr<const platform::RegistryObject>> parents;
  std::shared_ptr<int> held;
};

RecordedSystem::RecordedSystem(const PropertyValue& tree) {
  const PropertyDictionary* members = tree.dictionary();
  const bool wholeSystem = members && !members->contains("IORegistryEntryChildren");
  if (!wholeSystem) {
    load(tree, nullptr);
    return;
  }
  system_ = *members;
  if (const PropertyValue* registry = system_.find("Registry")) load(*registry, nullptr);
}

void RecordedSystem::load(const PropertyValue& tree, const std::shared_ptr<const Object>& parent) {
  if (const auto* several = tree.array()) {
    for (const PropertyValue& one : *several) load(one, parent);
    return;
  }
  const PropertyDictionary* dumped = tree.dictionary();
  if (!dumped) throw std::runtime_error("a registry object must be a dictionary");
  const auto id = dumped->number("IORegistryEntryID");
  for (const auto& object : objects_) {
    if (id && object->id == *id) {  // met before, below another parent
      if (parent) object->parents.push_back(parent);
      return;
    }
  }
  const auto object = std::make_shared<Object>();
  object->held = iteratorsHeld_;
  object->id = id.value_or(1'000'000 + objects_.size());
  const std::string* className = dumped->text("IOObjectClass");
  object->class_ = className ? *className : "";
  for (const auto& member : *dumped) {
    if (member.key != "IORegistryEntryChildren") object->own.set(member.key, member.value);
  }
  if (parent) object->parents.push_back(parent);
  objects_.push_back(object);
  if (const PropertyValue* children = dumped->find("IORegistryEntryChildren")) load(*children, object);
}

std::optional<platform::MatchingDictionary> RecordedSystem::serviceMatching(std::string_view className) {
  asked_.push_back("serviceMatching " + std::string(className));
  if (system_.isTrue("NoMatching")) return std::nullopt;
  return platform::MatchingDictionary{std::string(className), {}};
}

platform::RegistryStatus RecordedSystem::matchingServices(const platform::MatchingDictionary* matching,
                                                          std::unique_ptr<platform::RegistryIterator>& found) {
  asked_.push_back(matching ? "matchingServices" : "matchingServices without a dictionary");
  if (const auto status = system_.number("Status")) return static_cast<platform::RegistryStatus>(*status);
  if (!matching) return platform::kRegistryBadArgument;
  std::vector<std::shared_ptr<const platform::RegistryObject>> matched;
  for (const auto& object : objects_) {
    bool matches = object->class_ == matching->className;
    for (const auto& member : matching->properties) {
      const PropertyValue* value = object->own.find(member.key);
      matches = matches && value && *value == member.value;
    }
    if (matches) matched.push_back(object);
  }
  found = std::make_unique<Iterator>(std::move(matched), iteratorsHeld_);
  return platform::kRegistrySuccess;
}

std::optional<std::string> RecordedSystem::nativeNode(std::string_view bsdName) {
  for (const auto& object : objects_) {
    const std::string* name = object->own.text("BSD Name");
    const std::string* node = object->own.text("Native Node");
    if (name && node && *name == bsdName) return *node;
  }
  return std::nullopt;
}

std::vector<std::string> RecordedSystem::mountedLocalVolumePaths() {
  std::vector<std::string> paths;
  if (const auto* volumes = system_.array("Volumes")) {
    for (const PropertyValue& volume : *volumes) paths.push_back(mountPointOf(*volume.dictionary()));
  }
  return paths;
}

std::vector<platform::VolumesFolderEntry> RecordedSystem::volumesFolder() {
  std::vector<platform::VolumesFolderEntry> entries;
  if (const auto* folder = system_.array("VolumesFolder")) {
    for (const PropertyValue& entry : *folder) {
      const std::string* target = entry.dictionary()->text("Link Target");
      entries.push_back({*entry.dictionary()->text("Name"), target ? std::optional(*target) : std::nullopt});
    }
  }
  return entries;
}

const PropertyDictionary* RecordedSystem::volumeAt(const std::string& mountPoint) const {
  const auto* volumes = system_.array("Volumes");
  if (!volumes) return nullptr;
  for (const PropertyValue& volume : *volumes) {
    if (mountPointOf(*volume.dictionary()) == mountPoint) return volume.dictionary();
  }
  return nullptr;
}

platform::MountedFrom RecordedSystem::mountedFromName(const std::string& mountPoint) {
  const PropertyDictionary* volume = volumeAt(mountPoint);
  if (!volume) return {"", errorOf(ENOENT)};
  if (const auto error = volume->number("Mounted From Error")) return {"", errorOf(*error)};
  const std::string* from = volume->text("Mounted From");
  return from ? platform::MountedFrom{*from, {}} : platform::MountedFrom{"", errorOf(ENOENT)};
}

std::error_code RecordedSystem::mountTableError() {
  const auto error = system_.number("Volumes Error");
  return error ? errorOf(*error) : std::error_code{};
}

platform::VolumeSpace RecordedSystem::space(const std::string& mountPoint) {
  const PropertyDictionary* volume = volumeAt(mountPoint);
  if (!volume) return {0, 0, errorOf(ENOENT)};
  if (const auto error = volume->number("Free Space Error")) return {0, 0, errorOf(*error)};
  return {volume->number("Free Space").value_or(0), volume->number("Capacity").value_or(0), {}};
}

platform::MountFacts RecordedSystem::mountFacts(const std::string& mountPoint) {
  const PropertyDictionary* volume = volumeAt(mountPoint);
  if (!volume) return {};
  const std::string* from = volume->text("Mounted From");
  return {from ? *from : "", volume->isTrue("Read Only")};
}

PropertyValue recordedTree(const std::string& name) {
  std::ifstream file(std::string(ZELVO_STORAGE_RECORDS) + "/" + name, std::ios::binary);
  std::ostringstream read;
  read << file.rdbuf();
  const std::string content = read.str();
  platform::linux_::LinuxPropertyLists lists;
  auto tree = lists.parse(std::as_bytes(std::span(content)), content.size());
  if (!tree) throw std::runtime_error("no recorded tree: " + name);
  return std::move(*tree);
}

}  // namespace zelvo::tests
