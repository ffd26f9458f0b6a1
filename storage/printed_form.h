/// Properties as text that a developer reads.
#pragma once

#include <string>
#include <string_view>

#include "platform/property_value.h"

namespace zelvo::storage {

/// The dictionary in braces, one member a line, in the order of the keys, with a line end after it. Data shows as
/// hexadecimal digits.
[[nodiscard]] std::string printedForm(const platform::PropertyDictionary& properties);

/// The text with each control character as \xNN: texts come from devices and must not steer a terminal.
[[nodiscard]] std::string withVisibleControls(std::string_view text);

}  // namespace zelvo::storage
