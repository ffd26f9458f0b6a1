/// Hands the candidates of an input over in file order, while two threads read its stretches side by side.
/// Decision: scan, Two threads read, one judges
#pragma once

#include <array>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <system_error>

#include "engine/candidate_reader.h"
#include "platform/workers.h"

namespace zelvo::engine {

/// Thread: one, besides the helper of its own.
class StretchQueue {
 public:
  /// Starts a helper where there is a processor for it and the input is long enough. Throws std::system_error when
  /// there is no thread for it.
  StretchQueue(avi::InputFile& input, std::uint32_t last, std::uint32_t mod, platform::Workers& workers);
  /// Ends and joins the helper.
  ~StretchQueue();
  StretchQueue(const StretchQueue&) = delete;
  StretchQueue& operator=(const StretchQueue&) = delete;

  /// What the next stretch holds: blocks 1 to 256 first, then 257 to 512, and so on up to the last block. It
  /// stays valid until the next call. Throws std::system_error or std::bad_alloc when either thread ran out of memory.
  [[nodiscard]] const StretchContent& next();

 private:
  static constexpr std::size_t kSlots = 4;
  struct Slot {
    StretchContent content;
    bool ready = false;
  };

  [[nodiscard]] Stretch stretch(std::uint32_t number) const;
  /// Takes the oldest stretch that nobody has taken, reads it and marks it ready; false when there is none to take now.
  bool readOne(CandidateReader& reader, std::unique_lock<std::mutex>& lock);
  void help();
  void readAlong();

  avi::InputFile& input_;
  const std::uint32_t last_;
  const std::uint32_t mod_;
  const std::uint32_t stretches_;
  CandidateReader reader_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::array<Slot, kSlots> slots_;  ///< stretch n lies in slot n % kSlots
  std::uint32_t nextToTake_ = 0;    ///< stretches are counted from 0
  std::uint32_t nextToDeliver_ = 0;
  bool delivering_ = false;  ///< the caller holds the stretch before `nextToDeliver_`
  bool ending_ = false;
  std::error_code shortage_;  ///< why the helper was cut short
  std::shared_ptr<platform::Worker> helper_;
};

}  // namespace zelvo::engine
