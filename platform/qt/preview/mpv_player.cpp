// How the end of a film is known: the core says that something changed (it paused by itself, the end was reached, it
// goes on after a seek), and is then asked whether the film stands at its end or paused by itself. Only these answers
// count, and only when no seek is under way: a change may be told late, and one that is undone at once may not be told
// at all. That a film paused by itself counts only when it was not told to pause since that question. A seek to where
// the film ends is its end by itself, since the core tells of none while it is paused.
//
// How a picture is known: the core hands each one to the renderer and announces it. It waits 0.2 s for it to be drawn;
// then it keeps it as the current picture, and the renderer no longer says that there is one to draw. The film that
// stands still gets no other. So a main thread that comes late goes by the announcement, and of the first picture by
// the film having begun, which the core tells after the picture was handed over.
// Decision: preview, An announced picture counts
#include "platform/qt/preview/mpv_player.h"

#include <mpv/client.h>
#include <mpv/render.h>

#include <algorithm>
#include <array>
#include <bit>
#include <clocale>
#include <cmath>
#include <filesystem>
#include <string_view>
#include <utility>

#include "platform/shown_text.h"

namespace zelvo::platform::qt {

namespace {

struct Option {
  const char* name;
  const char* value;
};

/// Without these the player would not be the one meant here. // Decision: preview, The preview is drawn into memory
constexpr std::array kOptions = {
    Option{"vo", "libmpv"},                   // drawn by us, into memory
    Option{"audio-fallback-to-null", "yes"},  // a machine without sound plays silently, and to the end
    Option{"hwdec", "no"},
    Option{"osd-level", "0"},
    Option{"config", "no"},
    Option{"load-scripts", "no"},
    Option{"ytdl", "no"},
    Option{"input-default-bindings", "no"},
    Option{"terminal", "no"},
    Option{"sub-auto", "no"},
    Option{"demuxer", "lavf"},
    Option{"demuxer-lavf-format", "avi"},  // whatever the bytes look like, nothing but an AVI file is read
    Option{"keep-open", "always"},         // the last picture stays
    Option{"keepaspect", "no"},            // we ask for the size that has the right shape
    Option{"idle", "yes"},
    Option{"pause", "yes"},
    Option{"video-timing-offset", "0"},  // a picture is announced when it is due, so that nobody waits in drawing it
};

/// What else the library would load, read or write beside the film; a version that does not know one of them does not
/// do it either.
constexpr std::array kExtras = {
    // Only these sound systems, the last list that is known here: another one that is tried where there is no sound
    // keeps
    // one state for the whole process, and two players at a time then wait for each other for ever.
    Option{"ao", "alsa"},
    Option{"ao", "pulse,alsa"},
    Option{"ao", "pipewire,pulse,alsa"},
    Option{"osc", "no"},
    Option{"load-auto-profiles", "no"},
    Option{"load-osd-console", "no"},
    Option{"load-stats-overlay", "no"},
    Option{"audio-file-auto", "no"},
    Option{"cover-art-auto", "no"},
    Option{"autoload-files", "no"},
    Option{"access-references", "no"},
    Option{"ordered-chapters", "no"},
    Option{"resume-playback", "no"},
    Option{"save-position-on-quit", "no"},
    Option{"stop-screensaver", "no"},
    Option{"sid", "no"},
    Option{"audio-client-name", "Zelvo AVI Repair"},
    Option{"sws-fast", "yes"},
    Option{"sws-scaler", "bilinear"},
    Option{"zimg-fast", "yes"},
};

/// By these numbers the core's answers are told apart.
enum Reply : std::uint64_t {
  kNoReply,
  kPause,
  kSeek,
  kEnd,
  kPicture,
  kWidth,
  kHeight,
  kTime,
  kDuration,
  kLoudness,
  kStands,  ///< and each number above: asked after so many pauses less
};

/// More than any film lasts, and few enough for the core.
constexpr double kLongestFilm = 1e9;

/// The bytes in memory of a native 0xffRRGGBB.
constexpr const char* kPixelFormat = std::endian::native == std::endian::little ? "bgr0" : "0rgb";

void ringBell(void* function) { (*static_cast<const std::function<void()>*>(function))(); }

}  // namespace

void MpvPlayer::Core::operator()(mpv_handle* core) const { mpv_terminate_destroy(core); }
void MpvPlayer::Renderer::operator()(mpv_render_context* renderer) const { mpv_render_context_free(renderer); }

void MpvPlayer::useDecimalPoints() {
  if (std::string_view(std::setlocale(LC_NUMERIC, nullptr)) != "C") std::setlocale(LC_NUMERIC, "C");
}

std::unique_ptr<MpvPlayer> MpvPlayer::open(const std::string& path, std::function<void()> ring) {
  useDecimalPoints();
  mpv_handle* core = mpv_create();
  if (core == nullptr) return nullptr;
  std::unique_ptr<MpvPlayer> player(new MpvPlayer(core, std::move(ring)));
  if (!player->begin(path)) {
    player->silence();
    return nullptr;
  }
  return player;
}

MpvPlayer::MpvPlayer(mpv_handle* core, std::function<void()> ring) : ring_(std::move(ring)), core_(core) {}

MpvPlayer::~MpvPlayer() = default;

bool MpvPlayer::begin(const std::string& path) {
  for (const Option& option : kOptions) {
    if (mpv_set_option_string(core_.get(), option.name, option.value) < 0) return false;
  }
  for (const Option& option : kExtras) {
    static_cast<void>(mpv_set_option_string(core_.get(), option.name, option.value));
  }
  if (mpv_initialize(core_.get()) < 0) return false;
  static_cast<void>(mpv_request_log_messages(core_.get(), "no"));

  std::string type = MPV_RENDER_API_TYPE_SW;
  std::array parameters = {mpv_render_param{MPV_RENDER_PARAM_API_TYPE, type.data()},
                           mpv_render_param{MPV_RENDER_PARAM_INVALID, nullptr}};
  mpv_render_context* renderer = nullptr;
  if (mpv_render_context_create(&renderer, core_.get(), parameters.data()) < 0) return false;
  renderer_.reset(renderer);

  // The library does not change what it is handed back in the callbacks.
  void* const bell = const_cast<std::function<void()>*>(&ring_);
  mpv_set_wakeup_callback(core_.get(), ringBell, bell);
  mpv_render_context_set_update_callback(
      renderer_.get(), [](void* player) { static_cast<MpvPlayer*>(player)->announcePicture(); }, this);
  mpv_observe_property(core_.get(), kWidth, "dwidth", MPV_FORMAT_INT64);
  mpv_observe_property(core_.get(), kHeight, "dheight", MPV_FORMAT_INT64);
  mpv_observe_property(core_.get(), kTime, "time-pos", MPV_FORMAT_DOUBLE);
  mpv_observe_property(core_.get(), kDuration, "duration", MPV_FORMAT_DOUBLE);
  mpv_observe_property(core_.get(), kLoudness, "volume", MPV_FORMAT_DOUBLE);
  mpv_observe_property(core_.get(), kLoudness, "mute", MPV_FORMAT_FLAG);
  mpv_observe_property(core_.get(), kEnd, "eof-reached", MPV_FORMAT_FLAG);
  mpv_observe_property(core_.get(), kPause, "pause", MPV_FORMAT_FLAG);

  // From the root, since a path that only looks like an address would be taken for one.
  const std::string file = std::filesystem::absolute(path).string();
  std::array<const char*, 3> load = {"loadfile", file.c_str(), nullptr};
  return mpv_command_async(core_.get(), kNoReply, load.data()) >= 0;
}

void MpvPlayer::announcePicture() {
  announced_ = true;
  ring_();
}

void MpvPlayer::silence() {
  if (renderer_) mpv_render_context_set_update_callback(renderer_.get(), nullptr, nullptr);
  mpv_set_wakeup_callback(core_.get(), nullptr, nullptr);
}

void MpvPlayer::play() {
  if (atEnd_) gotoBeginning();
  playing_ = true;
  sendPause();
  askWhetherEnded();  // a film of one picture may stand at its end from the start
}

void MpvPlayer::pause() {
  playing_ = false;
  sendPause();
}

void MpvPlayer::setHeld(bool held) {
  held_ = held;
  sendPause();
  askWhetherEnded();
}

void MpvPlayer::gotoBeginning() { gotoTime(0); }

void MpvPlayer::gotoTime(double seconds) {
  goal_ = seconds > 0 ? std::min(seconds, kLongestFilm) : 0;
  atEnd_ = isAtEnd(*goal_);
  if (loaded_) sendSeek();
}

void MpvPlayer::sendSeek() {
  const std::string place = fixedPoint(*goal_, 3);
  std::array<const char*, 4> seek = {"seek", place.c_str(), "absolute+exact", nullptr};
  if (mpv_command_async(core_.get(), kSeek, seek.data()) < 0) return;
  ++seeksInFlight_;
  seeking_ = true;
}

double MpvPlayer::position() const { return atEnd_ && duration_ ? *duration_ : goal_.value_or(time_); }

void MpvPlayer::setLoudness(const Loudness& loudness) {
  double percent = std::clamp(loudness.percent, 0, 100);
  int muted = loudness.isMuted ? 1 : 0;
  static_cast<void>(mpv_set_property_async(core_.get(), kLoudness, "volume", MPV_FORMAT_DOUBLE, &percent));
  static_cast<void>(mpv_set_property_async(core_.get(), kLoudness, "mute", MPV_FORMAT_FLAG, &muted));
}

/// Requests may overtake each other, so the next one waits for the answer to the last; what was asked of us last holds.
/// Before the file is open nothing is sent: a film that is stopped again until then has not moved.
void MpvPlayer::sendPause() {
  const bool plays = playing_ && !held_;
  if (!loaded_ || pauseInFlight_ || pauseSent_ == !plays) return;
  pauseSent_ = !plays;
  ++pausesSent_;
  int flag = pauseSent_ ? 1 : 0;
  pauseInFlight_ = mpv_set_property_async(core_.get(), kPause, "pause", MPV_FORMAT_FLAG, &flag) >= 0;
}

void MpvPlayer::askWhetherEnded() {
  if (!playing_ || !loaded_ || seeking_) return;
  static_cast<void>(mpv_get_property_async(core_.get(), kEnd, "eof-reached", MPV_FORMAT_FLAG));
  // The core pauses by itself at the end and nowhere else.
  if (!isToldToPlay()) return;
  static_cast<void>(mpv_get_property_async(core_.get(), kStands + pausesSent_, "pause", MPV_FORMAT_FLAG));
}

MpvPlayer::News MpvPlayer::news() {
  News news;
  const bool announced = announced_.exchange(false);  // before the look at it: one that comes meanwhile is not lost
  for (;;) {
    const mpv_event* event = mpv_wait_event(core_.get(), 0);
    if (event->event_id == MPV_EVENT_NONE) break;
    take(*event, news);
  }
  const bool waits = (mpv_render_context_update(renderer_.get()) & MPV_RENDER_UPDATE_FRAME) != 0;
  hasFrame_ = hasFrame_ || waits;
  news.frame = news.frame || waits || (announced && hasFrame_);
  if (atEnd_ && playing_) {
    news.ended = true;
    pause();  // or a jump to the beginning would play on from there
  }
  return news;
}

void MpvPlayer::take(const mpv_event& event, News& news) {
  switch (event.event_id) {
    case MPV_EVENT_FILE_LOADED:
      loaded_ = true;
      if (goal_) sendSeek();
      sendPause();
      break;
    case MPV_EVENT_PLAYBACK_RESTART:
      if (seeksInFlight_ == 0) arrive();
      askWhetherEnded();
      static_cast<void>(mpv_get_property_async(core_.get(), kPicture, "vid", MPV_FORMAT_INT64));
      break;
    case MPV_EVENT_PROPERTY_CHANGE:
      takeProperty(*static_cast<const mpv_event_property*>(event.data), news);
      break;
    case MPV_EVENT_GET_PROPERTY_REPLY:
      takeReply(event, news);
      break;
    case MPV_EVENT_SET_PROPERTY_REPLY:
      if (event.reply_userdata != kPause) break;
      pauseInFlight_ = false;
      sendPause();
      break;
    case MPV_EVENT_COMMAND_REPLY:
      if (event.reply_userdata != kSeek) {
        if (event.error < 0) news.failure = mpv_error_string(event.error);
        break;
      }
      --seeksInFlight_;
      if (event.error < 0 && seeksInFlight_ == 0) arrive();
      break;
    case MPV_EVENT_END_FILE: {
      const auto& end = *static_cast<const mpv_event_end_file*>(event.data);
      news.failure = end.reason == MPV_END_FILE_REASON_ERROR ? mpv_error_string(end.error) : "the player let it go";
      break;
    }
    case MPV_EVENT_SHUTDOWN:
      news.failure = "the player ended";
      break;
    default:
      break;
  }
}

void MpvPlayer::arrive() {
  seeking_ = false;
  if (goal_) time_ = *goal_;
  goal_.reset();
}

void MpvPlayer::takeProperty(const mpv_event_property& property, News& news) {
  const std::string_view name = property.name;
  if (property.format == MPV_FORMAT_INT64) {
    const int length = static_cast<int>(*static_cast<const std::int64_t*>(property.data));
    (name == "dwidth" ? shape_.width : shape_.height) = length;
    news.shape = true;
  } else if (property.format == MPV_FORMAT_DOUBLE) {
    takeNumber(name, *static_cast<const double*>(property.data), news);
  } else if (property.format == MPV_FORMAT_FLAG) {
    const bool isSet = *static_cast<const int*>(property.data) != 0;
    if (name == "mute") {
      loudness_.isMuted = isSet;
    } else if (isSet) {
      askWhetherEnded();
    }
  }
}

void MpvPlayer::takeNumber(std::string_view name, double number, News& news) {
  if (!std::isfinite(number)) return;
  if (name == "volume") {
    loudness_.percent = static_cast<int>(std::lround(number));
    return;
  }
  news.time = true;
  if (name == "time-pos") {
    time_ = std::max(number, 0.0);
    return;
  }
  duration_ = number > 0 ? std::optional(number) : std::nullopt;
  if (goal_ && isAtEnd(*goal_)) atEnd_ = true;  // it was sent there before anybody knew
}

void MpvPlayer::takeReply(const mpv_event& event, News& news) {
  if (event.reply_userdata == kPicture) {
    news.pictureless = event.error < 0;  // no track is selected: there is none, or none that can be decoded
    if (!news.pictureless && !hasFrame_) hasFrame_ = news.frame = true;  // see the top
    return;
  }
  if (event.error < 0 || seeking_) return;
  if (event.reply_userdata >= kStands && (!isToldToPlay() || event.reply_userdata != kStands + pausesSent_)) return;
  const auto& property = *static_cast<const mpv_event_property*>(event.data);
  if (property.format == MPV_FORMAT_FLAG && *static_cast<const int*>(property.data) != 0) atEnd_ = true;
}

bool MpvPlayer::draw(std::uint8_t* pixels, int width, int height, std::size_t stride) {
  if (!hasFrame_) return false;
  std::array size = {width, height};
  std::string format = kPixelFormat;
  int waits = 0;
  std::array parameters = {mpv_render_param{MPV_RENDER_PARAM_SW_SIZE, size.data()},
                           mpv_render_param{MPV_RENDER_PARAM_SW_FORMAT, format.data()},
                           mpv_render_param{MPV_RENDER_PARAM_SW_STRIDE, &stride},
                           mpv_render_param{MPV_RENDER_PARAM_SW_POINTER, pixels},
                           mpv_render_param{MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, &waits},
                           mpv_render_param{MPV_RENDER_PARAM_INVALID, nullptr}};
  if (mpv_render_context_render(renderer_.get(), parameters.data()) < 0) return false;
  // The fourth byte of a pixel is left as it was or as it comes, and some displays take it for transparency.
  constexpr std::size_t kAlpha = std::endian::native == std::endian::little ? 3 : 0;
  for (int line = 0; line < height; ++line) {
    std::uint8_t* const first = pixels + static_cast<std::size_t>(line) * stride + kAlpha;
    for (std::size_t pixel = 0; pixel < static_cast<std::size_t>(width); ++pixel) first[pixel * 4] = 0xff;
  }
  return true;
}

void MpvPlayer::passFrame() {
  int skips = 1;
  int waits = 0;
  std::array parameters = {mpv_render_param{MPV_RENDER_PARAM_SKIP_RENDERING, &skips},
                           mpv_render_param{MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, &waits},
                           mpv_render_param{MPV_RENDER_PARAM_INVALID, nullptr}};
  static_cast<void>(mpv_render_context_render(renderer_.get(), parameters.data()));
}

}  // namespace zelvo::platform::qt
