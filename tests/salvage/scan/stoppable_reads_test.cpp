// Reads that hang, and a stop that does not wait for them.
#include "salvage/scan/stoppable_reads.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <future>
#include <mutex>
#include <thread>

#include "platform/linux/workers.h"
#include "tests/salvage/made_film.h"
#include "tests/salvage/salvage_bench.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using salvage::StoppableReads;

/// A gate that reads of a range wait at until somebody opens it.
class Gate {
 public:
  void pass() {
    std::unique_lock lock(mutex_);
    isReached_ = true;
    changed_.notify_all();
    changed_.wait(lock, [this] { return isOpen_; });
    isPassed_ = true;
    changed_.notify_all();
  }
  void open() {
    const std::lock_guard lock(mutex_);
    isOpen_ = true;
    changed_.notify_all();
  }
  void waitUntilReached() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return isReached_; });
  }
  [[nodiscard]] bool isReached() {
    const std::lock_guard lock(mutex_);
    return isReached_;
  }
  void waitUntilPassed() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return isPassed_; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  bool isReached_ = false;
  bool isOpen_ = false;
  bool isPassed_ = false;
};

/// A film of which reads after `hangsFrom` wait at the gate.
class HangingFile final : public platform::ReadableFile {
 public:
  HangingFile(Bytes bytes, std::uint64_t hangsFrom, std::shared_ptr<Gate> gate, std::size_t held = 0)
      : bytes_(std::move(bytes)), hangsFrom_(hangsFrom), gate_(std::move(gate)), held_(held) {}
  platform::IoResult readAt(std::uint64_t offset, std::span<std::byte> into) override {
    if (offset + into.size() > hangsFrom_) gate_->pass();
    return {copy(offset, into), {}};
  }
  std::size_t readAtOnce(std::uint64_t offset, std::span<std::byte> into) override {
    return offset < held_ ? copy(offset, into.first(std::min<std::size_t>(into.size(), held_ - offset))) : 0;
  }
  std::uint64_t size() override { return bytes_.size(); }

 private:
  std::size_t copy(std::uint64_t offset, std::span<std::byte> into) const {
    if (offset >= bytes_.size()) return 0;
    const std::size_t count = std::min<std::size_t>(into.size(), bytes_.size() - offset);
    std::copy_n(bytes_.begin() + static_cast<std::ptrdiff_t>(offset), count, into.begin());
    return count;
  }

  const Bytes bytes_;
  const std::uint64_t hangsFrom_;
  const std::shared_ptr<Gate> gate_;
  const std::size_t held_;
};

constexpr std::uint64_t kNever = ~std::uint64_t{0};

