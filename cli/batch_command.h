/// A command done to many films, each by a program of its own.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "cli/batch_options.h"
#include "cli/command.h"
#include "cli/environment.h"
#include "cli/outcome.h"

namespace zelvo::cli {

/// Which command it is, and what was asked of it.
struct BatchCommand {
  std::string name;
  std::vector<Option> options;  ///< the command's, with what was given; those of batches may be among them
  std::vector<std::string> inputs;
  std::optional<std::string> output = {};        ///< of the one input
  std::optional<std::string> outputFolder = {};  ///< else each output lies beside its input
  /// Where the output of an input goes: beside it, or into a folder. None where the command makes no file.
  std::string (*outputPath)(const std::string& input, const std::optional<std::string>& folder) = nullptr;
  bool isDry = false;
  bool isJson = false;
  std::optional<unsigned> jobs =
      {};  ///< films at once where nothing is asked for; as many as there are processors without
  /// The line of JSON for a film that its own program told nothing about.
  std::string (*json)(const Outcome& outcome) = nullptr;
};

/// True when the inputs are to be worked on as a batch.
[[nodiscard]] bool isBatch(const Environment& environment, const BatchOptions& options,
                           const std::vector<std::string>& inputs);

/// Thread: main.
[[nodiscard]] Exit runBatch(Environment& environment, const BatchOptions& options, const BatchCommand& command);

/// What was given, as arguments of a command line once more: without the inputs, without where outputs go, and without
/// what belongs to a batch.
[[nodiscard]] std::vector<std::string> argumentsGiven(const std::vector<Option>& options);
/// Those of them that decide what comes of a film, as one text.
[[nodiscard]] std::string decidingOptions(const std::vector<Option>& options);

}  // namespace zelvo::cli
