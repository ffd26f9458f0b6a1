/// A file that a command makes for one input: the steps from a look at its folder to its final name. Sizes are in
/// bytes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "avi/read_failures.h"
#include "cli/command_inputs.h"
#include "cli/environment.h"
#include "cli/output_place.h"

namespace zelvo::cli {

class NewOutput {
 public:
  NewOutput(Environment& environment, const CommandInputs& inputs, OutputChoice place);

  [[nodiscard]] const OutputChoice& place() const { return place_; }
  [[nodiscard]] const std::string& path() const { return place_.path; }

  /// Makes the folder when that is wanted, sees that `needed` bytes fit into it, and creates the hidden file there.
  /// \return a sentence when there is none. Thread: any one.
  [[nodiscard]] std::optional<std::string> create(HiddenFile& file, std::uint64_t needed);
  /// The same of one more hidden file, when the first is there.
  [[nodiscard]] std::error_code createAnother(HiddenFile& file) { return file.create(folder_, place_); }

  /// Gives the hidden file the final name.
  /// \return a sentence when it cannot have it; it stays hidden then. Thread: main.
  [[nodiscard]] std::optional<std::string> publish(HiddenFile& file);
  /// Has the new name, and that of a folder made for it, outlive a power cut. A sentence of warning when that fails.
  [[nodiscard]] std::optional<std::string> keepName();

  /// The sentence about a write that failed.
  [[nodiscard]] std::string writeFailed(std::uint64_t offset, std::error_code cause) const;

 private:
  Environment& environment_;
  const CommandInputs& inputs_;
  const OutputChoice place_;
  const std::string folder_;
};

/// Writes a short text to a place by the rules of every output. A sentence when it cannot be.
[[nodiscard]] std::optional<std::string> writeText(Environment& environment, const CommandInputs& inputs,
                                                   const OutputChoice& place, std::string_view text);

/// The sentence about reads that failed, of an output that is there all the same; nothing when none did. `consequence`
/// ends it: a sentence with a blank before it, or nothing.
[[nodiscard]] std::optional<std::string> readsFailed(const std::string& inputPath, const avi::ReadFailures& failures,
                                                     std::string_view consequence);

}  // namespace zelvo::cli
