// Takes the place of zelvo-avi-decoder in tests, and misbehaves: its argument says how. It confines itself as the real
// one does.
#include <fcntl.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <map>
#include <string>

#include "platform/linux/decoder_confinement.h"
#include "platform/linux/decoder_protocol.h"

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

long mapCode() {
  void* const at = ::mmap(nullptr, 4096, PROT_READ | PROT_EXEC, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  return at == MAP_FAILED ? -1 : 0;
}

long protectCode() {
  void* const at = ::mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  return ::mprotect(at, 4096, PROT_READ | PROT_EXEC);
}

/// How much it gets before there is no more, in MiB.
long takeMemory() {
  constexpr std::size_t kStep = std::size_t{1} << 20U;
  long count = 0;
  while (void* const more = std::malloc(kStep)) {
    std::memset(more, 1, kStep);
    if (++count > 2048) break;
  }
  return count;
}

const std::map<std::string, std::function<long()>>& calls() {
  static const std::map<std::string, std::function<long()>> kCalls = {
      {"socket", [] { return ::syscall(SYS_socket, AF_INET, SOCK_STREAM, 0); }},
      {"connect", [] { return ::syscall(SYS_connect, 0, nullptr, 0); }},
      {"execve", [] { return ::syscall(SYS_execve, "/bin/true", nullptr, nullptr); }},
      {"fork", [] { return ::syscall(SYS_clone, SIGCHLD, nullptr, nullptr, nullptr, nullptr); }},
      {"kill", [] { return ::syscall(SYS_kill, ::getpid(), 0); }},
      {"ptrace", [] { return ::syscall(SYS_ptrace, 0, 0, nullptr, nullptr); }},
      {"unlinkat", [] { return ::syscall(SYS_unlinkat, -1, "/nowhere", 0); }},
      {"renameat2", [] { return ::syscall(SYS_renameat2, -1, "/nowhere", -1, "/there", 0); }},
      {"ioctl", [] { return ::syscall(SYS_ioctl, 0, 0, nullptr); }},
      {"prctl", [] { return ::syscall(SYS_prctl, 3, 0, 0, 0, 0); }},
      {"setuid", [] { return ::syscall(SYS_setuid, 0); }},
      {"dup", [] { return ::syscall(SYS_dup, 0); }},
      {"memfd_create", [] { return ::syscall(SYS_memfd_create, "name", 0); }},
      {"io_uring_setup", [] { return ::syscall(SYS_io_uring_setup, 1, nullptr); }},
      {"mmap of code", mapCode},
      {"mprotect of code", protectCode},
      {"open", [] { return ::syscall(SYS_openat, AT_FDCWD, "/etc/passwd", 0); }},
      {"clone3", [] { return ::syscall(SYS_clone3, nullptr, 0); }},
  };
  return kCalls;
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
    const DecoderReply reply{.complaints = static_cast<std::uint32_t>(takeMemory())};
    tell(&reply, sizeof reply);
  } else if (how == "boast") {
    const DecoderReply reply{.isAccepted = 1, .size = 0xffffffff};
    tell(&reply, sizeof reply);
  } else if (how == "mumble") {
    const DecoderReply reply{.kind = static_cast<zelvo::platform::linux_::DecoderRequestKind>(77)};
    tell(&reply, sizeof reply);
  } else {
    const auto call = calls().find(how);
    if (call == calls().end()) ::_exit(EXIT_FAILURE);
    tellError(call->second());
  }
}

}  // namespace

int main(int argc, char** argv) {
  const std::string how = argc > 1 ? argv[1] : "";
  static_cast<void>(calls());
  const bool isConfined = zelvo::platform::linux_::confine();
  DecoderHello hello{.isConfined = isConfined ? 1U : 0U};
  if (how == "another version") ++hello.version;
  if (how != "silence") tell(&hello, sizeof hello);
  DecoderRequest request;
  while (::read(STDIN_FILENO, &request, sizeof request) == static_cast<ssize_t>(sizeof request)) misbehave(how);
  ::_exit(EXIT_SUCCESS);
}
