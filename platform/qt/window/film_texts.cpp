#include "platform/qt/window/film_texts.h"

#include <QLocale>
#include <algorithm>
#include <cmath>

namespace zelvo::platform::qt::texts {

namespace {

constexpr double kMinute = 60;
constexpr double kHour = 3600;

/// As the window's language writes numbers, whatever the desktop's is.
QLocale digits() { return {QLocale::English, QLocale::UnitedStates}; }

QString unchanged() { return QStringLiteral(" Nothing was changed in your file."); }

/// "about 2 minutes left".
QString left(double seconds) {
  constexpr double kFew = 10;
  constexpr double kSteps = 10;
  constexpr double kLongestInSeconds = 90;
  if (seconds < kFew) return QStringLiteral("a few seconds left");
  if (seconds < kLongestInSeconds) {
    return QStringLiteral("about %1 seconds left").arg(static_cast<int>(std::ceil(seconds / kSteps) * kSteps));
  }
  return QStringLiteral("about %1 minutes left").arg(static_cast<int>(std::ceil(seconds / kMinute)));
}

}  // namespace

QString number(std::uint64_t value) { return digits().toString(static_cast<qulonglong>(value)); }

QString megabytes(std::uint64_t bytes) {
  constexpr double kMegabyte = 1e6;
  return digits().toString(static_cast<double>(bytes) / kMegabyte, 'f', 1) + QStringLiteral(" MB");
}

QString length(double seconds) {
  if (seconds < kMinute - 0.5) return QStringLiteral("%1 s").arg(std::max(1, static_cast<int>(std::lround(seconds))));
  const auto whole = static_cast<qulonglong>(std::llround(seconds));
  if (seconds < kHour - 0.5) return QStringLiteral("%1 min %2 s").arg(whole / 60).arg(whole % 60);
  return QStringLiteral("%1 h %2 min").arg(whole / 3600).arg(whole % 3600 / 60);
}

QString chosenFacts(std::uint64_t bytes, std::optional<double> seconds) {
  const QString size = megabytes(bytes);
  return seconds ? size + QStringLiteral(" \u00b7 ") + length(*seconds) : size;
}

QString progress(const RunProgress& progress, std::optional<double> secondsLeft) {
  if (progress.stage == RunStage::none || progress.all == 0) return {};
  const QString what = progress.stage == RunStage::searching ? QStringLiteral("Reading the damaged film: ")
                                                             : QStringLiteral("Writing the repaired film: ");
  QString all = megabytes(progress.all);
  QString text =
      what + megabytes(std::min(progress.done, progress.all)).chopped(3) + QStringLiteral(" of ") + std::move(all);
  if (secondsLeft) text += QStringLiteral(", ") + left(*secondsLeft);
  return text;
}

QString completedPicture(FilmVerdict verdict) {
  if (verdict == FilmVerdict::good) return QStringLiteral("sheet-done");
  return verdict == FilmVerdict::partly ? QStringLiteral("sheet-warning") : QStringLiteral("sheet-failed");
}

QString completedTitle(FilmVerdict verdict) {
  if (verdict == FilmVerdict::good) return QStringLiteral("Your film was repaired");
  return verdict == FilmVerdict::partly ? QStringLiteral("Your film was repaired in part")
                                        : QStringLiteral("No picture could be kept");
}

QString completedMessage(FilmVerdict verdict) {
  if (verdict == FilmVerdict::good) {
    return QStringLiteral("On the next page you can look at it and save it. Nothing was changed in your damaged file.");
  }
  if (verdict == FilmVerdict::partly) {
    return QStringLiteral(
        "Some of it is lost. On the next page you can see what was kept, look at it and save it. Nothing was changed "
        "in your damaged file.");
  }
  return QStringLiteral(
      "The descriptions at the beginning of the damaged file are there, but the pictures are not. The next page tells "
      "what was kept. Nothing was changed in your damaged file.");
}

QString resultTitle(FilmVerdict verdict) {
  if (verdict == FilmVerdict::good) return QStringLiteral("Your repaired film");
  return verdict == FilmVerdict::partly ? QStringLiteral("Repaired in part") : QStringLiteral("No picture was kept");
}

QString resultMessage(const FilmReport& report) {
  if (report.verdict == FilmVerdict::good) {
    return QStringLiteral("Look at it here, then save it to a folder of your choice.");
  }
  if (report.verdict == FilmVerdict::nothing) {
    return report.soundChunks == 0
               ? QStringLiteral("The damaged file holds neither pictures nor sound. There is nothing worth saving.")
               : QStringLiteral("The damaged file holds no pictures. If you save it, you get the sound alone.");
  }
  QString text = QStringLiteral(
      "Some of it is lost. Look at what was kept here, then save it to a folder of your "
      "choice.");
  if (report.blankPictures > 0) {
    text += QStringLiteral(" Of %1 pictures, only zeros are left.").arg(number(report.blankPictures));
  }
  return text;
}

QString keptPictures(const FilmReport& report) {
  if (report.pictures == 0) return QStringLiteral("none");
  const QString count = number(report.pictures);
  return report.pictureSeconds ? count + QStringLiteral(" \u00b7 ") + length(*report.pictureSeconds) : count;
}

QString keptSound(const FilmReport& report) {
  if (report.soundChunks == 0) return QStringLiteral("none");
  return report.soundSeconds ? length(*report.soundSeconds) : QStringLiteral("yes");
}

QString keptShare(const FilmReport& report) {
  constexpr double kAll = 0.9995;
  constexpr double kWhole = 100;
  if (report.share >= kAll) return QStringLiteral("all film data");
  if (report.share <= 0) return QStringLiteral("no film data");
  const int percent = static_cast<int>(std::floor(report.share * kWhole));
  return percent == 0 ? QStringLiteral("under 1 % of it") : QStringLiteral("%1 % of film data").arg(percent);
}

QString unreadable(const FilmReport& report) {
  if (report.failedReads == 0) return {};
  const QString bytes = report.unreadableBytes == 1 ? QStringLiteral("1 byte")
                                                    : number(report.unreadableBytes) + QStringLiteral(" bytes");
  return QStringLiteral(
             "%1 of the damaged file could not be read, the first at byte %2. What lies there is missing "
             "from the repaired film.")
      .arg(bytes, number(report.firstUnreadable));
}

QString rejection(Rejection reason) {
  switch (reason) {
    case Rejection::headerLost:
      return QStringLiteral("The descriptions of pictures and sound at its beginning are lost or damaged.") +
             unchanged();
    case Rejection::unreadable:
      return QStringLiteral(
                 "Its beginning could not be read from the disk, and a film cannot be repaired without it.") +
             unchanged();
    case Rejection::noSound:
      return QStringLiteral(
                 "It has no sound track, or the description of its sound is lost. Only films with sound can "
                 "be repaired.") +
             unchanged();
    case Rejection::uncompressed:
      return QStringLiteral("Its pictures are not compressed. Only films with compressed pictures can be repaired.") +
             unchanged();
    case Rejection::tooSmall:
      return QStringLiteral("It is too small: only films larger than 0.5 MB (524,288 bytes) can be repaired.") +
             unchanged();
    case Rejection::stopped:
      break;
  }
  return QStringLiteral("The repair was stopped before the beginning of the film had been read.") + unchanged();
}

}  // namespace zelvo::platform::qt::texts
