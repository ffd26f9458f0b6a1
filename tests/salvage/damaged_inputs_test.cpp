// Damaged inputs by the hundred: whatever they are, what comes out is a film without fault, or nothing.
#include <gtest/gtest.h>

#include "tests/salvage/salvage_bench.h"
#include "tests/salvage/written_film.h"
#include "tests/support/damage.h"

namespace zelvo::tests {
namespace {

using salvage::SalvageEnd;
using salvage::SalvageReport;

/// Takes the input through a whole run and looks at what comes out. True when a film was written.
bool expectSoundOutput(DamagedInput input) {
  SCOPED_TRACE(input.name);
  SalvageBench bench(std::move(input.bytes));
  if (input.badReadStart < bench.input.size()) {
    bench.onInput = [&](MemoryFile& file) {
      file.badReadStart = input.badReadStart;
      file.badReadEnd = input.badReadEnd;
      file.readError = std::make_error_code(std::errc::io_error);
    };
  }
  const SalvageReport report = bench.perform();
  const platform::Bytes output = bench.files.content("/out.avi");
  if (report.end != SalvageEnd::written) {
    EXPECT_TRUE(output.empty());
    EXPECT_TRUE(report.end == SalvageEnd::noMedia || report.end == SalvageEnd::noHeader ||
                report.end == SalvageEnd::tooLarge);
    return false;
  }
  EXPECT_EQ(output.size(), report.outputSize);
  EXPECT_LE(report.outputSize, report.outputLimit);
  OutlineNotes notes;
  avi::Outline(
      *bench.files.openForReading("/out.avi").file, notes, [] { return false; }, true)
      .walk();
  for (const avi::Problem& problem : notes.problems)
    ADD_FAILURE() << "problem " << static_cast<int>(problem.kind) << " at " << problem.offset;
  for (const avi::IndexReport& index : notes.indexes) EXPECT_EQ(index.matching, index.checked);
  std::uint64_t chunks = 0;
  for (const salvage::SalvagedStream& stream : report.streams) chunks += stream.all().chunks;
  std::uint64_t written = 0;
  for (const avi::OutlineItem& chunk : notes.chunks) written += avi::isStreamData(chunk.id) ? 1U : 0U;
  // What is lost at the film's end is left out.
  EXPECT_LE(written, chunks);
  EXPECT_GT(written, 0U);
  return true;
}

TEST(DamagedInputs, SmallStreamsOfChunks) {
  for (std::uint64_t seed = 0; seed < 150; ++seed) expectSoundOutput(DamageGenerator(seed).small());
}

TEST(DamagedInputs, WholeFilms) {
  int written = 0;
  for (std::uint64_t seed = 0; seed < 150; ++seed)
    written += expectSoundOutput(DamageGenerator(seed).wholeFile(40)) ? 1 : 0;
  EXPECT_GT(written, 120);
}

TEST(DamagedInputs, ChunksAcrossWindows) {
  for (std::uint64_t seed = 0; seed < 6; ++seed) expectSoundOutput(DamageGenerator(seed).acrossWindows(400'000));
}

TEST(DamagedInputs, DenseCandidates) {
  for (std::uint64_t seed = 0; seed < 10; ++seed) {
    expectSoundOutput(DamageGenerator(seed).dense(100'000, 64, seed % 2 == 0));
    expectSoundOutput(DamageGenerator(seed).dense(100'000, 70'000));
  }
}

TEST(DamagedInputs, TheSameInputGivesTheSameBytes) {
  for (std::uint64_t seed = 0; seed < 20; ++seed) {
    SalvageBench one(DamageGenerator(seed).wholeFile(40).bytes);
    SalvageBench two(DamageGenerator(seed).wholeFile(40).bytes);
    two.workers.setProcessors(1);
    static_cast<void>(one.perform());
    static_cast<void>(two.perform());
    EXPECT_EQ(one.files.content("/out.avi"), two.files.content("/out.avi"));
  }
}

}  // namespace
}  // namespace zelvo::tests
