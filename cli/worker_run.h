/// A command's long work: on a worker thread, while the main thread shows how far it is and looks for a stop.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <system_error>

#include "cli/environment.h"
#include "platform/workers.h"

namespace zelvo::cli {

/// Runs `body` on a worker and returns when it has returned. `look` is called many times a second meanwhile; a stop
/// request abandons `cancel`.
/// \return why the body could not be begun or was cut short: no memory or no thread; empty when it came to its end
/// Thread: main.
[[nodiscard]] std::error_code runOnWorker(Environment& environment, const std::shared_ptr<platform::CancelMark>& cancel,
                                          const std::function<void()>& body, const std::function<void()>& look);

/// The sentence about an input for which memory or a thread was lacking.
[[nodiscard]] std::string shortageSentence(const std::string& inputPath, std::error_code shortage);

}  // namespace zelvo::cli
