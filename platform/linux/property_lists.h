/// Property lists by libplist.
#pragma once

#include "platform/property_lists.h"

namespace zelvo::platform::linux_ {

class LinuxPropertyLists final : public PropertyLists {
 public:
  [[nodiscard]] std::optional<PropertyValue> parse(std::span<const std::byte> bytes, std::size_t largest) override;
  [[nodiscard]] std::string format(const PropertyValue& tree) override;
};

}  // namespace zelvo::platform::linux_
