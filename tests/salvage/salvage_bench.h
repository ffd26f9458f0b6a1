/// One run of the deep repair in memory.
#pragma once

#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "platform/headless/workers.h"
#include "salvage/deep_repair.h"
#include "tests/support/memory_files.h"

namespace zelvo::tests {

class SalvageNotes final : public salvage::SalvageObserver {
 public:
  void stage(salvage::SalvageStage stage) override {
    stages.push_back(stage);
    if (onStage) onStage(stage);
  }
  void read(std::uint64_t bytes) override { bytesRead += bytes; }

  std::vector<salvage::SalvageStage> stages;
  std::uint64_t bytesRead = 0;
  std::function<void(salvage::SalvageStage)> onStage;
};

/// Thread: one.
struct SalvageBench {
  explicit SalvageBench(platform::Bytes bytes) : input(std::move(bytes)) {}

  salvage::SalvageReport perform() {
    files.put("/in.avi", input);
    files.put("/out.avi", {});
    if (onInput) onInput(files.at("/in.avi"));
    if (onOutput) onOutput(files.at("/out.avi"));
    const auto in = files.openForReading("/in.avi");
    const auto out = files.openForWriting("/out.avi");
    salvage::SalvageRun run{.input = *in.file,
                            .inputSize = input.size(),
                            .rescue = rescue ? &*rescue : nullptr,
                            .observer = notes,
                            .cancel = cancel,
                            .workers = workers,
                            .decoder = decoder,
                            .choices = choices,
                            .makeOutput = {}};
    if (!isDry) {
      run.makeOutput = [&](std::uint64_t size) {
        asked = size;
        return isRefused ? nullptr : out.file.get();
      };
    }
    return salvage::salvage(run);
  }

  platform::Bytes input;
  MemoryFiles files;
  SalvageNotes notes;
  platform::CancelMark cancel;
  platform::headless::HeadlessWorkers workers;
  salvage::SalvageChoices choices;
  std::optional<salvage::FilmRescue> rescue;
  platform::TrialDecoder* decoder = nullptr;
  std::function<void(MemoryFile&)> onInput;
  std::function<void(MemoryFile&)> onOutput;
  bool isDry = false;
  bool isRefused = false;
  std::uint64_t asked = 0;
};

}  // namespace zelvo::tests
