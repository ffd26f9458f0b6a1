#include "platform/linux/player_film.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "platform/film_player.h"

namespace zelvo::platform::linux_ {

namespace {

constexpr int kBuffer = 1 << 16;
/// What cannot be read is stepped over in pages.
constexpr std::uint64_t kPage = 4096;

ssize_t readAt(int descriptor, std::uint8_t* into, std::size_t size, std::uint64_t offset) {
  for (;;) {
    const ssize_t count = ::pread(descriptor, into, size, static_cast<off_t>(offset));
    if (count >= 0 || errno != EINTR) return count;
  }
}

}  // namespace

PlayerFilm::PlayerFilm(int descriptor, std::function<void(std::uint64_t)> onUnreadable)
    : descriptor_(descriptor), onUnreadable_(std::move(onUnreadable)) {
  struct stat found {};
  if (::fstat(descriptor, &found) == 0) size_ = static_cast<std::uint64_t>(found.st_size);
}

PlayerFilm::~PlayerFilm() {
  ::avformat_close_input(&context_);
  if (bytes_ != nullptr) ::av_freep(reinterpret_cast<void*>(&bytes_->buffer));
  ::avio_context_free(&bytes_);
}

int PlayerFilm::readBytes(void* self, std::uint8_t* into, int size) {
  PlayerFilm& film = *static_cast<PlayerFilm*>(self);
  auto wanted = static_cast<std::size_t>(std::max(size, 0));
  ssize_t count = readAt(film.descriptor_, into, wanted, film.position_);
  if (count < 0) {
    // The pages before the bad one are read by themselves.
    wanted = std::min<std::size_t>(wanted, kPage - film.position_ % kPage);
    count = readAt(film.descriptor_, into, wanted, film.position_);
    if (count < 0) {
      film.onUnreadable_(film.position_);
      wanted =
          static_cast<std::size_t>(std::min<std::uint64_t>(wanted, film.size_ - std::min(film.size_, film.position_)));
      std::memset(into, 0, wanted);
      count = static_cast<ssize_t>(wanted);
    }
  }
  if (count == 0) return AVERROR_EOF;
  film.position_ += static_cast<std::uint64_t>(count);
  return static_cast<int>(count);
}

std::int64_t PlayerFilm::moveTo(void* self, std::int64_t offset, int from) {
  PlayerFilm& film = *static_cast<PlayerFilm*>(self);
  const auto size = static_cast<std::int64_t>(film.size_);
  std::int64_t base = 0;
  switch (from & ~AVSEEK_FORCE) {
    case AVSEEK_SIZE:
      return size;
    case SEEK_SET:
      break;
    case SEEK_CUR:
      base = static_cast<std::int64_t>(film.position_);
      break;
    case SEEK_END:
      base = size;
      break;
    default:
      return AVERROR(EINVAL);
  }
  if (offset > INT64_MAX - base || offset < -base) return AVERROR(EINVAL);
  film.position_ = static_cast<std::uint64_t>(base + offset);
  return base + offset;
}

bool PlayerFilm::open(bool looksAhead) {
  auto* const buffer = static_cast<std::uint8_t*>(::av_malloc(kBuffer));
  if (buffer == nullptr) return false;
  bytes_ = ::avio_alloc_context(buffer, kBuffer, 0, this, readBytes, nullptr, moveTo);
  if (bytes_ == nullptr) {
    ::av_free(buffer);
    return false;
  }
  context_ = ::avformat_alloc_context();
  if (context_ == nullptr) return false;
  context_->pb = bytes_;
  // Packets as they lie in the file, with the times and keys that the film itself gives them.
  context_->flags |= AVFMT_FLAG_NOPARSE | AVFMT_FLAG_NOFILLIN;
  context_->max_streams = static_cast<int>(FilmPlayer::kMaxStreams);
  // No other reader is ever tried, whatever the file says that it is.
  const AVInputFormat* const avi = ::av_find_input_format("avi");
  if (avi == nullptr || ::avformat_open_input(&context_, nullptr, avi, nullptr) < 0) return false;
  if (looksAhead && ::avformat_find_stream_info(context_, nullptr) < 0) return false;
  return context_->nb_streams > 0;
}

int PlayerFilm::read(AVPacket& packet) { return ::av_read_frame(context_, &packet); }

bool PlayerFilm::seek(int stream, std::int64_t time) {
  return ::av_seek_frame(context_, stream, time, AVSEEK_FLAG_BACKWARD) >= 0;
}

}  // namespace zelvo::platform::linux_
