// Decision: decoding, Decoders work in a confined program
#include "platform/linux/decoder_confinement.h"

#include <linux/prctl.h>
#include <sched.h>
#include <seccomp.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <initializer_list>

namespace zelvo::platform::linux_ {

namespace {

constexpr bool kMayConfine = ZELVO_CONFINES_DECODER;

void require(bool isDone) {
  constexpr int kRefused = 3;
  if (!isDone) ::_exit(kRefused);
}

void limit(__rlimit_resource_t resource, rlim_t most) {
  const rlimit both{most, most};
  require(::setrlimit(resource, &both) == 0);
}

void limitResources(const Confinement& limits) {
  limit(RLIMIT_AS, limits.addressSpace);
  limit(RLIMIT_DATA, limits.data);
  limit(RLIMIT_CPU, limits.seconds);
  limit(RLIMIT_FSIZE, 0);
}

void filterCalls(bool mayStartThreads) {
  const scmp_filter_ctx filter = ::seccomp_init(SCMP_ACT_KILL_PROCESS);
  require(filter != nullptr);
  const auto rule = [filter](std::uint32_t action, int call) {
    require(::seccomp_rule_add_array(filter, action, call, 0, nullptr) == 0);
  };
  for (const int call : {SCMP_SYS(read),
                         SCMP_SYS(write),
                         SCMP_SYS(pread64),
                         SCMP_SYS(brk),
                         SCMP_SYS(munmap),
                         SCMP_SYS(mremap),
                         SCMP_SYS(madvise),
                         SCMP_SYS(futex),
                         SCMP_SYS(newfstatat),
                         SCMP_SYS(fstat),
                         SCMP_SYS(sched_getaffinity),
                         SCMP_SYS(clock_gettime),
                         SCMP_SYS(gettimeofday),
                         SCMP_SYS(getpid),
                         SCMP_SYS(gettid),
                         SCMP_SYS(tgkill),
                         SCMP_SYS(rt_sigprocmask),
                         SCMP_SYS(rt_sigaction),
                         SCMP_SYS(rt_sigreturn),
                         SCMP_SYS(close),
                         SCMP_SYS(exit),
                         SCMP_SYS(exit_group)}) {
    rule(SCMP_ACT_ALLOW, call);
  }
  // Memory that code could run from is never given.
  const scmp_arg_cmp isNoCode{2, SCMP_CMP_MASKED_EQ, PROT_EXEC, 0};
  for (const int call : {SCMP_SYS(mmap), SCMP_SYS(mprotect)})
    require(::seccomp_rule_add_array(filter, SCMP_ACT_ALLOW, call, 1, &isNoCode) == 0);
  for (const int call : {SCMP_SYS(open), SCMP_SYS(openat)}) rule(SCMP_ACT_ERRNO(EACCES), call);
  if (mayStartThreads) {
    // The older call says what it wants where a filter can see it; it is tried when the newer one is not there.
    rule(SCMP_ACT_ERRNO(ENOSYS), SCMP_SYS(clone3));
    const scmp_arg_cmp isThread{0, SCMP_CMP_MASKED_EQ, CLONE_THREAD, CLONE_THREAD};
    require(::seccomp_rule_add_array(filter, SCMP_ACT_ALLOW, SCMP_SYS(clone), 1, &isThread) == 0);
    const scmp_arg_cmp isName{0, SCMP_CMP_EQ, PR_SET_NAME, 0};
    require(::seccomp_rule_add_array(filter, SCMP_ACT_ALLOW, SCMP_SYS(prctl), 1, &isName) == 0);
    for (const int call : {SCMP_SYS(set_robust_list), SCMP_SYS(rseq)}) rule(SCMP_ACT_ALLOW, call);
  } else {
    // A decoder that wants a thread hears that there is none; the other way to start a process is not tried then.
    rule(SCMP_ACT_ERRNO(EAGAIN), SCMP_SYS(clone3));
  }
  require(::seccomp_load(filter) == 0);
  ::seccomp_release(filter);
}

}  // namespace

bool confine(const Confinement& limits) {
  limit(RLIMIT_CORE, 0);
  if constexpr (!kMayConfine) return false;
  limitResources(limits);
  filterCalls(limits.mayStartThreads);
  return true;
}

}  // namespace zelvo::platform::linux_
