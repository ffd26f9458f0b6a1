// Any bytes as a film that a rescue left holes in, which the last two bytes choose. What lies in the holes changes
// neither a quick look nor the film that a deep repair makes; shares add up, and no more is read than may be.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "platform/headless/workers.h"
#include "salvage/deep_repair.h"
#include "salvage/triage/triage.h"
#include "tests/support/memory_files.h"

namespace zelvo::tests {
namespace {

constexpr salvage::TriageLimits kFew{.bytes = 16 * 4096, .places = 16, .ends = 8192};

class DeafObserver final : public salvage::SalvageObserver {
 public:
  void stage(salvage::SalvageStage) override {}
  void read(std::uint64_t) override {}
};

[[noreturn]] void giveUp(const char* what) {
  std::fprintf(stderr, "%s\n", what);
  std::abort();
}

platform::Bytes rescuedFilm(const platform::Bytes& input, const salvage::FilmRescue& rescue) {
  MemoryFiles files;
  files.put("/in.avi", input);
  files.put("/out.avi", {});
  const auto in = files.openForReading("/in.avi");
  const auto out = files.openForWriting("/out.avi");
  DeafObserver observer;
  const platform::CancelMark cancel;
  platform::headless::HeadlessWorkers workers;
  workers.setProcessors(1);
  const salvage::SalvageReport report = salvage::salvage({.input = *in.file,
                                                          .inputSize = input.size(),
                                                          .rescue = &rescue,
                                                          .observer = observer,
                                                          .cancel = cancel,
                                                          .workers = workers,
                                                          .choices = {},
                                                          .makeOutput = [&](std::uint64_t) { return out.file.get(); }});
  if (!report.rescue || report.rescue->gains.size() != rescue.lost.size()) giveUp("a place is not told");
  if (report.rescue->wanted > rescue.lost.size()) giveUp("more is wanted than was lost");
  for (const salvage::RescueGain& gain : report.rescue->gains) {
    if (!(gain.seconds >= 0) || !std::isfinite(gain.seconds)) giveUp("a gain that is none");
  }
  return files.content("/out.avi");
}

salvage::TriageReport look(const platform::Bytes& input, const salvage::FilmRescue& rescue) {
  MemoryFiles files;
  MemoryFile& file = files.put("/in.avi", input);
  const auto in = files.openForReading("/in.avi");
  const platform::CancelMark cancel;
  platform::headless::HeadlessWorkers workers;
  workers.setProcessors(1);
  salvage::TriageReport report =
      salvage::triage({.input = *in.file, .rescue = &rescue, .cancel = cancel, .workers = workers, .limits = kFew});
  if (file.reads > kFew.places || report.bytesRead > kFew.bytes) giveUp("more is read than may be");
  double sum = 0;
  for (const double share : report.shares) {
    if (!(share >= 0)) giveUp("a share below zero");
    sum += share;
  }
  if (!input.empty() && std::abs(sum - 1) > 1e-6) giveUp("shares do not add up");
  const salvage::TriageEstimate& kept = report.kept;
  if (!(kept.low >= 0 && kept.low <= kept.share && kept.share <= kept.high && kept.high <= 1)) giveUp("bounds");
  return report;
}

}  // namespace
}  // namespace zelvo::tests

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zelvo;
  if (size < 2) return 0;
  const auto bytes = std::as_bytes(std::span(data, size - 2));
  platform::Bytes input(bytes.begin(), bytes.end());
  salvage::FilmRescue rescue;
  const std::uint64_t step = 16 + 8 * std::uint64_t{data[size - 1]};
  for (std::uint64_t at = 3 * std::uint64_t{data[size - 2]}; at < size; at += 4 * step)
    rescue.lost.push_back({at, at + step});
  const platform::Bytes film = tests::rescuedFilm(input, rescue);
  const salvage::TriageReport seen = tests::look(input, rescue);
  for (const salvage::ByteSpan& lost : rescue.lost) {
    for (std::uint64_t i = lost.begin; i < std::min<std::uint64_t>(lost.end, input.size()); ++i)
      input[static_cast<std::size_t>(i)] ^= std::byte{0x5a};
  }
  if (tests::rescuedFilm(input, rescue) != film) tests::giveUp("what was not rescued is in the film");
  if (tests::look(input, rescue).shares != seen.shares) tests::giveUp("what was not rescued was looked at");
  return 0;
}
