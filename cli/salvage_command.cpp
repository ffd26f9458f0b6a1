// The options of the deep repair, and what follows each one: its report, the map of what is wanted.
#include "cli/commands.h"

#include <algorithm>
#include <charconv>
#include <memory>
#include <utility>

#include "cli/batch.h"
#include "cli/batch_command.h"
#include "cli/new_output.h"
#include "cli/one_salvage.h"
#include "cli/rescue_choice.h"
#include "cli/salvage_facts.h"
#include "cli/salvage_outcome.h"
#include "cli/salvage_page.h"
#include "cli/shown_text.h"
#include "salvage/deep_repair.h"

namespace zelvo::cli {

namespace {

/// The text as a number from `least` to `most`; nothing when it is none.
std::optional<double> numberIn(const std::string& text, double least, double most) {
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed);
  if (error != std::errc() || end != text.data() + text.size() || !(number >= least && number <= most))
    return std::nullopt;
  return number;
}

using ReportWriter = std::string (*)(const SalvageOutcome&, bool namesOutput);

/// The kind of report that a file's name asks for; nothing when it is none of them.
std::optional<ReportWriter> reportOf(std::string_view path) {
  if (path.ends_with(".json")) return [](const SalvageOutcome& told, bool) { return inJson(told); };
  if (path.ends_with(".html")) return salvagePage;
  if (path.ends_with(".txt")) return [](const SalvageOutcome& told, bool) { return reportInWords(told); };
  return std::nullopt;
}

class SalvageCommand final : public Command {
 public:
  std::vector<Option> options() override {
    std::vector<Option> options = {
        BatchOptions::damagedFilms(inputs_),
        {"-o,--output", "where to write the film (for one input)", &output_, "OUTPUT"},
        {"--output-dir", "folder for the films, each named NAME-salvaged.avi", &outputFolder_, "DIR"},
        {"--donor", "an undamaged film of the same camera, whose headers stand in for lost ones (for one input)",
         &donor_, "FILE"},
        {"--fps", "pictures a second, when you know better than the film's header or what is left of it", &fps_, "N"},
        {"--rate", "samples of sound a second, in the same case (for one sound track)", &rate_, "N"},
        {"--report",
         "write what was found and done to a file, of the kind that its name ends in; may be given several times (for "
         "one input)",
         &reports_, "FILE.json|.html|.txt"},
        {"--damaged", "pictures that are damaged: keep them (default), or put empty ones there, which seeks better",
         &damaged_, "keep|empty"},
        {"--gaps", "time that is lost: fill it (default), or close it up", &gaps_, "fill|close"},
        {"--verify", "play the film that was written by decoding it, and tell what plays", &choices_.verifies},
        {"--dry-run", "write nothing but the report", &choices_.isDry},
        {"-f,--force", "replace an existing output", &force_},
        {"--allow-growth", "write the film even if it is much larger than its input", &choices_.repair.allowsGrowth},
        {"--json", "print one JSON object a line instead of text", &json_},
        {"-q,--quiet", "print errors only", &quiet_},
        {"-v,--verbose", "tell each stretch of damage", &verbose_},
    };
    rescue_.addTo(options);
    options.push_back({"--wanted",
                       "write down what of it would bring most back, as a domain map for ddrescue -m (for one input)",
                       &wanted_, "FILE"});
    batch_.addTo(options);
    return options;
  }

  std::optional<std::string> misuse() const override {
    if (output_ && outputFolder_) return "only one of --output and --output-dir can be given.";
    if (inputs_.size() > 1 && output_) return "--output takes one input; use --output-dir for several.";
    if (inputs_.size() > 1 && donor_) return "--donor takes one input.";
    if (inputs_.size() > 1 && !reports_.empty()) return "--report takes one input.";
    for (const std::string& report : reports_) {
      if (!reportOf(report)) return "--report takes a name that ends in .json, .html or .txt.";
      if (std::ranges::count(reports_, report) > 1) return "--report names the same file twice.";
    }
    if (wanted_ && !rescue_.mapPath()) return "--wanted needs --map.";
    if (wanted_ && (wanted_ == output_ || isReport(*wanted_))) return "--wanted and another option name the same file.";
    if (auto sentence = rescue_.misuse(inputs_.size())) return sentence;
    if (output_ && isReport(*output_)) return "--report and --output name the same file.";
    if (fps_ && !numberIn(*fps_, 0.01, 1000)) return "--fps takes a number between 0.01 and 1000, such as 29.97.";
    if (rate_ && !numberIn(*rate_, 100, 1e6)) return "--rate takes a whole number of hertz, such as 44100.";
    if (choices_.verifies && choices_.isDry) return "--verify plays what is written, and --dry-run writes nothing.";
    if (damaged_ && *damaged_ != "keep" && *damaged_ != "empty") return "--damaged is either keep or empty.";
    if (gaps_ && *gaps_ != "fill" && *gaps_ != "close") return "--gaps is either fill or close.";
    if (batch_.namesMore() && (output_ || donor_ || !reports_.empty() || rescue_.mapPath())) {
      return "--output, --donor, --report and --map take one input, and no folder or list.";
    }
    return batch_.misuse(inputs_);
  }

