/// One player of the movie library, with one file: it opens it paused at its beginning or at the place asked for, plays
/// and pauses, and draws into memory. Nothing here waits for the file: requests are queued to the player's own threads,
/// and what became of them is fetched with `news` after the player has rung. Sizes are in pixels, times in seconds.
/// Thread: main, apart from the ringing and the destructor.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/qt/preview/shown_movie.h"

struct mpv_event;
struct mpv_event_property;
struct mpv_handle;
struct mpv_render_context;

namespace zelvo::platform::qt {

class MpvPlayer {
 public:
  /// What happened since the last look.
  struct News {
    bool frame = false;                  ///< there is a picture to draw, a new one or the same one again
    bool shape = false;                  ///< the picture's shape became known or changed
    bool time = false;                   ///< the place in the film or its length became known or changed
    bool ended = false;                  ///< it was playing and came to the end of the film, or was sent there
    bool pictureless = false;            ///< the film is open, and has no picture that can be shown
    std::optional<std::string> failure;  ///< why the film cannot be played; it will never play
  };
  /// The picture's size with square pixels; 0 by 0 while there is none.
  struct Shape {
    int width = 0;
    int height = 0;
  };

  /// Makes a player that begins to open the file `path`. `ring` is called on threads of the player, at any time until
  /// `silence`, also within calls to the player: it may only ask the main thread to look for news.
  /// Uses decimal points (below).
  /// \return nothing when the library cannot make a player.
  [[nodiscard]] static std::unique_ptr<MpvPlayer> open(const std::string& path, std::function<void()> ring);

  /// Sets the process's LC_NUMERIC to "C", if it is not: the library reads and writes numbers with a decimal point and
  /// makes no player under another convention. To be called after the application object was made, which sets the
  /// user's.
  static void useDecimalPoints();

  MpvPlayer(const MpvPlayer&) = delete;
  MpvPlayer& operator=(const MpvPlayer&) = delete;
  /// Waits until the player has let go of its file and its sound. Thread: any, once `silence` was called.
  ~MpvPlayer();

  /// Ends the ringing; it is over when this returns.
  void silence();

  /// Plays on, from the beginning when the end was reached.
  void play();
  /// Stands still.
  void pause();
  /// While held it stands still, whatever it was asked; one that plays goes on when it is let go.
  void setHeld(bool held);
  /// Shows the first picture.
  void gotoBeginning();
  /// Shows the picture at a time; one that lies at the end or behind it is the end. Asked before the film is open, it
  /// begins there.
  void gotoTime(double seconds);
  /// Holds from before the first sound on, when it is asked right after `open`.
  void setLoudness(const Loudness& loudness);

  [[nodiscard]] News news();
  [[nodiscard]] Shape shape() const { return hasFrame_ ? shape_ : Shape(); }
  /// Where the film is, or is going.
  [[nodiscard]] double position() const;
  /// Nothing while it is not known.
  [[nodiscard]] std::optional<double> duration() const { return duration_; }
  /// What the player says of it.
  [[nodiscard]] const Loudness& loudness() const { return loudness_; }

  /// Draws the current picture over the whole of `pixels`: `height` lines of `stride` bytes, four bytes a pixel in the
  /// order of a native 0xffRRGGBB. Lines that begin at multiples of 64 bytes are drawn fastest.
  /// \return false when there is no picture yet.
  [[nodiscard]] bool draw(std::uint8_t* pixels, int width, int height, std::size_t stride);
  /// Takes the current picture as drawn, for when nobody looks.
  void passFrame();

 private:
  struct Core {
    void operator()(mpv_handle* core) const;
  };
  struct Renderer {
    void operator()(mpv_render_context* renderer) const;
  };

  MpvPlayer(mpv_handle* core, std::function<void()> ring);
  [[nodiscard]] bool begin(const std::string& path);
  void take(const mpv_event& event, News& news);
  void takeProperty(const mpv_event_property& property, News& news);
  void takeNumber(std::string_view name, double number, News& news);
  void takeReply(const mpv_event& event, News& news);
  /// The film stands or goes on where it was sent, or could not go there.
  void arrive();
  void sendPause();
  void sendSeek();
  void askWhetherEnded();
  /// The renderer's callback: a picture was announced. Thread: any.
  void announcePicture();
  /// The core knows that it is to play.
  [[nodiscard]] bool isToldToPlay() const { return !pauseSent_ && !pauseInFlight_; }
  [[nodiscard]] bool isAtEnd(double seconds) const { return duration_ && seconds >= *duration_; }

  const std::function<void()> ring_;
  // The renderer goes before its core: the order of these two matters.
  std::unique_ptr<mpv_handle, Core> core_;
  std::unique_ptr<mpv_render_context, Renderer> renderer_;
  Shape shape_;
  bool hasFrame_ = false;
  std::atomic<bool> announced_{false};  ///< a picture was, since the last look
  bool loaded_ = false;                 ///< the file is open
  bool playing_ = false;                ///< what was asked of us last: to play, not to pause
  bool held_ = false;
  bool pauseSent_ = true;  ///< what the core was told last
  bool pauseInFlight_ = false;
  std::uint64_t pausesSent_ = 0;
  int seeksInFlight_ = 0;  ///< not yet taken by the core
  bool seeking_ = false;   ///< a seek was sent, and the film has not gone on since
  bool atEnd_ = false;
  double time_ = 0;             ///< the place that the core told last
  std::optional<double> goal_;  ///< the place asked for last, until the film stands or goes on there
  std::optional<double> duration_;
  Loudness loudness_;
};

}  // namespace zelvo::platform::qt
