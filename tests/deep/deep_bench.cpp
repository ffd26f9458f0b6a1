#include "tests/deep/deep_bench.h"

namespace zelvo::tests {

DeepTest::DeepTest() {
  deepRepair = std::make_unique<deep::DeepRepair>(
      deep::DeepServices{.files = files,
                         .fileManager = fileManager,
                         .newFiles = newFiles,
                         .lockedFiles = lockedFiles,
                         .workers = workers,
                         .mainQueue = queue,
                         .log = log,
                         .sheets = sheets,
                         .alertPanels = alerts,
                         .choosers = choosers,
                         .movies = movies,
                         .workspace = workspace,
                         .clipboard = clipboard,
                         .settings = settings,
                         .pathProbe = pathProbe,
                         .translator = platform::englishTranslator(),
                         .makePrograms = [this] { return programs.make(); },
                         .scratchFolders = [this] { return std::vector<std::string>{temp / "cache"}; },
                         .process = 4711,
                         .patience = std::chrono::milliseconds(0)},
      screen.outlets);
  deepRepair->wire(actions);
}

void DeepTest::runWorkers() {
  while (workers.runNext()) {
  }
  queue.pump();
}

}  // namespace zelvo::tests
