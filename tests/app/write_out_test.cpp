#include "app/write_out.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <string>
#include <vector>

#include "platform/headless/workers.h"

namespace zelvo::tests {
namespace {

constexpr std::chrono::seconds kLongest(60);
constexpr std::uint64_t kMiB = 1U << 20U;

/// Notes what is sent to its medium, and waits before it takes that in when it is told to.
class MediumFile final : public platform::WritableFile {
 public:
  platform::IoResult writeAt(std::uint64_t, std::span<const std::byte> from) override { return {from.size(), {}}; }
  std::error_code reserve(std::uint64_t) override { return {}; }
  std::error_code truncate(std::uint64_t) override { return {}; }
  std::error_code writeOut(std::uint64_t offset, std::uint64_t size) override {
    sent.push_back(std::to_string(offset / kMiB) + "+" + std::to_string(size / kMiB));
    if (sent.size() == 1) sending.set_value();
    if (go.valid()) {
      EXPECT_EQ(go.wait_for(kLongest), std::future_status::ready) << "nobody let the medium go on";
    }
    return writeOutError;
  }
  std::error_code flush() override {
    ++flushes;
    return flushError;
  }
  std::error_code close() override { return {}; }

  std::promise<void> sending;  ///< kept when the first part is sent
  std::shared_future<void> go;
  std::error_code writeOutError;
  std::error_code flushError;
  std::vector<std::string> sent;
  int flushes = 0;
};

/// Workers without a helper to spare.
class NoHelpers final : public platform::Workers {
 public:
  std::shared_ptr<platform::Worker> start(std::shared_ptr<platform::CancelMark>, std::function<void()>) override {
    return nullptr;
  }
  std::shared_ptr<platform::Worker> startHelper(std::function<void()>) override { return nullptr; }
  [[nodiscard]] unsigned processors() const override { return 1; }
  void joinAll() override {}
};

class WriteOut : public testing::Test {
 protected:
  void finish(app::WriteOut& out) {
    out.finish();
    while (!out.isFlushed()) {
    }
  }

  platform::headless::HeadlessWorkers workers;
  MediumFile file;
};

TEST_F(WriteOut, FourMebibytesAreSentTogetherAndNoLess) {
  app::WriteOut out(file, workers);
  out.wroteUpTo(4 * kMiB - 1);
  out.wroteUpTo(4 * kMiB);
  ASSERT_EQ(file.sending.get_future().wait_for(kLongest), std::future_status::ready) << "nothing was sent";
  finish(out);
  EXPECT_EQ(file.sent, std::vector<std::string>{"0+4"});
  EXPECT_EQ(file.flushes, 1);
  EXPECT_FALSE(out.error());
}

TEST_F(WriteOut, ACopyWaitsWhenItIsSixteenMebibytesAhead) {
  std::promise<void> go;
  file.go = go.get_future().share();
  app::WriteOut out(file, workers);
  out.wroteUpTo(16 * kMiB - 1);
  EXPECT_TRUE(out.mayGoOn());
  out.wroteUpTo(16 * kMiB);
  EXPECT_FALSE(out.mayGoOn());
  EXPECT_FALSE(out.isFlushed());
  go.set_value();
  while (!out.mayGoOn()) {
  }
  finish(out);
}

TEST_F(WriteOut, TheFirstFailureIsKept) {
  file.writeOutError = std::make_error_code(std::errc::io_error);
  file.flushError = std::make_error_code(std::errc::no_space_on_device);
  app::WriteOut out(file, workers);
  out.wroteUpTo(4 * kMiB);
  ASSERT_EQ(file.sending.get_future().wait_for(kLongest), std::future_status::ready) << "nothing was sent";
  finish(out);
  EXPECT_EQ(out.error(), std::errc::io_error);
}

TEST_F(WriteOut, AFailureOfTheLastFlushIsKept) {
  file.flushError = std::make_error_code(std::errc::no_space_on_device);
  app::WriteOut out(file, workers);
  finish(out);
  EXPECT_EQ(out.error(), std::errc::no_space_on_device);
}

TEST_F(WriteOut, EndsWithoutAFlushWhenItIsNotFinished) {
  { const app::WriteOut out(file, workers); }
  EXPECT_EQ(file.flushes, 0);
}

TEST_F(WriteOut, WithoutAHelperEverythingIsLeftToTheLastFlush) {
  NoHelpers none;
  app::WriteOut out(file, none);
  out.wroteUpTo(64 * kMiB);
  EXPECT_TRUE(out.mayGoOn());
  out.finish();
  EXPECT_TRUE(out.isFlushed());
  EXPECT_EQ(file.sent, std::vector<std::string>{});
  EXPECT_EQ(file.flushes, 1);
}

}  // namespace
}  // namespace zelvo::tests
