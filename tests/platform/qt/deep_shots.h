/// The pages of the deep repair, one after the other as a photographer wants them.
#pragma once

#include <functional>

#include "tests/platform/qt/window_bench.h"

namespace zelvo::tests {

/// Brings the window of `bench` into each state that the deep repair has, and calls `take` with the state's name in
/// each. `film` is a film that can be shown.
void showDeepStates(WindowBench& bench, const std::string& film, const std::function<void(const char* name)>& take);

}  // namespace zelvo::tests
