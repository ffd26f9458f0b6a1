// The reader of property lists on the bytes of anybody: it answers a tree or nothing, in little time and memory. A tree
// that it answers can be written as XML and read again.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>

#include "platform/linux/property_lists.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using zelvo::platform::PropertyLists;
  zelvo::platform::linux_::LinuxPropertyLists lists;
  const auto tree = lists.parse(std::as_bytes(std::span(data, size)), PropertyLists::kLargestFromOutside);
  if (!tree) return 0;
  // Written as XML it may be larger by far.
  constexpr std::size_t kLargestWritten = PropertyLists::kLargestFromOutside * PropertyLists::kLargestGrowth * 8;
  const std::string written = lists.format(*tree);
  if (!lists.parse(std::as_bytes(std::span(written)), kLargestWritten)) {
    std::fprintf(stderr, "what was read cannot be read again once it is written:\n%s\n", written.c_str());
    std::abort();
  }
  return 0;
}
