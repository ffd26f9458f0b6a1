#include "platform/property_value.h"

#include <algorithm>

namespace zelvo::platform {

// Written out here, where a member is a whole type: a dictionary is part of its own members.
PropertyDictionary::PropertyDictionary() = default;
PropertyDictionary::PropertyDictionary(const PropertyDictionary& other) = default;
PropertyDictionary::PropertyDictionary(PropertyDictionary&& other) noexcept = default;
PropertyDictionary& PropertyDictionary::operator=(const PropertyDictionary& other) = default;
PropertyDictionary& PropertyDictionary::operator=(PropertyDictionary&& other) noexcept = default;
PropertyDictionary::~PropertyDictionary() = default;

PropertyDictionary::PropertyDictionary(std::initializer_list<PropertyMember> members) {
  for (const PropertyMember& member : members) set(member.key, member.value);
}

std::size_t PropertyDictionary::placeOf(std::string_view key) const {
  const auto place = std::lower_bound(
      members_.begin(), members_.end(), key,
      [](const PropertyMember& member, std::string_view wanted) { return std::string_view(member.key) < wanted; });
  return static_cast<std::size_t>(place - members_.begin());
}

const PropertyValue* PropertyDictionary::find(std::string_view key) const {
  const std::size_t place = placeOf(key);
  return place < members_.size() && members_[place].key == key ? &members_[place].value : nullptr;
}

const std::string* PropertyDictionary::text(std::string_view key) const {
  const PropertyValue* found = find(key);
  return found ? found->text() : nullptr;
}

const PropertyDictionary* PropertyDictionary::dictionary(std::string_view key) const {
  const PropertyValue* found = find(key);
  return found ? found->dictionary() : nullptr;
}

const PropertyArray* PropertyDictionary::array(std::string_view key) const {
  const PropertyValue* found = find(key);
  return found ? found->array() : nullptr;
}

std::optional<std::uint64_t> PropertyDictionary::number(std::string_view key) const {
  const PropertyValue* found = find(key);
  if (!found) return std::nullopt;
  if (const auto* wide = std::get_if<std::uint64_t>(&found->value)) return *wide;
  const auto* narrow = std::get_if<std::int32_t>(&found->value);
  if (!narrow || *narrow < 0) return std::nullopt;
  return static_cast<std::uint64_t>(*narrow);
}

bool PropertyDictionary::isTrue(std::string_view key) const {
  const PropertyValue* found = find(key);
  const bool* flag = found ? std::get_if<bool>(&found->value) : nullptr;
  return flag && *flag;
}

void PropertyDictionary::set(std::string_view key, PropertyValue value) {
  const std::size_t place = placeOf(key);
  if (place < members_.size() && members_[place].key == key) {
    members_[place].value = std::move(value);
    return;
  }
  members_.insert(members_.begin() + static_cast<std::ptrdiff_t>(place), {std::string(key), std::move(value)});
}

void PropertyDictionary::setIfAbsent(std::string_view key, PropertyValue value) {
  if (!contains(key)) set(key, std::move(value));
}

std::size_t PropertyDictionary::size() const { return members_.size(); }
std::vector<PropertyMember>::const_iterator PropertyDictionary::begin() const { return members_.begin(); }
std::vector<PropertyMember>::const_iterator PropertyDictionary::end() const { return members_.end(); }
bool PropertyDictionary::operator==(const PropertyDictionary& other) const { return members_ == other.members_; }

}  // namespace zelvo::platform
