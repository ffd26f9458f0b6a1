#include "cli/command_line.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "cli/shown_text.h"

namespace zelvo::cli {

namespace {

/// Help that begins with examples.
class ExamplesFirst final : public CLI::Formatter {
 public:
  explicit ExamplesFirst(std::string examples) : examples_(std::move(examples)) { column_width(26); }
  std::string make_help(const CLI::App* app, std::string name, CLI::AppFormatMode mode) const override {
    return "Examples:\n" + examples_ + "\n" + CLI::Formatter::make_help(app, std::move(name), mode);
  }

 private:
  std::string examples_;
};

std::string exampleOfEach() {
  std::string examples;
  for (const CommandRow& row : commandTable()) examples += row.examples.substr(0, row.examples.find('\n') + 1);
  return examples;
}

/// The parser takes a text between brackets for a list. Before an argument that begins with a bracket goes this
/// character, and before one that begins with the character itself; it is taken off what the parser stores.
constexpr char kMark = '\x01';

std::string marked(std::string argument) {
  if (argument.starts_with('[') || argument.starts_with(kMark)) argument.insert(0, 1, kMark);
  return argument;
}

std::string asTyped(std::string argument) {
  if (argument.starts_with(kMark)) argument.erase(0, 1);
  return argument;
}

/// The arguments after the program's name, in the parser's order: the last first.
std::vector<std::string> argumentsFrom(int argc, const char* const* argv) {
  std::vector<std::string> arguments;
  for (int i = argc - 1; i > 0; --i) arguments.push_back(marked(argv[i]));
  return arguments;
}

/// A sentence of the parser with the arguments in it as they were typed.
std::string withArgumentsAsTyped(std::string sentence, int argc, const char* const* argv) {
  for (int i = 1; i < argc; ++i) {
    const std::string mark = marked(argv[i]);
    if (mark == argv[i]) continue;
    for (std::size_t at = sentence.find(mark); at != std::string::npos; at = sentence.find(mark, at)) {
      sentence.replace(at, mark.size(), argv[i]);
    }
  }
  return sentence;
}

void addOption(CLI::App& app, const Option& option) {
  CLI::Option* added = std::visit(
      [&](auto* target) -> CLI::Option* {
        using Value = std::remove_pointer_t<decltype(target)>;
        if constexpr (std::is_same_v<Value, bool>) {
          return app.add_flag(option.names, *target, option.help);
        } else if constexpr (std::is_same_v<Value, int>) {
          return app.add_flag(option.names, *target, option.help);
        } else if constexpr (std::is_same_v<Value, std::optional<std::string>>) {
          return app
              .add_option_function<std::string>(
                  option.names, [target](const std::string& value) { *target = value; }, option.help)
              ->allow_extra_args(false);
        } else {
          CLI::Option* const several = app.add_option(option.names, *target, option.help);
          // Behind a dash each value has an option of its own.
          return option.names.starts_with('-') ? several->allow_extra_args(false) : several;
        }
      },
      option.target);
  const bool isSwitch = std::holds_alternative<bool*>(option.target) || std::holds_alternative<int*>(option.target);
  if (!isSwitch) added->transform(asTyped);
  if (!option.value.empty()) added->option_text(option.value);
  if (!option.names.starts_with('-')) {
    added->option_text(std::holds_alternative<std::vector<std::string>*>(option.target) ? "..." : "");
    added->required(!option.mayLack);
  }
}

/// What the parser did not like, without its own sentences.
std::string inOurWords(const CLI::Error& error, const CLI::App& app, int argc, const char* const* argv) {
  const std::string raw = error.what();
  const std::string name = raw.substr(0, raw.find(':'));
  if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr) {
    const std::vector<std::string> extras = app.remaining(true);
    std::string first = extras.empty() ? "" : extras.front();
    // Of "-v=3" the parser is left with "-=3".
    if (first.starts_with("-=")) {
      for (int i = 1; i < argc; ++i) {
        if (std::string_view(argv[i]).ends_with(first.substr(1))) first = argv[i];
      }
    }
    if (first.starts_with('-')) return "there is no option " + first + " here.";
    return "\"" + first + "\" is one argument too many.";
  }
  if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr) {
    if (raw.find("At Most") != std::string::npos) return name + " can be given only once.";
    return name + " needs a value after it.";
  }
  if (dynamic_cast<const CLI::ConversionError*>(&error) != nullptr) {
    constexpr std::string_view kBefore = "Could not convert: ";
    const std::string option = raw.starts_with(kBefore) ? raw.substr(kBefore.size()) : name;
    return option.substr(0, option.find(" = ")) + " stands alone; no value goes with it.";
  }
  return "the command line cannot be understood.";
}

