/// Results, progress and queues of the deep repair, as tests and pictures of the window show them.
#pragma once

#include <vector>

#include "platform/deep_outlets.h"

namespace zelvo::tests {

/// A film of ten minutes with six losses.
[[nodiscard]] platform::DeepResult partialResult();
/// Nothing could be brought back, and nothing is known.
[[nodiscard]] platform::DeepResult hopelessResult();
/// Nothing was wrong.
[[nodiscard]] platform::DeepResult cleanResult();
[[nodiscard]] platform::DeepComparison sampleComparison();
/// One film of each state and verdict, some with long names.
[[nodiscard]] std::vector<platform::QueuedFilm> sampleQueue();

}  // namespace zelvo::tests
