// Takes the place of zelvo-avi-decoder in tests, and misbehaves: its argument says how. It confines itself as the real
// one does.
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>

#include "platform/linux/decoder_confinement.h"
#include "platform/linux/decoder_protocol.h"
#include "tests/platform/linux/forbidden_calls.h"

namespace {

using zelvo::platform::linux_::DecoderHello;
using zelvo::platform::linux_::DecoderReply;
using zelvo::platform::linux_::DecoderRequest;

void tell(const void* data, std::size_t size) {
  if (::write(STDIN_FILENO, data, size) < 0) ::_exit(EXIT_FAILURE);
}

/// What a call answered, which the other side reads as the number of complaints.
void tellError(long answer) {
  const DecoderReply reply{.isAccepted = answer >= 0 ? 1U : 0U,
                           .complaints = answer < 0 ? static_cast<std::uint32_t>(errno) : 0U};
  tell(&reply, sizeof reply);
}

void misbehave(const std::string& how) {
  if (how == "crash") {
    ::signal(SIGSEGV, SIG_DFL);  // which a sanitizer has taken
    ::raise(SIGSEGV);
  } else if (how == "hang") {
    for (;;) {
    }
  } else if (how == "leave") {
    ::_exit(EXIT_SUCCESS);
  } else if (how == "memory") {
    const DecoderReply reply{.complaints = static_cast<std::uint32_t>(zelvo::tests::takeMemory(2048))};
    tell(&reply, sizeof reply);
  } else if (how == "boast") {
    const DecoderReply reply{.isAccepted = 1, .size = 0xffffffff};
    tell(&reply, sizeof reply);
  } else if (how == "mumble") {
    const DecoderReply reply{.kind = static_cast<zelvo::platform::linux_::DecoderRequestKind>(77)};
    tell(&reply, sizeof reply);
  } else {
    const auto call = zelvo::tests::forbiddenCalls().find(how);
    if (call == zelvo::tests::forbiddenCalls().end()) ::_exit(EXIT_FAILURE);
    tellError(call->second());
  }
}

}  // namespace

int main(int argc, char** argv) {
  const std::string how = argc > 1 ? argv[1] : "";
  static_cast<void>(zelvo::tests::forbiddenCalls());
  const bool isConfined = zelvo::platform::linux_::confine();
  DecoderHello hello{.isConfined = isConfined ? 1U : 0U};
  if (how == "another version") ++hello.version;
  if (how != "silence") tell(&hello, sizeof hello);
  DecoderRequest request;
  while (::read(STDIN_FILENO, &request, sizeof request) == static_cast<ssize_t>(sizeof request)) misbehave(how);
  ::_exit(EXIT_SUCCESS);
}
