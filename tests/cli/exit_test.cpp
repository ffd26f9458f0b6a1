#include "cli/exit.h"

#include <gtest/gtest.h>

namespace zelvo::tests {
namespace {

using cli::Exit;
using cli::worse;

TEST(Exit, WorstIsThreeThen130ThenOneThenZero) {
  EXPECT_EQ(worse(Exit::wrongUse, Exit::ioFailed), Exit::wrongUse);
  EXPECT_EQ(worse(Exit::ioFailed, Exit::wrongUse), Exit::wrongUse);
  EXPECT_EQ(worse(Exit::ioFailed, Exit::stopped), Exit::ioFailed);
  EXPECT_EQ(worse(Exit::stopped, Exit::unrepairable), Exit::stopped);
  EXPECT_EQ(worse(Exit::unrepairable, Exit::stopped), Exit::stopped);
  EXPECT_EQ(worse(Exit::unrepairable, Exit::done), Exit::unrepairable);
  EXPECT_EQ(worse(Exit::done, Exit::ioFailed), Exit::ioFailed);
  EXPECT_EQ(worse(Exit::done, Exit::done), Exit::done);
}

}  // namespace
}  // namespace zelvo::tests
