// The form (all numbers are big-endian): "bplist00", the objects, a table of their offsets, and a trailer of 32 bytes
// that tells the sizes of an offset and of a reference, the number of objects, the topmost one and where the table is.
// An object begins with a byte whose upper half is its kind and whose lower half its count, or 15 when an integer
// object with the count follows. Arrays and sets hold references; dictionaries hold those of their keys, then of their
// values.
#include "platform/linux/property_list_cost.h"

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

namespace zelvo::platform::linux_ {

namespace {

constexpr std::size_t kTrailer = 32;
constexpr std::array kMagic = {std::byte{'b'}, std::byte{'p'}, std::byte{'l'},
                               std::byte{'i'}, std::byte{'s'}, std::byte{'t'}};
constexpr std::uint64_t kPerObject = 64;

/// One object as it lies in the list.
struct Shape {
  std::uint64_t own = kPerObject;    ///< cost without what it refers to
  std::uint64_t references = 0;      ///< how many
  std::uint64_t keys = 0;            ///< how many of them, the first ones, are keys of a dictionary
  std::uint64_t firstReference = 0;  ///< where they start
  bool canBeKey = false;             ///< a text without a character zero
};

class BinaryList {
 public:
  static std::optional<BinaryList> open(std::span<const std::byte> bytes) {
    BinaryList list(bytes);
    if (bytes.size() < kMagic.size() + 2 + kTrailer) return std::nullopt;
    const std::uint64_t trailer = bytes.size() - kTrailer;
    list.offsetSize_ = *list.number(trailer + 6, 1);
    list.referenceSize_ = *list.number(trailer + 7, 1);
    list.objects_ = *list.number(trailer + 8, 8);
    list.top_ = *list.number(trailer + 16, 8);
    list.table_ = *list.number(trailer + 24, 8);
    const bool sizesFit =
        list.offsetSize_ >= 1 && list.offsetSize_ <= 8 && list.referenceSize_ >= 1 && list.referenceSize_ <= 8;
    if (!sizesFit || list.objects_ == 0 || list.top_ >= list.objects_ || list.table_ > trailer ||
        list.objects_ > (trailer - list.table_) / list.offsetSize_) {
      return std::nullopt;
    }
    return list;
  }

  [[nodiscard]] std::size_t objects() const { return static_cast<std::size_t>(objects_); }
  [[nodiscard]] std::size_t top() const { return static_cast<std::size_t>(top_); }

  /// The object that a reference leads to.
  [[nodiscard]] std::optional<std::size_t> referred(const Shape& shape, std::uint64_t index) const {
    const auto object = number(shape.firstReference + index * referenceSize_, referenceSize_);
    if (!object || *object >= objects_) return std::nullopt;
    return static_cast<std::size_t>(*object);
  }

  [[nodiscard]] std::optional<Shape> shapeOf(std::size_t object) const {
    const auto offset = number(table_ + object * offsetSize_, offsetSize_);
    if (!offset || *offset >= bytes_.size() - kTrailer) return std::nullopt;
    const auto mark = std::to_integer<unsigned>(bytes_[static_cast<std::size_t>(*offset)]);
    std::uint64_t at = *offset + 1;
    std::uint64_t count = mark & 15U;
    if (count == 15 && (mark >> 4U) >= 4 && (mark >> 4U) != 8) {
      const auto kind = number(at, 1);
      if (!kind || (*kind >> 4U) != 1 || (*kind & 15U) > 3) return std::nullopt;
      const std::uint64_t width = std::uint64_t{1} << (*kind & 15U);
      const auto longCount = number(at + 1, width);
      if (!longCount || *longCount > bytes_.size()) return std::nullopt;
      count = *longCount;
      at += 1 + width;
    }
    switch (mark >> 4U) {
      case 4:  // data
        return Shape{.own = kPerObject + count};
      case 5:  // text of one byte a character
        return Shape{.own = kPerObject + count, .canBeKey = !hasZero(at, count, 1)};
      case 6:  // text of two bytes a character, three at most once it is UTF-8
        return Shape{.own = kPerObject + 3 * count, .canBeKey = !hasZero(at, count, 2)};
      case 10:  // array
      case 12:  // set
        return Shape{.references = count, .firstReference = at};
      case 13:  // dictionary
        return Shape{.references = 2 * count, .keys = count, .firstReference = at};
      default:
        return Shape{};
    }
  }

 private:
  explicit BinaryList(std::span<const std::byte> bytes) : bytes_(bytes) {}

  /// Whether a text of `count` characters, or what of it lies in the list, has a character zero.
  [[nodiscard]] bool hasZero(std::uint64_t at, std::uint64_t count, std::uint64_t width) const {
    for (std::uint64_t character = 0; character < count; ++character) {
      if (number(at + character * width, width) == std::uint64_t{0}) return true;
    }
    return false;
  }

  [[nodiscard]] std::optional<std::uint64_t> number(std::uint64_t at, std::uint64_t width) const {
    if (at > bytes_.size() || width > bytes_.size() - at) return std::nullopt;
    std::uint64_t value = 0;
    for (const std::byte byte : bytes_.subspan(static_cast<std::size_t>(at), static_cast<std::size_t>(width))) {
      value = (value << 8U) | std::to_integer<std::uint64_t>(byte);
    }
    return value;
  }

  std::span<const std::byte> bytes_;
  std::uint64_t offsetSize_ = 0;
  std::uint64_t referenceSize_ = 0;
  std::uint64_t objects_ = 0;
  std::uint64_t top_ = 0;
  std::uint64_t table_ = 0;
};

/// What is known of an object.
struct Known {
  bool entered = false;
  bool canBeKey = false;
  std::uint64_t cost = 0;  ///< 0 while it is being found out: an object that is met then holds itself
  std::size_t height = 0;  ///< levels of it and below it
};

/// An object whose references are being followed.
struct Step {
  std::size_t object;
  Shape shape;
  std::uint64_t next = 0;
};

}  // namespace

bool isBinaryList(std::span<const std::byte> bytes) {
  return bytes.size() >= kMagic.size() && std::ranges::equal(bytes.first(kMagic.size()), kMagic);
}

bool isReadable(std::span<const std::byte> binaryList, std::size_t deepest, std::uint64_t most) {
  const auto list = BinaryList::open(binaryList);
  if (!list) return false;
  std::vector<Known> known(list->objects());
  std::vector<Step> path;
  std::uint64_t followed = 0;
  const auto enter = [&](std::size_t object) {
    const auto shape = list->shapeOf(object);
    if (!shape || path.size() > deepest) return false;
    known[object] = {.entered = true, .canBeKey = shape->canBeKey, .height = 1};
    path.push_back({object, *shape});
    return true;
  };
  if (!enter(list->top())) return false;
  while (!path.empty()) {
    Step& step = path.back();
    Known& here = known[step.object];
    if (step.next == step.shape.references) {
      here.cost = step.shape.own;
      path.pop_back();
      continue;
    }
    // The references followed are no more than the places written out, so this ends in time.
    if (++followed > most / kPerObject) return false;
    const auto object = list->referred(step.shape, step.next);
    if (!object) return false;
    const Known& below = known[*object];
    if (!below.entered) {
      if (!enter(*object)) return false;
      continue;  // comes back to this reference once the object is known
    }
    if (below.cost == 0) return false;
    if (step.next < step.shape.keys && !below.canBeKey) return false;
    ++step.next;
    step.shape.own += below.cost;
    here.height = std::max(here.height, below.height + 1);
    if (step.shape.own > most || here.height > deepest + 1) return false;
  }
  return known[list->top()].cost <= most;
}

}  // namespace zelvo::platform::linux_
