/// The elements of the window that the deep repair touches: what asks for it on the given pages, and pages of its own.
/// Thread: main, unless an element says otherwise.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/damage_picture.h"
#include "platform/elements.h"
#include "platform/movies.h"

namespace zelvo::platform {

/// The pages of the deep repair lie over the three of the tab view, which stays as it is below them.
enum class DeepPage : std::uint8_t {
  none,    ///< the page of the tab view is seen
  run,     ///< one film is worked on
  result,  ///< what came of a film
  films,   ///< several films
};

class DeepPages {
 public:
  virtual ~DeepPages() = default;
  virtual void show(DeepPage page) = 0;
  [[nodiscard]] virtual DeepPage shown() const = 0;
  /// True when the first page of the tab view is seen, and no sheet lies over it.
  [[nodiscard]] virtual bool isChoosing() const = 0;
};

/// A sentence with a button, which are seen together or not at all.
class DeepOffer {
 public:
  virtual ~DeepOffer() = default;
  virtual void show(std::string_view sentence) = 0;
  virtual void hide() = 0;
};

/// How far a deep repair is. Sizes are in bytes.
struct DeepProgress {
  std::string stage;       ///< what is being done, for a person; empty before anything is known
  std::uint64_t done = 0;  ///< of the stage
  std::uint64_t all = 0;   ///< 0 where that is not known
};

class DeepProgressView {
 public:
  virtual ~DeepProgressView() = default;
  /// From now on tells what `look` answers, with a bar and how long the stage may still take. `look` is asked some
  /// times a second while the page is shown.
  virtual void follow(std::function<DeepProgress()> look) = 0;
};

enum class DeepVerdict : std::uint8_t {
  clean,     ///< nothing was wrong
  repaired,  ///< nothing is lost
  partial,   ///< something is
  hopeless,  ///< nothing could be brought back
};

/// A line about one stream of the film, or about its header: what it is about, and what there is to say.
struct DeepLine {
  std::string about;
  std::string words;

  friend bool operator==(const DeepLine&, const DeepLine&) = default;
};

struct DeepResult {
  std::string film;  ///< the damaged film's file name
  DeepVerdict verdict = DeepVerdict::hopeless;
  std::string sentence;         ///< the verdict, for a layman
  std::vector<DeepLine> lines;  ///< the streams, then the header and whatever else is to be told
  DamagePicture picture;        ///< without bars when nothing is known
};

/// What the normal repair would keep, beside what the deep one has.
struct DeepComparison {
  struct Row {
    std::string about;  ///< "Pictures"
    std::string normal;
    std::string deep;

    friend bool operator==(const Row&, const Row&) = default;
  };
  std::string sentence;
  std::vector<Row> rows;  ///< may be empty, when the normal repair takes no such film

  friend bool operator==(const DeepComparison&, const DeepComparison&) = default;
};

class DeepResultView {
 public:
  virtual ~DeepResultView() = default;
  /// Shows it, without a comparison.
  virtual void show(DeepResult result) = 0;
  virtual void showComparison(const DeepComparison& comparison) = 0;
  /// Told the time in seconds of a place in the damage picture that the preview shall go to.
  virtual void setTimeReceiver(std::function<void(double seconds)> receiver) = 0;
};

/// One film of several.
struct QueuedFilm {
  enum class State : std::uint8_t { waiting, working, done, failed, stopped };
  std::string path;
  State state = State::waiting;
  std::optional<DeepVerdict> verdict = {};  ///< once it is done
  std::string words = {};                   ///< what it comes to, or why it failed; while it works, the stage
  std::optional<double> share = {};         ///< how much of the stage is done, 0 to 1

  friend bool operator==(const QueuedFilm&, const QueuedFilm&) = default;
};

class QueueView {
 public:
  virtual ~QueueView() = default;
  virtual void show(const std::vector<QueuedFilm>& films) = 0;
  virtual void update(std::size_t film, const QueuedFilm& told) = 0;
  /// Told which film's result is asked for.
  virtual void setOpener(std::function<void(std::size_t film)> opener) = 0;
  /// Told which film is to be taken out of the queue.
  virtual void setRemover(std::function<void(std::size_t film)> remover) = 0;
};

struct DeepOutlets {
  DeepPages& pages;

  // Page 1 of the tab view.
  Button& deeprepairbutton;  ///< "Deep repair", beside the other one; enabled while a film is chosen
  Button& addfilmsbutton;    ///< "Add films…"
  DeepOffer& refusedoffer;   ///< after a film was refused; its button is `refusedofferbutton`
  Button& refusedofferbutton;
  // Page 3 of the tab view.
  DeepOffer& partlyoffer;  ///< the normal repair has not kept all; its button is `partlyofferbutton`
  Button& partlyofferbutton;

  // The page of a run.
  TextField& runpathlabel;
  DeepProgressView& runprogress;
  Button& runstopbutton;
  Button& runhome;

  // The page of a result.
  DeepResultView& result;
  MovieView& movieview;
  Button& savebutton;
  Button& copyreportbutton;
  Button& comparebutton;
  Button& donorbutton;  ///< "Use a film of the same camera…"; hidden while the header is the film's own
  Button& resulthome;   ///< back to where the result was asked from

  // The page of several films.
  QueueView& queue;
  TextField& queuefoldertext;
  Button& queuefolderbutton;
  Button& queueaddbutton;
  Button& queuestartbutton;
  Button& queuestopbutton;
  Button& queuehome;

  // The sheet of a save.
  Window& mainWindow;
  Window& savepanel;
  ProgressBar& saveprogressbar;
  TextField& savebytestext;
  Button& savestopbutton;
};

}  // namespace zelvo::platform
