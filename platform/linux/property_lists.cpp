#include "platform/linux/property_lists.h"

#include <plist/plist.h>
#include <pthread.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <limits>
#include <memory>
#include <string_view>
#include <type_traits>

#include "platform/linux/property_list_cost.h"
#include "platform/printable_text.h"
#include "platform/utf8.h"

namespace zelvo::platform::linux_ {

namespace {

struct FreeNode {
  void operator()(void* node) const { plist_free(node); }
};
using OwnedNode = std::unique_ptr<void, FreeNode>;

struct FreeText {
  void operator()(void* text) const { std::free(text); }  // NOLINT: the library allocates with malloc
};

std::optional<PropertyValue> treeOf(plist_t node, std::size_t levelsLeft);

std::optional<PropertyValue> arrayOf(plist_t node, std::size_t levelsLeft) {
  PropertyArray array;
  const std::uint32_t count = plist_array_get_size(node);
  array.reserve(count);
  plist_array_iter newIterator = nullptr;
  plist_array_new_iter(node, &newIterator);
  const std::unique_ptr<void, FreeText> iterator(newIterator);
  for (std::uint32_t at = 0; at < count; ++at) {
    plist_t item = nullptr;
    plist_array_next_item(node, iterator.get(), &item);
    auto value = treeOf(item, levelsLeft);
    if (!value) return std::nullopt;
    array.push_back(std::move(*value));
  }
  return PropertyValue(std::move(array));
}

std::optional<PropertyValue> dictionaryOf(plist_t node, std::size_t levelsLeft) {
  PropertyDictionary members;
  plist_dict_iter newIterator = nullptr;
  plist_dict_new_iter(node, &newIterator);
  const std::unique_ptr<void, FreeText> iterator(newIterator);
  while (iterator) {
    char* newKey = nullptr;
    plist_t item = nullptr;
    plist_dict_next_item(node, iterator.get(), &newKey, &item);
    const std::unique_ptr<char, FreeText> key(newKey);
    if (!key || !item) break;
    auto value = treeOf(item, levelsLeft);
    if (!value) return std::nullopt;
    members.set(key.get(), std::move(*value));
  }
  return PropertyValue(std::move(members));
}

/// The node as a tree of ours; nothing when it nests too deep. The library answers nothing that has no kind of ours but
/// the references of archived objects, which count as their number.
std::optional<PropertyValue> treeOf(plist_t node, std::size_t levelsLeft) {
  std::uint64_t number = 0;
  switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
      std::uint8_t flag = 0;
      plist_get_bool_val(node, &flag);
      return PropertyValue(flag != 0);
    }
    case PLIST_UINT:
      plist_get_uint_val(node, &number);
      return PropertyValue(number);
    case PLIST_UID:
      plist_get_uid_val(node, &number);
      return PropertyValue(number);
    case PLIST_REAL: {
      double real = 0;
      plist_get_real_val(node, &real);
      return PropertyValue(real);
    }
    case PLIST_DATE: {
      std::int32_t seconds = 0;
      std::int32_t microseconds = 0;
      plist_get_date_val(node, &seconds, &microseconds);
      return PropertyValue(PropertyDate{seconds});
    }
    case PLIST_STRING: {
      std::uint64_t length = 0;
      const char* text = plist_get_string_ptr(node, &length);
      return PropertyValue(text ? std::string(text, length) : std::string());
    }
    case PLIST_DATA: {
      std::uint64_t length = 0;
      const char* data = plist_get_data_ptr(node, &length);
      const auto bytes = std::as_bytes(std::span(data, data ? length : 0));
      return PropertyValue(Bytes(bytes.begin(), bytes.end()));
    }
    case PLIST_ARRAY:
      return levelsLeft > 0 ? arrayOf(node, levelsLeft - 1) : std::nullopt;
    case PLIST_DICT:
      return levelsLeft > 0 ? dictionaryOf(node, levelsLeft - 1) : std::nullopt;
    default:
      return std::nullopt;
  }
}

/// Bytes of the character that `text` starts with; 0 when it is none that XML can hold.
std::size_t characterLength(std::string_view text) {
  const Utf8Character character = utf8CharacterAt(text);
  const bool isForbidden =
      character.value < 0x20 && character.value != '\t' && character.value != '\n' && character.value != '\r';
  return isForbidden ? 0 : character.length;
}

