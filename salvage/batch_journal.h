/// The journal of a batch: what became of each film, line by line, so that a run that was cut short goes on where it
/// was. One run at a time holds it.
/// Decision: collections, A run holds its journal while any part of it lives
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <unordered_map>
#include <variant>
#include <vector>

#include "platform/file_manager.h"
#include "platform/locked_files.h"
#include "salvage/batch_line.h"

namespace zelvo::salvage {

/// How a text of lines was read.
struct JournalReading {
  std::uint64_t lines = 0;        ///< whole ones
  std::uint64_t end = 0;          ///< where the last whole line ends
  std::uint64_t tornBytes = 0;    ///< after it: a line whose writing was cut short
  std::uint64_t foreignLine = 0;  ///< number of the first line, from 1, that is none of a journal's; 0 for none
  std::error_code error;          ///< why the rest could not be read
};

using JournalReader = std::function<platform::IoResult(std::uint64_t offset, std::span<std::byte> into)>;

/// Hands each line to `take`, in their order, until one is no line of a journal. The last one may be torn.
/// Thread: any.
[[nodiscard]] JournalReading readJournal(const JournalReader& read, const std::function<void(BatchLine)>& take);

/// What is to be done about a film that the journal may know.
enum class ResumeStep {
  work,   ///< it is not done, or something has changed
  skip,   ///< it is done, and nothing has changed
  adopt,  ///< its output got its name, and only the line that says so is missing
};

/// Why a journal cannot be used.
struct JournalRefusal {
  std::error_code error;          ///< `timed_out` when another run holds it
  std::uint64_t foreignLine = 0;  ///< number of the line that is none of a journal's; 0 for none
};

/// Thread: one.
class BatchJournal {
 public:
  /// Opens or creates it, and reads what it says. Waits at most so long for another run that holds it.
  [[nodiscard]] static std::variant<std::unique_ptr<BatchJournal>, JournalRefusal> open(
      platform::LockedFiles& files, const std::string& path, std::chrono::milliseconds most,
      const std::function<bool()>& goesOn);

  /// The line lies on the medium when this returns without an error.
  [[nodiscard]] std::error_code append(const BatchLine& line);

  /// `film` says which film, command and options it would be, with the input's size and time as they are now.
  /// `checksum` tells the input's SHA-256 when it is asked; it is, where only the time has changed.
  [[nodiscard]] ResumeStep stepFor(const BatchLine& film, platform::FileManager& fileManager,
                                   const std::function<std::string()>& checksum) const;
  /// The line about a film that is to be adopted or skipped. Of one that is skipped, only what decides that is kept.
  [[nodiscard]] const BatchLine& lineOf(const BatchLine& film) const;

  [[nodiscard]] const platform::FileLock& lock() const { return text_->lock(); }

 private:
  explicit BatchJournal(std::unique_ptr<platform::LockedText> text) : text_(std::move(text)) {}
  void note(BatchLine line);

  std::unique_ptr<platform::LockedText> text_;
  std::unordered_map<std::string, BatchLine> last_;  ///< by command and input
};

/// Whether the output that a line names lies under its name: the very file.
[[nodiscard]] bool isInPlace(const BatchOutput& output, platform::FileManager& fileManager);

}  // namespace zelvo::salvage
