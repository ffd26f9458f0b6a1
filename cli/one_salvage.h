/// The deep repair of one input, from its name to the output's.
#pragma once

#include <memory>
#include <string>

#include "cli/command_inputs.h"
#include "cli/environment.h"
#include "cli/output_place.h"
#include "cli/rescue_choice.h"
#include "cli/salvage_outcome.h"
#include "salvage/deep_repair.h"

namespace zelvo::cli {

/// What was chosen for all inputs.
struct OneSalvageChoices {
  salvage::SalvageChoices repair;
  std::shared_ptr<platform::ReadableFile> donor;  ///< null without one
  std::shared_ptr<const ChosenRescue> rescue;     ///< null without a map
  bool isDry = false;
  bool verifies = false;  ///< plays the film that was written
};

/// Thread: the one that `environment` is of.
[[nodiscard]] SalvageOutcome salvageOne(Environment& environment, const CommandInputs& inputs, OutputChoice place,
                                        const OneSalvageChoices& choices, const std::string& inputPath);

}  // namespace zelvo::cli
