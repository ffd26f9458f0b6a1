/// What a repair has kept of a film, for whoever tells the user. Sizes and offsets are in bytes.
/// Decision: scan, One verdict for every roof
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace zelvo::platform {

enum class FilmVerdict {
  nothing,  ///< no picture was kept
  partly,   ///< some of the film is lost
  good,     ///< pictures and sound were kept, and as good as all of both
};

struct FilmReport {
  FilmVerdict verdict = FilmVerdict::nothing;
  std::uint64_t pictures = 0;       ///< that hold anything
  std::uint64_t blankPictures = 0;  ///< of which nothing but zero bytes is left; not counted in `pictures`
  std::uint64_t soundChunks = 0;    ///< pieces of sound
  /// Nothing when the film does not say how long a picture is shown.
  std::optional<double> pictureSeconds = std::nullopt;
  std::optional<double> soundSeconds = std::nullopt;
  double share = 0;                   ///< 0 to 1: how much of the damaged file's film data was kept
  std::uint64_t failedReads = 0;      ///< reads of the damaged file that failed
  std::uint64_t unreadableBytes = 0;  ///< distinct bytes that could not be read
  std::uint64_t firstUnreadable = 0;  ///< offset of the first of them
  std::string videoCodec = {};        ///< common name ("MPEG-4"); empty when it is not known
  std::string audioCodec = {};

  friend bool operator==(const FilmReport&, const FilmReport&) = default;
};

/// Where the result page tells it, and the sheet that leads there. Thread: any, as for the elements of elements.h.
class FilmReportView {
 public:
  virtual ~FilmReportView() = default;
  virtual void show(const FilmReport& report) = 0;
  /// Nothing is known yet.
  virtual void clear() = 0;
};

}  // namespace zelvo::platform
