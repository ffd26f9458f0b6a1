// The thread apart reads into a buffer of its own and never into the caller's memory, which may be gone by the time
// that the disk answers.
// Decision: runs, A stop leaves a hanging read behind
#include "salvage/scan/stoppable_reads.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <utility>

#include "platform/page_bytes.h"

namespace zelvo::salvage {

namespace {

constexpr std::size_t kBuffer = std::size_t{1} << 20U;
/// Nobody wakes a reader that waits when a stop is asked for.
constexpr std::chrono::milliseconds kLook{10};

constexpr auto kStopped = std::errc::operation_canceled;

}  // namespace

/// What both sides hold.
struct StoppableReads::Apart {
  enum class State { idle, wanted, done };

  explicit Apart(std::shared_ptr<platform::ReadableFile> of) : file(std::move(of)) {}

  const std::shared_ptr<platform::ReadableFile> file;
  std::mutex mutex;
  std::condition_variable asked;              ///< for the thread apart
  std::condition_variable answered;           ///< for who asked it
  std::condition_variable freed;              ///< for who asks next
  std::optional<platform::PageBytes> buffer;  ///< once the thread was started
  bool isStarted = false;
  bool isRefused = false;  ///< there is no thread
  bool isEnding = false;
  State state = State::idle;
  std::uint64_t offset = 0;
  std::size_t size = 0;
  platform::IoResult result;
};

StoppableReads::StoppableReads(std::shared_ptr<platform::ReadableFile> file, const platform::CancelMark& cancel,
                               platform::Workers& workers)
    : file_(std::move(file)), cancel_(cancel), workers_(workers), apart_(std::make_shared<Apart>(file_)) {}

StoppableReads::~StoppableReads() {
  const std::lock_guard lock(apart_->mutex);
  apart_->isEnding = true;
  apart_->asked.notify_one();
}

void StoppableReads::serve(const std::shared_ptr<Apart>& apart) {
  std::unique_lock lock(apart->mutex);
  while (true) {
    apart->asked.wait(lock, [&] { return apart->isEnding || apart->state == Apart::State::wanted; });
    if (apart->isEnding) return;
    const std::span<std::byte> into(apart->buffer->data(), apart->size);
    lock.unlock();
    const platform::IoResult result = apart->file->readAt(apart->offset, into);
    lock.lock();
    apart->result = result;
    apart->state = Apart::State::done;
    apart->answered.notify_one();
  }
}

/// At most a buffer.
platform::IoResult StoppableReads::readApart(std::uint64_t offset, std::span<std::byte> into) {
  std::unique_lock lock(apart_->mutex);
  const auto wait = [&](std::condition_variable& changed, Apart::State state) {
    while (apart_->state != state && !cancel_.abandoned()) changed.wait_for(lock, kLook);
    return apart_->state == state && !cancel_.abandoned();
  };
  if (!apart_->isStarted && !apart_->isRefused) {
    apart_->buffer.emplace(kBuffer);
    apart_->isStarted = workers_.startApart([apart = apart_] { serve(apart); });
    apart_->isRefused = !apart_->isStarted;
  }
  if (apart_->isRefused) {
    lock.unlock();
    return file_->readAt(offset, into);
  }
  if (!wait(apart_->freed, Apart::State::idle)) return {0, std::make_error_code(kStopped)};
  apart_->offset = offset;
  apart_->size = into.size();
  apart_->state = Apart::State::wanted;
  apart_->asked.notify_one();
  if (!wait(apart_->answered, Apart::State::done)) return {0, std::make_error_code(kStopped)};
  std::copy_n(apart_->buffer->data(), apart_->result.count, into.begin());
  const platform::IoResult result = apart_->result;
  apart_->state = Apart::State::idle;
  apart_->freed.notify_one();
  return result;
}

platform::IoResult StoppableReads::readAt(std::uint64_t offset, std::span<std::byte> into) {
  platform::IoResult all;
  while (all.count < into.size()) {
    if (cancel_.abandoned()) return {all.count, std::make_error_code(kStopped)};
    const std::uint64_t at = offset + all.count;
    const std::span<std::byte> rest = into.subspan(all.count);
    const std::size_t held = file_->readAtOnce(at, rest);
    all.count += held;
    if (held > 0) continue;
    const std::size_t wanted = std::min(rest.size(), kBuffer);
    const platform::IoResult one = readApart(at, rest.first(wanted));
    all.count += one.count;
    all.error = one.error;
    if (one.count < wanted) break;
  }
  return all;
}

}  // namespace zelvo::salvage
