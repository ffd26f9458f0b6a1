// Takes the place of zelvo-avi-player in tests, and misbehaves: the name that it is called by says how. It confines
// itself as the real one does. What it plays is a film of two streams with a packet every 40 ms.
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>

#include "platform/linux/decoder_confinement.h"
#include "platform/linux/player_records.h"
#include "tests/platform/linux/forbidden_calls.h"

namespace {

using zelvo::platform::PlayedKind;
using zelvo::platform::PlayFaultKind;
using zelvo::platform::linux_::PlayerRecord;
using zelvo::platform::linux_::PlayerRecordKind;
using zelvo::platform::linux_::PlayerRecords;

constexpr std::uint64_t kPackets = 100;
/// The packet that it stumbles over.
constexpr std::uint64_t kBad = 30;

void crash() {
  ::signal(SIGSEGV, SIG_DFL);  // which a sanitizer has taken
  ::raise(SIGSEGV);
}

/// A call's answer, as the offset of a fault.
void tellError(PlayerRecords& records, long answer) {
  const auto error = static_cast<std::uint64_t>(answer < 0 ? errno : 0);
  records.add({.kind = zelvo::platform::PlayFaultKind::unreadable, .offset = error});
  records.add(PlayerRecord{.kind = PlayerRecordKind::end});
  records.flush();
}

void misbehave(const std::string& how, PlayerRecords& records) {
  if (how == "crash") crash();
  if (how == "throw") ::_exit(EXIT_FAILURE);
  volatile bool goesOn = how == "hang";
  while (goesOn) {
  }
  if (how == "lie") {
    records.add(PlayerRecord{.kind = static_cast<PlayerRecordKind>(77)});
    records.flush();
  }
  if (how == "seconds") ::raise(SIGXCPU);
}

void play(const std::string& how, std::uint64_t first, std::uint64_t leftOut, PlayerRecords& records) {
  for (std::uint32_t stream = 0; stream < 2; ++stream)
    records.add({.stream = stream, .kind = stream == 0 ? PlayedKind::video : PlayedKind::sound, .hasDecoder = true});
  for (std::uint64_t number = first; number < kPackets; ++number) {
    const auto stream = static_cast<std::uint32_t>(number % 2);
    const bool isDecoded = (leftOut >> stream & 1U) == 0;
    records.add({.stream = stream,
                 .number = number,
                 .time = static_cast<std::int64_t>(number / 2 * 40'000),
                 .duration = 40'000,
                 .offset = 1000 * number,
                 .size = 100,
                 .isKey = true,
                 .isDecoded = isDecoded});
    records.flush();
    const bool crashesOften = how == "crash often";
    if (crashesOften && stream == 0 && isDecoded) crash();
    if (number == kBad && !crashesOften) misbehave(how, records);
  }
  if (how == "crash late") crash();
  records.add(PlayerRecord{.kind = PlayerRecordKind::end});
  records.flush();
}

}  // namespace

int main(int argc, char** argv) {
  std::string how = argc > 1 ? argv[1] : "";
  static_cast<void>(zelvo::tests::forbiddenCalls());
  const std::uint64_t first = argc > 4 ? std::strtoull(argv[4], nullptr, 10) : 0;
  const std::uint64_t leftOut = argc > 5 ? std::strtoull(argv[5], nullptr, 10) : 0;
  const bool isThreaded = how.ends_with(" with threads");
  if (isThreaded) how.erase(how.size() - std::strlen(" with threads"));
  PlayerRecords records(STDOUT_FILENO);
  const bool isConfined = zelvo::platform::linux_::confine({.mayStartThreads = isThreaded});
  std::uint64_t version = zelvo::platform::linux_::kPlayerVersion;
  if (how == "another version") ++version;
  records.add({.kind = PlayerRecordKind::hello,
               .flags = isConfined ? PlayerRecord::kFlagOne : 0,
               .a = zelvo::platform::linux_::kPlayerMagic,
               .b = version});
  if (how == "silence") {
    for (;;) {
    }
  }
  records.flush();
  if (how == "crash at once") crash();
  if (how == "memory") {
    errno = static_cast<int>(zelvo::tests::takeMemory(1024));
    tellError(records, -1);
  } else if (const auto call = zelvo::tests::forbiddenCalls().find(how); call != zelvo::tests::forbiddenCalls().end()) {
    tellError(records, call->second());
  } else {
    play(how, first, leftOut, records);
  }
  ::_exit(EXIT_SUCCESS);
}
