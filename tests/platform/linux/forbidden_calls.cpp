#include "tests/platform/linux/forbidden_calls.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>

namespace zelvo::tests {

namespace {

long mapCode() {
  void* const at = ::mmap(nullptr, 4096, PROT_READ | PROT_EXEC, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  return at == MAP_FAILED ? -1 : 0;
}

long protectCode() {
  void* const at = ::mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  return ::mprotect(at, 4096, PROT_READ | PROT_EXEC);
}

/// How much it gets before there is no more, in MiB.
long takeMemoryUpTo(long most) {
  constexpr std::size_t kStep = std::size_t{1} << 20U;
  long count = 0;
  while (void* const more = std::malloc(kStep)) {
    std::memset(more, 1, kStep);
    if (++count > most) break;
  }
  return count;
}

}  // namespace

const ForbiddenCallTable& forbiddenCalls() {
  static const ForbiddenCallTable kCalls = {
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

long takeMemory(long most) { return takeMemoryUpTo(most); }

}  // namespace zelvo::tests
