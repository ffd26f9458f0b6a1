#include "cli/commands.h"

#include <algorithm>

#include "avi/outline.h"
#include "cli/chosen_input.h"
#include "cli/environment.h"
#include "cli/job_progress.h"
#include "cli/outline_writers.h"
#include "cli/shown_text.h"

namespace zelvo::cli {

namespace {

/// One walk through a file.
class Inspection {
 public:
  /// `takenBack`: nobody takes the result any more.
  Inspection(Environment& environment, const ChosenInput& input, avi::OutlineSink& sink,
             const platform::Relaxed<bool>& takenBack, bool listsAll)
      : environment_(environment),
        input_(input),
        takenBack_(takenBack),
        progress_(input.path),
        outline_(
            *input.file, sink, [this] { return ends(); }, listsAll) {}

  void walk() {
    outline_.walk();
    environment_.console.progress("");
  }
  [[nodiscard]] const avi::Outline& outline() const { return outline_; }

  /// Tells what kept the walk from seeing all, or that this is no AVI file.
  [[nodiscard]] Exit exit() const {
    const std::string name = printable(input_.path);
    const bool stopped = outline_.wasStopped() && environment_.stopRequested;
    if (stopped) environment_.console.error("stopped; " + name + " was looked at up to byte " + reached() + ".");
    const avi::ReadFailures failures = outline_.failures();
    if (failures.count > 0) {
      environment_.console.error(name + " cannot be read at byte " + shownNumber(failures.firstOffset) + ": " +
                                 failures.firstCause.message() + ".");
      return Exit::ioFailed;
    }
    if (stopped) return Exit::stopped;
    if (outline_.isAvi()) return Exit::done;
    environment_.console.error(name + " is not an AVI file, or its beginning is damaged.");
    return Exit::unrepairable;
  }

 private:
  [[nodiscard]] std::string reached() const {
    return shownNumber(std::min(outline_.position(), input_.attributes.size)) + " of " +
           shownNumber(input_.attributes.size);
  }

  [[nodiscard]] bool ends() {
    if (environment_.console.showsProgress()) {
      const auto now = ProgressLine::Clock::now();
      if (progress_.isDue(now)) {
        environment_.console.progress(
            progress_.text(now, Stage::inspecting, outline_.position(), input_.attributes.size));
      }
    }
    return takenBack_ || environment_.stopRequested;
  }

  Environment& environment_;
  const ChosenInput& input_;
  const platform::Relaxed<bool>& takenBack_;
  ProgressLine progress_;
  avi::Outline outline_;
};

class InspectCommand final : public Command {
 public:
  std::vector<Option> options() override {
    return {
        {"FILE", "the file to look at", &path_},
        {"--json", "print one JSON object instead of text", &json_},
        {"--chunks", "list every chunk, those of the streams' data too", &chunks_},
    };
  }

  Exit run(Environment& environment) override {
    auto chosen = chooseInput(path_, environment.files, environment.fileManager);
    if (const auto* sentence = std::get_if<std::string>(&chosen)) {
      environment.console.error(*sentence);
      return Exit::ioFailed;
    }
    return inspect(environment, std::get<ChosenInput>(chosen));
  }

 private:
  [[nodiscard]] Exit inspect(Environment& environment, const ChosenInput& input) const {
    // Once nobody takes the result any more, the walk ends as after a stop.
    platform::Relaxed<bool> takenBack;
    const TakePiece take = [&](std::string_view piece) {
      if (!environment.console.result(piece)) takenBack = true;
    };
    if (json_) {
      OutlineJson sink(take, input.path, input.attributes.size);
      Inspection inspection(environment, input, sink, takenBack, chunks_);
      inspection.walk();
      const avi::Outline& outline = inspection.outline();
      sink.finish(outline.isAvi(), outline.failures().count, outline.wasStopped());
      return inspection.exit();
    }
    take(printable(input.path) + ", " + counted(input.attributes.size, "byte") + "\n");
    OutlineText sink(take, chunks_);
    Inspection inspection(environment, input, sink, takenBack, chunks_);
    inspection.walk();
    sink.finish(inspection.outline().failures().count, inspection.outline().wasStopped());
    return inspection.exit();
  }

  std::string path_;
  bool json_ = false;
  bool chunks_ = false;
};

}  // namespace

std::unique_ptr<Command> makeInspectCommand() { return std::make_unique<InspectCommand>(); }

}  // namespace zelvo::cli
