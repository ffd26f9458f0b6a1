// zelvo-avi-player: plays a film where it can do no harm, and tells what comes of it. Started by the programs beside
// it, with the film as standard input and a pipe as standard output; of no use by itself.
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <cstdlib>
#include <exception>
#include <optional>
#include <span>
#include <string_view>

#include "platform/linux/decoder_confinement.h"
#include "platform/linux/player_run.h"
#include "platform/linux/player_stream.h"

namespace {

using namespace zelvo::platform::linux_;

constexpr int kWrongUse = 2;

/// THREADS SEEKS FIRST-PACKET LEFT-OUT LOOKS-AHEAD, each a number.
std::optional<PlayerTask> taskOf(std::span<char* const> arguments) {
  std::array<std::uint64_t, 5> numbers{};
  if (arguments.size() != numbers.size() + 1) return std::nullopt;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const std::string_view text = arguments[i + 1];
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), numbers[i]);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  }
  constexpr std::uint64_t kMaxThreads = 64;
  constexpr std::uint64_t kMaxSeeks = 1000;
  if (numbers[0] == 0 || numbers[0] > kMaxThreads || numbers[1] > kMaxSeeks) return std::nullopt;
  return PlayerTask{.threads = static_cast<unsigned>(numbers[0]),
                    .seeks = static_cast<unsigned>(numbers[1]),
                    .firstPacket = numbers[2],
                    .leftOut = numbers[3],
                    .looksAhead = numbers[4] != 0};
}

/// A film has more memory and time than a single payload: pictures may be large, and long films have long indexes.
Confinement limitsFor(const PlayerTask& task, std::uint64_t size) {
  constexpr std::uint64_t kMiB = std::uint64_t{1} << 20U;
  constexpr std::uint64_t kBytesASecond = std::uint64_t{1} << 17U;
  return {.addressSpace = 1536 * kMiB + task.threads * 64 * kMiB,
          .data = 640 * kMiB + task.threads * 64 * kMiB,
          .seconds = 600 + task.threads * (size / kBytesASecond),
          .mayStartThreads = task.threads > 1};
}

}  // namespace

int main(int argc, char** argv) {
  const auto task = taskOf({argv, static_cast<std::size_t>(argc)});
  struct stat film {};
  if (!task || ::fstat(STDIN_FILENO, &film) != 0 || !S_ISREG(film.st_mode)) return kWrongUse;
  countComplaints();
  PlayerRecords records(STDOUT_FILENO);
  const bool isConfined = confine(limitsFor(*task, static_cast<std::uint64_t>(film.st_size)));
  records.add({.kind = PlayerRecordKind::hello,
               .flags = isConfined ? PlayerRecord::kFlagOne : 0,
               .a = kPlayerMagic,
               .b = kPlayerVersion});
  records.flush();
  try {
    playFilm(STDIN_FILENO, *task, records);
  } catch (const std::exception&) {
    ::_exit(EXIT_FAILURE);  // of memory, which is an answer too
  }
  ::_exit(EXIT_SUCCESS);  // nothing is left to be tidied up, and tidying may want what is not allowed
}
