/// Binary property lists, built object by object.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zelvo::tests {

class BinaryListBuilder {
 public:
  /// Adds an object as its bytes are; answers its number. References are of two bytes.
  std::size_t add(std::string object) {
    objects_.push_back(std::move(object));
    return objects_.size() - 1;
  }
  std::size_t text(const std::string& content) { return add(marked(5, content.size()) + content); }
  std::size_t array(const std::vector<std::size_t>& items) { return add(marked(10, items.size()) + references(items)); }
  std::size_t dictionary(const std::vector<std::size_t>& keys, const std::vector<std::size_t>& values) {
    return add(marked(13, keys.size()) + references(keys) + references(values));
  }

  [[nodiscard]] std::string build(std::size_t top) const {
    std::string list = "bplist00";
    std::string table;
    for (const std::string& object : objects_) {
      table += bigEndian(list.size(), 4);
      list += object;
    }
    const std::size_t tableOffset = list.size();
    return list + table + std::string(6, '\0') + bigEndian(4, 1) + bigEndian(2, 1) + bigEndian(objects_.size(), 8) +
           bigEndian(top, 8) + bigEndian(tableOffset, 8);
  }

  static std::string bigEndian(std::uint64_t value, unsigned width) {
    std::string bytes;
    for (unsigned byte = width; byte-- > 0;) bytes += static_cast<char>((value >> (8 * byte)) & 255U);
    return bytes;
  }
  static std::string marked(unsigned kind, std::size_t count) {
    const unsigned low = count < 15 ? static_cast<unsigned>(count) : 15U;
    std::string mark(1, static_cast<char>((kind << 4U) | low));
    if (count >= 15) mark += '\x12' + bigEndian(count, 4);
    return mark;
  }

 private:
  static std::string references(const std::vector<std::size_t>& items) {
    std::string bytes;
    for (const std::size_t item : items) bytes += bigEndian(item, 2);
    return bytes;
  }

  std::vector<std::string> objects_;
};

}  // namespace zelvo::tests
