/// Choosers of the deep repair: of several films, of one, of a folder, and of a name for a new file. Each is a panel
/// over the window; asking returns without waiting, and the answer comes later, once. Thread: main.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace zelvo::platform {

struct ChooserRequest {
  std::string title;                  ///< what is chosen, as a heading
  std::string prompt;                 ///< text of the button that ends it with an answer
  std::optional<std::string> folder;  ///< where it opens; where it was last without one
};

struct NewFileRequest {
  ChooserRequest chooser;
  std::string name;     ///< proposed
  std::string tickBox;  ///< text of a box to tick; empty for none
  bool isTicked = false;
  /// Why a path cannot be taken, as a sentence; empty when it can be. Whether an existing file may be replaced the
  /// panel asks by itself.
  std::function<std::string(const std::string& path)> refusal;
};

struct NewFileAnswer {
  std::string path;
  bool isTicked = false;
};

class FilmChoosers {
 public:
  virtual ~FilmChoosers() = default;
  /// Films that exist, of any name; none when it is cancelled.
  virtual void chooseFilms(const ChooserRequest& request, std::function<void(std::vector<std::string>)> answer) = 0;
  /// One film; nothing when it is cancelled.
  virtual void chooseFilm(const ChooserRequest& request, std::function<void(std::optional<std::string>)> answer) = 0;
  virtual void chooseFolder(const ChooserRequest& request, std::function<void(std::optional<std::string>)> answer) = 0;
  virtual void chooseNewFile(const NewFileRequest& request,
                             std::function<void(std::optional<NewFileAnswer>)> answer) = 0;
};

}  // namespace zelvo::platform
