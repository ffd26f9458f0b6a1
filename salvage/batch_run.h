/// One batch from its first film to its last: what the journal knows is left out, the rest goes through the queue, and
/// each end is written down. Nothing is printed here. Sizes are in bytes.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <system_error>
#include <unordered_set>
#include <vector>

#include "platform/file_manager.h"
#include "platform/time_left.h"
#include "salvage/batch_journal.h"
#include "salvage/batch_queue.h"

namespace zelvo::salvage {

struct PlannedFilm {
  std::string input;
  std::string output;   ///< empty where the command writes no film
  std::string refusal;  ///< a sentence when nothing may be done about it
};

struct BatchOrder {
  std::string command;
  std::string options;                 ///< what decides the results, for the journal
  std::vector<std::string> arguments;  ///< the command and its options, for every film
  std::vector<PlannedFilm> films;
  std::optional<std::string> outputFolder;  ///< folders below it are made when they are missing
  bool makesOutputs = true;                 ///< false for a dry run
  bool resumes = false;
};

enum class ToldAs {
  worked,      ///< its program came to its end: `result`
  refused,     ///< by its plan
  skipped,     ///< done by an earlier run
  adopted,     ///< its output was whole and in place, and only the journal's line was missing
  noFolder,    ///< its output's folder could not be made: `error`
  notStarted,  ///< its program could not be started: `error`
  died,        ///< its program ended before it had told of an end: `result`
};

struct ToldFilm {
  const PlannedFilm& film;
  ToldAs as = ToldAs::worked;
  const FilmResult* result = nullptr;
  BatchLine line;  ///< as it stands in the journal, or would
  std::error_code error;
};

struct BatchProgress {
  std::vector<RunningFilm> running;
  std::size_t ended = 0;
  std::size_t films = 0;
  std::uint64_t endedBytes = 0;  ///< of the inputs
  std::uint64_t bytes = 0;
  std::optional<double> secondsLeft;
};

/// Hears of a batch. Thread: that of the run.
class BatchListener {
 public:
  virtual ~BatchListener() = default;
  /// Each film once, in their order.
  virtual void tell(const ToldFilm& film) = 0;
  virtual void progress(const BatchProgress& progress) = 0;
  /// The journal cannot be written to, so no further film is begun.
  virtual void journalFailed(std::error_code error) = 0;
  /// A sentence for the journal about a film that ended as `as` says.
  [[nodiscard]] virtual std::string reasonOf(ToldAs as, const FilmResult* result, std::error_code error) = 0;
};

/// Thread: one.
class BatchRun final : public FilmQueue {
 public:
  struct Services {
    platform::FileManager& fileManager;
    platform::LockedFiles& lockedFiles;
    std::function<std::string(const std::string& path)> checksum;  ///< SHA-256 of a file, hexadecimal; or empty
    std::function<bool()> isStopped;
  };

  /// `journal` may be null.
  BatchRun(const BatchOrder& order, BatchJournal* journal, BatchListener& listener, Services services);

  /// How many films were told.
  [[nodiscard]] std::size_t told() const { return told_; }

  [[nodiscard]] std::size_t films() const override { return order_.films.size(); }
  [[nodiscard]] std::optional<std::vector<std::string>> begin(std::size_t film) override;
  [[nodiscard]] bool mayName(std::size_t film, const BatchLine& line) override;
  void end(std::size_t film, const FilmResult& result) override;
  void tell(std::size_t film, const FilmResult* result) override;
  void look(const std::vector<RunningFilm>& running) override;
  [[nodiscard]] bool isStopped() const override { return isBroken_ || services_.isStopped(); }

 private:
  struct Known {
    std::uint64_t size = 0;
    std::int64_t modified = 0;
    ToldAs as = ToldAs::worked;
    std::error_code error;
    BatchLine line;
  };
  [[nodiscard]] BatchLine lineFor(std::size_t film) const;
  void complete(std::size_t film, BatchLine& line) const;
  /// True when nothing is left to be done about it.
  [[nodiscard]] bool resumed(std::size_t film);
  [[nodiscard]] std::error_code makeFolder(const std::string& output);
  void clean(const std::string& output);
  /// Leaves a film out that will not be worked on.
  void leaveOut(std::size_t film, ToldAs as, std::string reason);
  [[nodiscard]] bool write(const BatchLine& line);
  /// A stop may reach a program before it can listen, or end one that did not listen for long.
  [[nodiscard]] bool wasStopped(const platform::ProgramEnd& end) const;

  const BatchOrder& order_;
  BatchJournal* journal_;
  BatchListener& listener_;
  const Services services_;
  std::vector<Known> known_;
  std::unordered_set<std::string> cleanFolders_;
  platform::TimeLeft timeLeft_;
  std::size_t told_ = 0;
  std::size_t ended_ = 0;
  std::uint64_t endedBytes_ = 0;
  std::uint64_t bytes_ = 0;
  bool isBroken_ = false;
};

/// Removes what programs that are no more have left unfinished in a folder. A file that a program still writes is
/// locked, and stays.
void removeDeadFiles(const std::string& folder, platform::FileManager& fileManager, platform::LockedFiles& lockedFiles);

}  // namespace zelvo::salvage
