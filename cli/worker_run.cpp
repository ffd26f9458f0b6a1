#include "cli/worker_run.h"

#include "cli/shown_text.h"
#include "platform/ran_out.h"

namespace zelvo::cli {

std::error_code runOnWorker(Environment& environment, const std::shared_ptr<platform::CancelMark>& cancel,
                            const std::function<void()>& body, const std::function<void()>& look) {
  const auto ended = std::make_shared<bool>(false);  // the main thread's
  const auto worker = environment.workers.start(cancel, [&environment, ended, &body] {
    body();
    environment.mainQueue.perform([ended] { *ended = true; });  // wakes the main thread
  });
  if (!worker) return platform::noThread();
  const std::error_code followed = platform::ranOut([&] {
    environment.runUntil([&] {
      if (environment.stopRequested) cancel->abandon();
      look();
      return *ended || worker->finished();  // a body that was cut short wakes nobody
    });
  });
  if (followed) cancel->abandon();
  worker->join();  // whatever happens here: it works on what the caller holds
  environment.console.progress("");
  return followed ? followed : worker->failure();
}

std::string shortageSentence(const std::string& inputPath, std::error_code shortage) {
  const std::string lacking = shortage == std::errc::not_enough_memory
                                  ? "there is not enough memory for "
                                  : "the system gives no thread (" + shortage.message() + ") for ";
  return lacking + printable(inputPath) + "; nothing was written, and it is unchanged.";
}

}  // namespace zelvo::cli
