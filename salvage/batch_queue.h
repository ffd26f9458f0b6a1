/// Films worked on side by side, each by a program of its own, and told in their order.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "platform/film_programs.h"
#include "salvage/batch_line.h"

namespace zelvo::salvage {

/// What came of one film's program.
struct FilmResult {
  std::optional<platform::ProgramEnd> end;  ///< none when it was not started
  std::error_code error;                    ///< why it was not
  std::optional<BatchLine> line;            ///< what it told last of the film, if anything
  bool isLast = false;                      ///< `line` tells the end, not only that the output was to get its name
  std::string printed;
  std::string complaints;
};

/// What a film's program does just now, and how far it is with it. Sizes are in bytes.
struct FilmStep {
  std::string stage;       ///< in a few words, as "searching"
  std::uint64_t done = 0;  ///< of the stage
  std::uint64_t all = 0;   ///< 0 where that is not known

  friend bool operator==(const FilmStep&, const FilmStep&) = default;
};

/// A film that is being worked on.
struct RunningFilm {
  std::size_t film = 0;
  std::string progress;  ///< a line; empty before anything was told
  FilmStep step = {};    ///< the same for whoever draws it himself
};

/// What a queue works on. All calls come from `runQueue`, with films counted from 0.
class FilmQueue {
 public:
  virtual ~FilmQueue() = default;
  [[nodiscard]] virtual std::size_t films() const = 0;
  /// The command line for a film; nothing when there is nothing to be done about it. Called once, in order.
  [[nodiscard]] virtual std::optional<std::vector<std::string>> begin(std::size_t film) = 0;
  /// Its output is whole, and may get its name with a yes.
  [[nodiscard]] virtual bool mayName(std::size_t film, const BatchLine& line) = 0;
  /// Its program has ended, or was not started. Called once for each that was begun with a command line, as soon as
  /// that is so. The result is kept until the film is told.
  virtual void end(std::size_t film, const FilmResult& result) = 0;
  /// The same in the order of the films; null for one without a command line.
  virtual void tell(std::size_t film, const FilmResult* result) = 0;
  /// Many times a second while anything runs.
  virtual void look(const std::vector<RunningFilm>& running) = 0;
  [[nodiscard]] virtual bool isStopped() const = 0;
};

struct QueueChoices {
  unsigned jobs = 1;
  platform::FilmProgramRequest request;  ///< but for the arguments
  /// How long programs have to end in order after a stop, before they are killed.
  std::chrono::milliseconds patience = std::chrono::seconds(20);
};

/// Returns when every film was told, or after a stop when every program has ended. What was not begun then is not told.
/// Films that have ended wait until those before them have; while very much waits, no further one is begun.
/// Thread: that of the programs.
void runQueue(platform::FilmPrograms& programs, FilmQueue& queue, const QueueChoices& choices);

/// What a program says of its film, as a line between it and the queue.
struct FilmMessage {
  enum class Kind { progress, naming, end };
  Kind kind = Kind::progress;
  std::string progress;
  std::optional<BatchLine> line;
  FilmStep step = {};
};
[[nodiscard]] std::string filmMessage(const FilmMessage& message);
[[nodiscard]] std::optional<FilmMessage> readFilmMessage(std::string_view text);

/// How many films may be worked on at once: as many as are wanted, and no more than there is memory for.
struct QueueWidth {
  unsigned jobs = 1;
  bool isLowered = false;
};
/// A film's program and what it starts may take so much. In bytes.
inline constexpr std::uint64_t kMemoryOfFilm = std::uint64_t{256} << 20U;
[[nodiscard]] QueueWidth queueWidth(unsigned wanted, std::optional<std::uint64_t> availableMemory);

}  // namespace zelvo::salvage
