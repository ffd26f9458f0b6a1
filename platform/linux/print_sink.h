/// Plain text to standard output.
#pragma once

#include "platform/print_sink.h"

namespace zelvo::platform::linux_ {

/// What is printed appears at once, also when standard output is a file.
class StandardOutputSink final : public PrintSink {
 public:
  void print(std::string_view text) override;
};

}  // namespace zelvo::platform::linux_