TEST(StoppableReads, AnswerWhatTheFileAnswers) {
  const Bytes bytes = noise(3'000'000);
  platform::linux_::LinuxWorkers workers;
  const platform::CancelMark cancel;
  for (const std::size_t held : {std::size_t{0}, std::size_t{100'000}, bytes.size()}) {
    StoppableReads reads(std::make_shared<HangingFile>(bytes, kNever, std::make_shared<Gate>(), held), cancel, workers);
    Bytes found(bytes.size() + 10);
    const platform::IoResult result = reads.readAt(0, found);
    EXPECT_EQ(result.count, bytes.size());
    EXPECT_FALSE(result.error);
    found.resize(result.count);
    EXPECT_TRUE(found == bytes);
    Bytes part(1000);
    EXPECT_EQ(reads.readAt(2'999'500, part).count, 500U);
    EXPECT_TRUE(std::equal(part.begin(), part.begin() + 500, bytes.end() - 500));
    EXPECT_EQ(reads.size(), bytes.size());
  }
}

TEST(StoppableReads, SeveralThreadsReadTheirOwn) {
  const Bytes bytes = noise(400'000);
  platform::linux_::LinuxWorkers workers;
  const platform::CancelMark cancel;
  StoppableReads reads(std::make_shared<HangingFile>(bytes, kNever, std::make_shared<Gate>()), cancel, workers);
  std::vector<std::thread> threads;
  std::array<bool, 4> isRight{};
  for (std::size_t number = 0; number < isRight.size(); ++number) {
    threads.emplace_back([&, number] {
      isRight.at(number) = true;
      for (std::size_t at = number * 1000; at + 1000 <= bytes.size(); at += 4000) {
        Bytes found(1000);
        const bool isEqual = reads.readAt(at, found).count == 1000 &&
                             std::equal(found.begin(), found.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at));
        isRight.at(number) = isRight.at(number) && isEqual;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (const bool one : isRight) EXPECT_TRUE(one);
}

TEST(StoppableReads, AStopDoesNotWaitForAReadThatHangs) {
  const auto gate = std::make_shared<Gate>();
  platform::linux_::LinuxWorkers workers;
  platform::CancelMark cancel;
  auto reads =
      std::make_unique<StoppableReads>(std::make_shared<HangingFile>(noise(5000), 2000, gate), cancel, workers);
  Bytes found(1000);
  EXPECT_EQ(reads->readAt(0, found).count, 1000U);
  auto reading = std::async(std::launch::async, [&] { return reads->readAt(1500, found); });
  gate->waitUntilReached();
  cancel.abandon();
  EXPECT_EQ(reading.get().error, std::errc::operation_canceled);
  EXPECT_EQ(reads->readAt(0, found).error, std::errc::operation_canceled);
  reads.reset();  // The read still hangs.
  gate->open();
  gate->waitUntilPassed();
}

TEST(StoppableReads, WithoutAThreadReadsAreWaitedFor) {
  platform::headless::HeadlessWorkers workers;
  const platform::CancelMark cancel;
  const Bytes bytes = noise(3000);
  StoppableReads reads(std::make_shared<HangingFile>(bytes, kNever, std::make_shared<Gate>()), cancel, workers);
  Bytes found(3000);
  EXPECT_EQ(reads.readAt(0, found).count, 3000U);
  EXPECT_TRUE(found == bytes);
}

/// A salvage of a film whose disk hangs from some byte on.
struct HangingSalvage {
  explicit HangingSalvage(std::uint64_t hangsFrom)
      : file(std::make_shared<HangingFile>(MadeFilm(400).bytes, hangsFrom, gate)) {
    files.put("/out.avi", {});
    out = files.openForWriting("/out.avi").file;
  }
  salvage::SalvageReport perform() {
    return salvage::salvage({.input = *file,
                             .inputSize = file->size(),
                             .observer = notes,
                             .cancel = cancel,
                             .workers = workers,
                             .choices = {},
                             .sharedInput = file,
                             .makeOutput = [this](std::uint64_t) { return out.get(); }});
  }

  std::shared_ptr<Gate> gate = std::make_shared<Gate>();
  std::shared_ptr<HangingFile> file;
  MemoryFiles files;
  std::unique_ptr<platform::WritableFile> out;
  SalvageNotes notes;
  platform::CancelMark cancel;
  platform::linux_::LinuxWorkers workers;
};

TEST(StoppableReads, AStoppedSalvageReturnsWhileItsReadHangs) {
  for (const std::uint64_t hangsFrom : {std::uint64_t{0}, std::uint64_t{600'000}}) {
    HangingSalvage run(hangsFrom);
    auto working = std::async(std::launch::async, [&] { return run.perform(); });
    run.gate->waitUntilReached();
    run.cancel.abandon();
    EXPECT_EQ(working.get().end, salvage::SalvageEnd::stopped);
    EXPECT_TRUE(run.files.content("/out.avi").empty());
    run.gate->open();
    run.gate->waitUntilPassed();
  }
}

TEST(StoppableReads, ASalvageThroughThemIsTheSame) {
  HangingSalvage apart(kNever);
  EXPECT_EQ(apart.perform().end, salvage::SalvageEnd::written);
  EXPECT_FALSE(apart.gate->isReached());
  SalvageBench plain(MadeFilm(400).bytes);
  EXPECT_EQ(plain.perform().end, salvage::SalvageEnd::written);
  EXPECT_TRUE(apart.files.content("/out.avi") == plain.files.content("/out.avi"));
}

}  // namespace
}  // namespace zelvo::tests