std::string textForXml(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  while (!text.empty()) {
    const std::size_t length = characterLength(text);
    if (length == 0) out += "\xEF\xBF\xBD";
    out += text.substr(0, length);
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return out;
}

/// The written list with whatever would steer a terminal as a character reference, which changes no value. Outside of
/// keys and texts stand only the library's own tabs and line ends.
std::string withReferences(std::string_view xml) {
  std::string out;
  out.reserve(xml.size());
  bool isValue = false;
  while (!xml.empty()) {
    if (xml.front() == '<') {  // a tag: in a value it is "&lt;"
      const std::string_view tag = xml.substr(0, std::min(xml.find('>'), xml.size() - 1) + 1);
      isValue = tag == "<key>" || tag == "<string>";
      out += tag;
      xml.remove_prefix(tag.size());
      continue;
    }
    const Utf8Character character = utf8CharacterAt(xml);
    const std::size_t length = std::max<std::size_t>(character.length, 1);
    if (isValue && character.length > 0 && steersTerminal(character.value)) {
      out += "&#" + std::to_string(static_cast<std::uint32_t>(character.value)) + ";";
    } else {
      out += xml.substr(0, length);
    }
    xml.remove_prefix(length);
  }
  return out;
}

plist_t nodeOf(const PropertyValue& tree) {
  return std::visit(
      [](const auto& value) -> plist_t {
        using Value = std::remove_cvref_t<decltype(value)>;
        if constexpr (std::is_same_v<Value, bool>) {
          return plist_new_bool(value ? 1 : 0);
        } else if constexpr (std::is_same_v<Value, std::int32_t>) {
          return value < 0 ? plist_new_string(std::to_string(value).c_str())
                           : plist_new_uint(static_cast<std::uint64_t>(value));
        } else if constexpr (std::is_same_v<Value, std::uint64_t>) {
          return plist_new_uint(value);
        } else if constexpr (std::is_same_v<Value, double>) {
          return plist_new_real(value);
        } else if constexpr (std::is_same_v<Value, std::string>) {
          return plist_new_string(textForXml(value).c_str());
        } else if constexpr (std::is_same_v<Value, Bytes>) {
          return plist_new_data(reinterpret_cast<const char*>(value.data()), value.size());
        } else if constexpr (std::is_same_v<Value, PropertyDate>) {
          return plist_new_date(static_cast<std::int32_t>(value.seconds), 0);
        } else if constexpr (std::is_same_v<Value, PropertyArray>) {
          plist_t array = plist_new_array();
          for (const PropertyValue& item : value) plist_array_append_item(array, nodeOf(item));
          return array;
        } else {
          plist_t dictionary = plist_new_dict();
          for (const PropertyMember& member : value) {
            plist_dict_set_item(dictionary, textForXml(member.key).c_str(), nodeOf(member.value));
          }
          return dictionary;
        }
      },
      tree.value);
}

/// One list to be read on a thread of its own.
struct ListReading {
  std::span<const std::byte> bytes;
  std::optional<PropertyValue> tree;
};

void* read(void* context) {
  auto& reading = *static_cast<ListReading*>(context);
  plist_t parsed = nullptr;
  plist_from_memory(reinterpret_cast<const char*>(reading.bytes.data()),
                    static_cast<std::uint32_t>(reading.bytes.size()), &parsed);
  const OwnedNode list(parsed);
  if (list) reading.tree = treeOf(list.get(), PropertyLists::kDeepest);
  return nullptr;
}

/// Reads with a stack that no nesting exhausts: the library's own functions call themselves for each level, with less
/// than a hundred and sixty bytes each, and a level takes five bytes of a list or more. Nothing without a thread.
std::optional<PropertyValue> readOnLargeStack(std::span<const std::byte> bytes) {
  constexpr std::size_t kLeastStack = std::size_t{8} * 1024 * 1024;
  constexpr std::size_t kStackPerByte = 64;
  ListReading reading{bytes, std::nullopt};
  pthread_attr_t attributes;
  pthread_t thread{};
  if (::pthread_attr_init(&attributes) != 0) return std::nullopt;
  const bool started =
      ::pthread_attr_setstacksize(&attributes, std::max(kLeastStack, bytes.size() * kStackPerByte)) == 0 &&
      ::pthread_create(&thread, &attributes, &read, &reading) == 0;
  ::pthread_attr_destroy(&attributes);
  if (!started) return std::nullopt;
  ::pthread_join(thread, nullptr);
  return std::move(reading.tree);
}

}  // namespace

std::optional<PropertyValue> LinuxPropertyLists::parse(std::span<const std::byte> bytes, std::size_t largest) {
  // The library takes a list that starts with a byte order mark for something else.
  constexpr std::array kByteOrderMark{std::byte{0xEF}, std::byte{0xBB}, std::byte{0xBF}};
  if (bytes.size() > largest || bytes.size() > std::numeric_limits<std::uint32_t>::max()) return std::nullopt;
  if (bytes.size() >= kByteOrderMark.size() && std::ranges::equal(bytes.first(kByteOrderMark.size()), kByteOrderMark)) {
    bytes = bytes.subspan(kByteOrderMark.size());
  }
  if (bytes.empty()) return std::nullopt;
  // What a small binary list would grow to is found out first.
  // Decision: update, Binary lists are weighed first
  if (isBinaryList(bytes) && !isReadable(bytes, kDeepest, std::uint64_t{kLargestGrowth} * largest)) return std::nullopt;
  return readOnLargeStack(bytes);
}

std::string LinuxPropertyLists::format(const PropertyValue& tree) {
  const OwnedNode list(nodeOf(tree));
  char* newText = nullptr;
  std::uint32_t length = 0;
  plist_to_xml(list.get(), &newText, &length);
  const std::unique_ptr<char, FreeText> text(newText);
  return text ? withReferences(std::string_view(text.get(), length)) : std::string();
}

}  // namespace zelvo::platform::linux_
