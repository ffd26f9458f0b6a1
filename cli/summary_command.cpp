// What journals of batches say together.
#include "cli/chosen_input.h"
#include "cli/command_inputs.h"
#include "cli/commands.h"
#include "cli/new_output.h"
#include "cli/shown_text.h"
#include "cli/summary_page.h"
#include "cli/summary_text.h"
#include "salvage/batch_journal.h"

namespace zelvo::cli {

namespace {

class SummaryCommand final : public Command {
 public:
  std::vector<Option> options() override {
    return {
        {"JOURNAL", "what --journal wrote down, of one batch or of several", &journals_},
        {"--html", "write a page with every film and a picture of its damage", &page_, "FILE"},
        {"--csv", "write a table for a spreadsheet, a row for each film", &table_, "FILE"},
        {"-f,--force", "replace an existing page or table", &force_},
        {"--json", "print one JSON object instead of text", &json_},
        {"-q,--quiet", "print errors only", &quiet_},
    };
  }

  std::optional<std::string> misuse() const override {
    if (page_ && page_ == table_) return "--html and --csv name the same file.";
    return std::nullopt;
  }

  Exit run(Environment& environment) override {
    environment.console.setQuiet(quiet_);
    salvage::CollectionSummary summary;
    for (const std::string& path : journals_) {
      if (!read(environment, path, summary)) return Exit::ioFailed;
    }
    Exit exit = Exit::done;
    const CommandInputs inputs(journals_, environment.fileManager);
    const auto write = [&](const std::optional<std::string>& path, auto make) {
      if (!path) return;
      if (inputs.at(*path)) {
        environment.console.error(printable(*path) + " is a journal; name another file.");
        exit = Exit::ioFailed;
      } else if (const auto sentence = writeText(environment, inputs, {*path, force_, false}, make())) {
        environment.console.error(*sentence);
        exit = Exit::ioFailed;
      }
    };
    write(page_, [&] { return summaryPage(summary, journals_.size()); });
    write(table_, [&] { return summaryInCsv(summary); });
    if (json_) {
      environment.console.result(summaryInJson(summary, journals_.size()));
    } else if (!quiet_) {
      environment.console.result(summaryInWords(summary, journals_.size()));
    }
    return exit;
  }

 private:
  static bool read(Environment& environment, const std::string& path, salvage::CollectionSummary& summary) {
    auto chosen = chooseInput(path, environment.files, environment.fileManager);
    if (const auto* sentence = std::get_if<std::string>(&chosen)) {
      environment.console.error(*sentence);
      return false;
    }
    platform::ReadableFile& file = *std::get<ChosenInput>(chosen).file;
    const salvage::JournalReading reading =
        salvage::readJournal([&](std::uint64_t offset, std::span<std::byte> into) { return file.readAt(offset, into); },
                             [&](salvage::BatchLine line) { summary.add(std::move(line)); });
    const std::string name = printable(path);
    if (reading.error) {
      environment.console.error(name + " cannot be read: " + reading.error.message() + ".");
      return false;
    }
    if (reading.foreignLine > 0) {
      environment.console.error(name + " is no journal: line " + shownNumber(reading.foreignLine) +
                                " is not as this program writes them.");
      return false;
    }
    if (reading.tornBytes > 0) {
      environment.console.note("zelvo-avi: the last line of " + name +
                               " is not whole: its run was cut short, or goes on. It is left out.");
    }
    if (summary.isFull()) environment.console.warning("there are more films than can be summed up; the first count.");
    return true;
  }

  std::vector<std::string> journals_;
  std::optional<std::string> page_;
  std::optional<std::string> table_;
  bool force_ = false;
  bool json_ = false;
  bool quiet_ = false;
};

}  // namespace

std::unique_ptr<Command> makeSummaryCommand() { return std::make_unique<SummaryCommand>(); }

}  // namespace zelvo::cli