/// A sentence when a name was given that is empty.
std::optional<std::string> emptyName(Command& command) {
  for (const Option& option : command.options()) {
    const bool isInput = !option.names.starts_with('-');
    const bool isEmpty = std::visit(
        [](const auto* target) {
          using Value = std::remove_const_t<std::remove_pointer_t<decltype(target)>>;
          if constexpr (std::is_same_v<Value, std::vector<std::string>>) {
            return std::any_of(target->begin(), target->end(), [](const std::string& one) { return one.empty(); });
          } else if constexpr (std::is_same_v<Value, std::optional<std::string>>) {
            return *target == "";
          } else if constexpr (std::is_same_v<Value, std::string>) {
            return target->empty();
          } else {
            return false;
          }
        },
        option.target);
    if (!isEmpty) continue;
    if (isInput) return "an input's name is empty.";
    return "the name after " + option.names.substr(option.names.find("--")) + " is empty.";
  }
  return std::nullopt;
}

CommandLine misused(Console& console, const std::string& sentence, std::string_view command) {
  console.error(printable(sentence));
  const std::string name = "zelvo-avi" + (command.empty() ? std::string() : " " + std::string(command));
  console.error("see " + name + " --help for what can be given.");
  return {nullptr, Exit::wrongUse};
}

std::string_view chosenCommand(const CLI::App& app) {
  const auto chosen = app.get_subcommands();
  if (chosen.empty()) return {};
  for (const CommandRow& row : commandTable()) {
    if (chosen.front()->get_name() == row.name) return row.name;
  }
  return {};
}

/// The first argument when it stands where a command should and is none.
std::optional<std::string> unknownCommand(int argc, const char* const* argv) {
  if (argc < 2 || *argv[1] == '-') return std::nullopt;
  for (const CommandRow& row : commandTable()) {
    if (row.name == argv[1]) return std::nullopt;
  }
  return argv[1];
}

}  // namespace

CommandLine readCommandLine(int argc, const char* const* argv, Console& console) {
  CLI::App app("Repairs damaged AVI video files. A repair never changes the file it is given.", "zelvo-avi");
  app.formatter(std::make_shared<ExamplesFirst>(exampleOfEach()));
  app.set_version_flag("--version", "zelvo-avi " ZELVO_VERSION, "print the version and exit");
  app.require_subcommand(1);

  if (const auto unknown = unknownCommand(argc, argv)) {
    return misused(console, "there is no command \"" + *unknown + "\".", {});
  }
  std::vector<std::unique_ptr<Command>> commands;
  for (const CommandRow& row : commandTable()) {
    CLI::App* sub = app.add_subcommand(std::string(row.name), std::string(row.summary));
    sub->formatter(std::make_shared<ExamplesFirst>(std::string(row.examples)));
    sub->set_version_flag("--version", "zelvo-avi " ZELVO_VERSION, "print the version and exit");
    commands.push_back(row.make());
    for (const Option& option : commands.back()->options()) addOption(*sub, option);
  }

  try {
    app.parse(argumentsFrom(argc, argv));
  } catch (const CLI::CallForHelp&) {
    const auto chosen = app.get_subcommands();
    console.result(chosen.empty() ? app.help() : chosen.front()->help("zelvo-avi"));
    return {};
  } catch (const CLI::CallForVersion& version) {
    console.result(std::string(version.what()) + "\n");
    return {};
  } catch (const CLI::RequiredError&) {
    const std::string_view command = chosenCommand(app);
    return misused(console, command.empty() ? "no command was given." : "no input was given.", command);
  } catch (const CLI::Error& error) {
    return misused(console, withArgumentsAsTyped(inOurWords(error, app, argc, argv), argc, argv), chosenCommand(app));
  }

  const std::string_view chosen = chosenCommand(app);
  for (std::size_t i = 0; i < commands.size(); ++i) {
    if (commandTable()[i].name != chosen) continue;
    if (const auto sentence = emptyName(*commands[i])) return misused(console, *sentence, chosen);
    if (const auto sentence = commands[i]->misuse()) return misused(console, *sentence, chosen);
    return {std::move(commands[i]), Exit::done};
  }
  return misused(console, "no command was given.", {});
}

}  // namespace zelvo::cli
