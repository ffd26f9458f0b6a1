/// What a journal says of one film: a JSON object on a line of its own. docs/cli-journal.schema.json describes it.
/// Sizes are in bytes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zelvo::salvage {

enum class LineState {
  naming,  ///< the film is whole, and about to get its name
  done,    ///< the command came to its end, with an output or without one
  failed,  ///< reading or writing failed, or the program that worked on it did
};

struct BatchFigure {
  std::string name;
  double value = 0;

  friend bool operator==(const BatchFigure&, const BatchFigure&) = default;
};

/// How a film or a stream of it fares from its beginning to its end, a letter for each equal part: "." as it was, "m"
/// mended, "x" not of this film, "h" hurt, "l" lost.
struct BatchPicture {
  std::string name;
  std::string cells;

  friend bool operator==(const BatchPicture&, const BatchPicture&) = default;
};
inline constexpr std::string_view kPictureLetters = ".mxhl";

struct BatchOutput {
  std::string path;
  std::uint64_t size = 0;
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::int64_t modified = 0;  ///< nanoseconds since 1970, UTC
  std::string sha256;         ///< hexadecimal; empty when it was not taken

  friend bool operator==(const BatchOutput&, const BatchOutput&) = default;
};

struct BatchLine {
  LineState state = LineState::failed;
  std::string command;
  std::string options;  ///< what else decides the result, as it was given
  std::string input;    ///< a path from the root on
  std::uint64_t inputSize = 0;
  std::int64_t inputModified = 0;  ///< nanoseconds since 1970, UTC
  std::string inputSha256;         ///< hexadecimal; empty when it was not taken
  std::optional<BatchOutput> output;
  std::string outcome;  ///< one of the words of the command's own JSON
  std::string verdict;  ///< the command's own judgement of the film, where it has one
  std::string reason;   ///< a sentence, or empty
  int exit = 0;
  std::vector<BatchFigure> figures;
  std::vector<BatchPicture> picture;
  double seconds = 0;
  std::uint64_t peakMemory = 0;  ///< 0 when it is not known
  bool isAdopted = false;        ///< found whole in its place by a later run

  friend bool operator==(const BatchLine&, const BatchLine&) = default;
};

/// Longer lines are none of a journal's.
inline constexpr std::size_t kMaxJournalLine = std::size_t{256} << 10U;
inline constexpr std::size_t kMaxFigures = 64;
inline constexpr std::size_t kMaxPictureRows = 16;
inline constexpr std::size_t kMaxPictureCells = 400;

/// With its end.
[[nodiscard]] std::string journalLine(const BatchLine& line);

/// Nothing when the text, without a line's end, is no line of a journal.
[[nodiscard]] std::optional<BatchLine> readJournalLine(std::string_view text);

}  // namespace zelvo::salvage
