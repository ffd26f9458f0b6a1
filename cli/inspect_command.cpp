#include "cli/inspect_command.h"

#include "cli/avi_outline.h"
#include "cli/chosen_input.h"
#include "cli/outline_writers.h"
#include "cli/shown_text.h"
#include "cli/surroundings.h"

namespace zelvo::cli {

namespace {

class InspectCommand final : public Command {
 public:
  std::vector<Option> options() override {
    return {
        {"FILE", "the file to look at", &path_},
        {"--json", "print one JSON object instead of text", &json_},
        {"--chunks", "list every chunk, those of the streams' data too", &chunks_},
    };
  }

  Exit run(Surroundings& around) override {
    auto chosen = chooseInput(path_, around.files, around.fileManager);
    if (const auto* sentence = std::get_if<std::string>(&chosen)) {
      around.console.error(*sentence);
      return Exit::ioFailed;
    }
    return inspect(around, std::get<ChosenInput>(chosen));
  }

 private:
  [[nodiscard]] Exit inspect(Surroundings& around, const ChosenInput& input) const {
    // Once nobody takes the result any more, the walk ends as after a stop.
    platform::Relaxed<bool> ending;
    const TakePiece take = [&](std::string_view piece) {
      if (!around.console.result(piece)) ending = true;
    };
    const auto ends = [&] { return ending || around.stopRequested; };
    if (json_) {
      OutlineJson sink(take, input.path, input.attributes.size);
      AviOutline outline(*input.file, sink, ends, chunks_);
      outline.walk();
      sink.finish(outline.isAvi(), outline.failures().count);
      return exitOf(around, input, outline);
    }
    take(shownText(input.path) + ", " + counted(input.attributes.size, "byte") + "\n");
    OutlineText sink(take);
    AviOutline outline(*input.file, sink, ends, chunks_);
    outline.walk();
    sink.finish();
    take(outline.problems() == 0 ? "No problems found.\n" : counted(outline.problems(), "problem") + " found.\n");
    return exitOf(around, input, outline);
  }

  [[nodiscard]] static Exit exitOf(Surroundings& around, const ChosenInput& input, const AviOutline& outline) {
    const engine::ReadFailures failures = outline.failures();
    if (failures.count > 0) {
      around.console.error(shownText(input.path) + " cannot be read at byte " + shownNumber(failures.firstOffset) +
                           ": " + failures.firstCause.message() + ".");
      return Exit::ioFailed;
    }
    if (around.stopRequested) return Exit::stopped;
    if (outline.isAvi()) return Exit::done;
    around.console.error(shownText(input.path) + " is not an AVI file, or its beginning is damaged.");
    return Exit::unrepairable;
  }

  std::string path_;
  bool json_ = false;
  bool chunks_ = false;
};

}  // namespace

std::unique_ptr<Command> makeInspectCommand() { return std::make_unique<InspectCommand>(); }

}  // namespace zelvo::cli