  Exit run(Environment& environment) override {
    environment.console.setQuiet(quiet_);
    choices_.repair.emptiesDamaged = damaged_ == "empty";
    choices_.repair.closesGaps = gaps_ == "close";
    if (fps_) choices_.repair.rates.pictures = numberIn(*fps_, 0.01, 1000);
    if (rate_) choices_.repair.rates.samples = static_cast<std::uint32_t>(*numberIn(*rate_, 100, 1e6));
    if (donor_) {
      auto chosen = chooseInput(*donor_, environment.files, environment.fileManager, FirstByte::left);
      if (const auto* sentence = std::get_if<std::string>(&chosen)) {
        environment.console.error(*sentence);
        return Exit::ioFailed;
      }
      choices_.donor = std::get<ChosenInput>(chosen).file;
    }
    if (isBatch(environment, batch_, inputs_)) {
      return runBatch(environment, batch_,
                      {.name = "salvage",
                       .options = options(),
                       .inputs = inputs_,
                       .output = output_,
                       .outputFolder = outputFolder_,
                       .outputPath = salvagedPath,
                       .isDry = choices_.isDry,
                       .isJson = json_,
                       .json = [](const Outcome& outcome) {
                         return inJson(SalvageOutcome{outcome, {}});
                       }});
    }
    auto rescue = rescue_.read(environment);
    if (const auto* sentence = std::get_if<std::string>(&rescue)) {
      environment.console.error(*sentence);
      return Exit::ioFailed;
    }
    choices_.rescue = std::get<std::shared_ptr<const ChosenRescue>>(rescue);
    const std::string film = choices_.isDry ? std::string() : placeFor(inputs_.front()).path;
    std::vector<std::string> written = {film, wanted_.value_or("")};
    written.insert(written.end(), reports_.begin(), reports_.end());
    if (auto sentence = rescue_.replacedBy(written, environment)) {
      environment.console.error(*sentence);
      return Exit::ioFailed;
    }
    Batch batch(environment, inputs_.size(), json_);
    workOnEach(
        environment, batch, inputs_, [this](const std::string& input) { return placeFor(input); },
        [&](const Assignment& assignment, const CommandInputs& all) {
          SalvageOutcome told{.outcome = outcomeOf("salvage", assignment.input), .report = {}};
          if (assignment.refusal && !choices_.isDry) {
            told.outcome.reason = *assignment.refusal;
          } else {
            told = salvageOne(environment, all, assignment.place, choices_, assignment.input);
          }
          if (wanted_) writeWanted(environment, told);
          for (const std::string& report : reports_) writeReport(environment, all, report, told);
          batch.report(told.outcome, inWords(told, verbose_), json_ ? inJson(told) : std::string());
          return told.outcome.outputPath;
        });
    return worse(batch.finish(), reportExit_);
  }

 private:
  /// By the rules of every output. Where it fails, that is told and counts, and the film stays.
  void writeReport(Environment& environment, const CommandInputs& inputs, const std::string& path,
                   const SalvageOutcome& told) {
    if (!told.report) return;
    // Another program that this one works for gives the film its place later.
    const bool isInPlace = environment.parent == nullptr;
    if (auto sentence = writeText(environment, inputs, {path, force_, false}, (*reportOf(path))(told, isInPlace))) {
      environment.console.error(*sentence);
      reportExit_ = Exit::ioFailed;
    }
  }

  /// The same of the map of what is wanted; it replaces neither the film nor the map that it was made from.
  void writeWanted(Environment& environment, const SalvageOutcome& told) {
    if (!told.report || !told.report->rescue) return;
    const CommandInputs inputs({inputs_.front(), *rescue_.mapPath()}, environment.fileManager);
    const std::string text = salvage::domainMap(salvage::wantedPlaces(*told.report->rescue), choices_.rescue->map.end);
    if (auto sentence = writeText(environment, inputs, {*wanted_, force_, false}, text)) {
      environment.console.error(*sentence);
      reportExit_ = Exit::ioFailed;
    }
  }

  [[nodiscard]] bool isReport(const std::string& path) const { return std::ranges::count(reports_, path) > 0; }

  [[nodiscard]] OutputChoice placeFor(const std::string& input) const {
    if (output_) return {*output_, force_, false};
    return {salvagedPath(input, outputFolder_), force_, false};
  }

  BatchOptions batch_;
  std::vector<std::string> inputs_;
  std::optional<std::string> output_;
  std::optional<std::string> outputFolder_;
  std::vector<std::string> reports_;
  RescueChoice rescue_;
  std::optional<std::string> wanted_;
  std::optional<std::string> donor_;
  std::optional<std::string> fps_;
  std::optional<std::string> rate_;
  std::optional<std::string> damaged_;
  std::optional<std::string> gaps_;
  OneSalvageChoices choices_;
  Exit reportExit_ = Exit::done;
  bool force_ = false;
  bool json_ = false;
  bool quiet_ = false;
  bool verbose_ = false;
};

}  // namespace

std::unique_ptr<Command> makeSalvageCommand() { return std::make_unique<SalvageCommand>(); }

}  // namespace zelvo::cli
