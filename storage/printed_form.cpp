#include "storage/printed_form.h"

#include <type_traits>

namespace zelvo::storage {

namespace {

using platform::PropertyDictionary;
using platform::PropertyValue;

void appendHexadecimal(std::string& out, unsigned byte) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  out += kDigits[byte / 16 % 16];
  out += kDigits[byte % 16];
}

void appendDictionary(std::string& out, const PropertyDictionary& dictionary, std::size_t indent);

void appendValue(std::string& out, const PropertyValue& tree, std::size_t indent) {
  std::visit(
      [&](const auto& value) {
        using Value = std::remove_cvref_t<decltype(value)>;
        if constexpr (std::is_same_v<Value, bool>) {
          out += value ? "Yes" : "No";
        } else if constexpr (std::is_same_v<Value, std::string>) {
          out += '"' + withVisibleControls(value) + '"';
        } else if constexpr (std::is_same_v<Value, platform::Bytes>) {
          out += '<';
          for (const std::byte byte : value) appendHexadecimal(out, std::to_integer<unsigned>(byte));
          out += '>';
        } else if constexpr (std::is_same_v<Value, platform::PropertyDate>) {
          out += std::to_string(value.seconds) + " s since 2001";
        } else if constexpr (std::is_same_v<Value, platform::PropertyArray>) {
          out += '(';
          for (const PropertyValue& item : value) {
            if (&item != value.data()) out += ", ";
            appendValue(out, item, indent);
          }
          out += ')';
        } else if constexpr (std::is_same_v<Value, PropertyDictionary>) {
          appendDictionary(out, value, indent);
        } else {
          out += std::to_string(value);
        }
      },
      tree.value);
}

void appendDictionary(std::string& out, const PropertyDictionary& dictionary, std::size_t indent) {
  out += "{\n";
  for (const platform::PropertyMember& member : dictionary) {
    out.append(indent + 2, ' ');
    out += '"' + withVisibleControls(member.key) + "\" = ";
    appendValue(out, member.value, indent + 2);
    out += '\n';
  }
  out.append(indent, ' ');
  out += '}';
}

}  // namespace

std::string withVisibleControls(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t at = 0; at < text.size(); ++at) {
    const auto byte = static_cast<unsigned char>(text[at]);
    // The second control range (U+0080 to U+009F) starts with 0xC2 in UTF-8.
    const bool secondRange = byte == 0xC2 && at + 1 < text.size() && static_cast<unsigned char>(text[at + 1]) < 0xA0;
    if (byte >= 0x20 && byte != 0x7F && !secondRange) {
      out += text[at];
      continue;
    }
    out += "\\x";
    appendHexadecimal(out, secondRange ? static_cast<unsigned char>(text[++at]) : byte);
  }
  return out;
}

std::string printedForm(const platform::PropertyDictionary& properties) {
  std::string out;
  appendDictionary(out, properties, 0);
  out += '\n';
  return out;
}

}  // namespace zelvo::storage
