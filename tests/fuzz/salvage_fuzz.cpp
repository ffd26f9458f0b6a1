// A whole deep repair of any bytes. Whatever they are, it answers; an output has the size that it was announced with,
// is no larger than what may be, holds no error that an inspection finds, and a second run gives the same bytes.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "avi/outline.h"
#include "platform/linux/workers.h"
#include "salvage/deep_repair.h"
#include "tests/support/memory_files.h"

namespace zelvo::tests {
namespace {

class NoObserver final : public salvage::SalvageObserver {
 public:
  void stage(salvage::SalvageStage) override {}
  void read(std::uint64_t) override {}
};

class FirstProblem final : public avi::OutlineSink {
 public:
  void beginList(const avi::OutlineItem&) override {}
  void endList(const avi::OutlineItem&, const avi::DataSums&) override {}
  void endFile(const avi::DataSums&) override {}
  void chunk(const avi::OutlineItem&, const std::vector<avi::Field>&, const std::optional<avi::IndexReport>&) override {
  }
  void problem(const avi::Problem& problem, std::size_t) override {
    if (!first) first = problem;
  }
  std::optional<avi::Problem> first;
};

[[noreturn]] void fail(const char* what, std::uint64_t one = 0, std::uint64_t other = 0) {
  std::fprintf(stderr, "%s: %llu, %llu\n", what, static_cast<unsigned long long>(one),
               static_cast<unsigned long long>(other));
  std::abort();
}

/// The film that comes of `input`; empty when none does.
platform::Bytes salvaged(const platform::Bytes& input, const salvage::SalvageChoices& choices) {
  MemoryFiles files;
  files.put("/in.avi", input);
  files.put("/out.avi", {});
  const auto in = files.openForReading("/in.avi");
  const auto out = files.openForWriting("/out.avi");
  NoObserver observer;
  platform::linux_::LinuxWorkers workers;
  const platform::CancelMark cancel;
  std::uint64_t announced = 0;
  salvage::SalvageRun run{.input = *in.file,
                          .inputSize = input.size(),
                          .observer = observer,
                          .cancel = cancel,
                          .workers = workers,
                          .choices = choices,
                          .makeOutput = [&](std::uint64_t size) {
                            announced = size;
                            return out.file.get();
                          }};
  const salvage::SalvageReport report = salvage::salvage(run);
  if (files.content("/in.avi") != input) fail("the input was changed");
  if (report.end != salvage::SalvageEnd::written) return {};
  platform::Bytes film = files.content("/out.avi");
  if (film.size() != announced || film.size() != report.outputSize) fail("another size", film.size(), announced);
  constexpr std::uint64_t kGrowth = std::uint64_t{16} << 20U;
  if (film.size() > input.size() + input.size() / 20 + kGrowth) fail("too large", film.size(), input.size());
  return film;
}

void inspect(const platform::Bytes& film) {
  MemoryFiles files;
  files.put("/film.avi", film);
  const auto file = files.openForReading("/film.avi");
  FirstProblem sink;
  avi::Outline outline(
      *file.file, sink, [] { return false; }, false);
  outline.walk();
  if (sink.first) fail("the film has a problem", static_cast<std::uint64_t>(sink.first->kind), sink.first->offset);
}

}  // namespace
}  // namespace zelvo::tests

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zelvo;
  const auto bytes = std::as_bytes(std::span(data, size));
  const platform::Bytes input(bytes.begin(), bytes.end());
  salvage::SalvageChoices choices;
  choices.emptiesDamaged = size % 3 == 1;
  choices.closesGaps = size % 3 == 2;
  const platform::Bytes film = tests::salvaged(input, choices);
  if (film.empty()) return 0;
  tests::inspect(film);
  if (tests::salvaged(input, choices) != film) tests::fail("a second run gives other bytes");
  return 0;
}
