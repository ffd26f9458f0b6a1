#include "tests/bench/bench_inputs.h"

#include <algorithm>
#include <fstream>
#include <random>
#include <vector>

#include "engine/sample_tables.h"
#include "tests/support/avi_builder.h"

namespace zelvo::tests {

namespace {

using platform::Bytes;

class Writer {
 public:
  explicit Writer(const std::string& path) : out_(path, std::ios::binary | std::ios::trunc) {}

  void write(const Bytes& bytes) {
    // A stream of char writes what a buffer of std::byte holds.
    out_.write(static_cast<const char*>(static_cast<const void*>(bytes.data())),
               static_cast<std::streamsize>(bytes.size()));
    size_ += bytes.size();
  }

  /// A chunk whose payload is noise.
  void chunk(std::string_view code, std::uint32_t size) {
    Bytes bytes;
    tests::appendText(bytes, code);
    tests::appendNumber(bytes, size);
    const std::size_t start = bytes.size();
    bytes.resize(start + size + size % 2);
    const std::size_t from = random_() % (noise_.size() - size - 1);
    std::copy_n(noise_.begin() + static_cast<std::ptrdiff_t>(from), size,
                bytes.begin() + static_cast<std::ptrdiff_t>(start));
    write(bytes);
  }

  [[nodiscard]] std::uint32_t between(std::uint32_t least, std::uint32_t most) {
    return least + static_cast<std::uint32_t>(random_() % (most - least + 1));
  }
  [[nodiscard]] std::uint64_t size() const { return size_; }
  [[nodiscard]] bool good() const { return out_.good(); }

 private:
  [[nodiscard]] Bytes makeNoise() {
    Bytes bytes(std::size_t{1} << 22U);
    for (std::byte& byte : bytes) byte = static_cast<std::byte>(random_() & 0xffU);
    return bytes;
  }

  std::mt19937_64 random_{20240607};
  std::ofstream out_;
  std::uint64_t size_ = 0;
  const Bytes noise_ = makeNoise();
};

}  // namespace

bool makeInput(const std::string& kind, const std::string& path, std::uint64_t size) {
  Writer out(path);
  tests::AviBuilder builder;
  Bytes head = builder.headers();
  tests::appendText(head, "LIST");
  tests::appendNumber(head, 0);
  tests::appendText(head, "movi");
  out.write(head);
  if (kind == "frames") {
    while (out.size() < size && out.good()) {
      out.chunk("00dc", out.between(10000, 100000));
      out.chunk("01wb", 2048);
    }
  } else if (kind == "small") {
    while (out.size() < size && out.good()) {
      out.chunk("00dc", out.between(700, 1500));
      out.chunk("01wb", out.between(300, 600));
    }
  } else if (kind == "full") {
    for (std::uint64_t i = 0; i < engine::kSampleTableEntries + 100 && out.good(); ++i) {
      out.chunk("00dc", 24);
      out.chunk("01wb", 8);
    }
  } else if (kind == "dense") {
    Bytes bytes;
    while (bytes.size() < 1048576) {
      tests::appendText(bytes, "00dc");
      tests::appendNumber(bytes, out.between(1, 1249999) * 8);  // look-aheads reach far and find a code
    }
    while (out.size() < size && out.good()) out.write(bytes);
  } else {
    return false;
  }
  return out.good();
}

}  // namespace zelvo::tests
