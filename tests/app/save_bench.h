/// The result page with a rebuilt file to be saved, for the flows of a save.
#pragma once

#include <string>
#include <utility>

#include "tests/app/app_bench.h"

namespace zelvo::tests {

inline constexpr const char* kFolder = "/home/user/Repaired";
inline constexpr const char* kSaved = "/home/user/Repaired/repaired.avi";

/// On the result page, with a rebuilt file of known bytes at the first scratch path.
class SaveTest : public FlowTest {
 protected:
  void arrive(std::size_t rebuiltSize = 100000, std::uint64_t inputSize = 300) {
    app.start();
    runWorkers();
    app.files.putSparse(kInput, inputSize);
    ASSERT_TRUE(app.controller->chooseFile(kInput));
    platform::Bytes rebuilt(rebuiltSize);
    for (std::size_t i = 0; i < rebuilt.size(); ++i) rebuilt[i] = static_cast<std::byte>(i * 7 + i / 251 + 1);
    app.files.put(kScratch1, std::move(rebuilt));
    engine::internalpath.set(kScratch1);
    app.controller->setMovieView(kScratch1);
    app.files.space = 5000000;
    app.events.clear();
  }
  bool saveAs(const std::string& folder) {
    return app.press(app.screen.savebutton) && app.panels.lastSavePanel()->choose(folder);
  }
};

}  // namespace zelvo::tests
