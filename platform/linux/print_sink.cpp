#include "platform/linux/print_sink.h"

#include <cstdio>

namespace zelvo::platform::linux_ {

void StandardOutputSink::print(std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stdout);
  std::fflush(stdout);
}

}  // namespace zelvo::platform::linux_
