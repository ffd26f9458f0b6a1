#include "engine/repair_file.h"

#include <gtest/gtest.h>

#include "tests/support/avi_builder.h"
#include "tests/support/engine_bench.h"

namespace zelvo::tests {
namespace {

TEST(RepairFile, WholeRunRebuildsEveryChunkButTheLast) {
  EngineBench bench;
  AviBuilder avi;
  avi.interleaved(200, 3000, 101);
  bench.choose(avi.build());

  bench.run();

  EXPECT_EQ(bench.job->runEnd, engine::RunEnd::rebuilt);
  EXPECT_EQ(bench.job->videosamplecount, 200U);
  EXPECT_EQ(bench.job->audiosamplecount, 199U);
  EXPECT_EQ(bench.output().size(), 8 + bench.job->layout.RIFFLISTsize);
}

}  // namespace
}  // namespace zelvo::tests
