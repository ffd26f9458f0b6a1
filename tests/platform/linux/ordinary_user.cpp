#include "tests/platform/linux/ordinary_user.h"

#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zelvo::tests {

namespace {

constexpr unsigned kNobody = 65534;

}  // namespace

bool holdsForAnOrdinaryUser(const std::function<bool()>& check) {
  const pid_t child = ::fork();
  if (child == 0) {
    if (::geteuid() == 0 && (::setgid(kNobody) != 0 || ::setuid(kNobody) != 0)) ::_exit(2);
    ::_exit(check() ? 0 : 1);
  }
  int status = 0;
  return child > 0 && ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace zelvo::tests
