/// A repair job on a headless screen with files in memory: everything that happens lands in one list of events.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "engine/globals.h"
#include "engine/progress_relay.h"
#include "engine/repair_file.h"
#include "platform/headless/elements.h"
#include "platform/headless/main_queue.h"
#include "platform/headless/screen.h"
#include "platform/headless/workers.h"
#include "tests/support/memory_files.h"

namespace zelvo::tests {

/// Keeps what the engine tells. Progress values are kept apart from the events: there are thousands.
class RecordingRelay final : public engine::ProgressRelay {
 public:
  explicit RecordingRelay(platform::headless::Events& events) : events_(events) {}
  void setProgressBarValue(double percent) override;
  void updateProgressBar() override;
  void updateSaveProgressBar() override;
  void updateSaveProgressBar2() override;
  void setMovieView(const std::string& path) override;

  std::vector<double> values;                       ///< every value stored
  std::vector<double> shown;                        ///< the stored value at every `updateProgressBar`
  std::vector<double> savingShown;                  ///< the same at `updateSaveProgressBar`
  bool writesEvents = false;                        ///< also note each call as an event
  std::function<void(double)> onValue;              ///< told of every value: a place to stop a run from
  std::function<void(const std::string&)> onMovie;  ///< told of the finished file

 private:
  platform::headless::Events& events_;
};

/// Input at "/in.avi", output at "/out.avi". The globals are reset when it is made and when it goes.
class EngineBench {
 public:
  EngineBench();
  ~EngineBench();
  EngineBench(const EngineBench&) = delete;
  EngineBench& operator=(const EngineBench&) = delete;

  /// Puts the input there and chooses it: `path` and `inputfilesize`.
  MemoryFile& choose(platform::Bytes bytes);
  /// Chooses what lies at "/in.avi" already, claiming `size` bytes.
  void chooseClaiming(std::uint64_t size);
  /// Makes a run of what is chosen the current one, for stages on their own.
  void begin();
  /// A whole run on this thread; the animation runs when the engine waits for it, after the file is written.
  void run();
  /// The rebuilt file.
  [[nodiscard]] platform::Bytes output() const { return files.content("/out.avi"); }
  /// Recorded chunks of one kind as (offset, size).
  [[nodiscard]] std::vector<std::pair<std::uint64_t, std::uint64_t>> video() const;
  [[nodiscard]] std::vector<std::pair<std::uint64_t, std::uint64_t>> audio() const;

  platform::headless::Events events;
  MemoryFiles files;
  platform::headless::Screen screen{&events};
  platform::headless::HeadlessMainQueue queue;
  platform::headless::HeadlessWorkers workers;
  platform::headless::HeadlessSheets sheets{queue, &events};
  platform::headless::HeadlessMovieLoader movies{&events};
  platform::headless::HeadlessLog log{&events};
  RecordingRelay relay{events};
  std::unique_ptr<engine::RepairFile> job;
  std::shared_ptr<engine::Run> current;  ///< the run that `begin` or `run` made
};

}  // namespace zelvo::tests
