/// The film that is chosen, for a card on the first page.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace zelvo::platform {

struct ChosenFilm {
  std::string path;
  std::uint64_t size = 0;  ///< bytes
  /// Answers the length in seconds; nothing where the file does not tell one. It reads the file, which may take as long
  /// as a disk likes: it is asked once, on a thread that nobody waits for. It may stand empty.
  std::function<std::optional<double>()> readLength;
};

/// Thread: main.
class ChosenFilmView {
 public:
  virtual ~ChosenFilmView() = default;
  /// Shows the card and leads to the next step. It goes once `pathfield` is emptied.
  virtual void show(ChosenFilm film) = 0;
};

}  // namespace zelvo::platform
