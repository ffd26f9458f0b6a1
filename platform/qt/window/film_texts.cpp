#include "platform/qt/window/film_texts.h"

#include <algorithm>
#include <cmath>

#include "platform/qt/language.h"

namespace zelvo::platform::qt::texts {

namespace {

constexpr double kMinute = 60;
constexpr double kHour = 3600;

/// What is said of a film, and that the damaged file is as it was.
QString andUnchanged(const QString& text) { return translated("%1 Nothing was changed in your file.").arg(text); }

/// "0.6".
QString inMegabytes(std::uint64_t bytes) {
  constexpr double kMegabyte = 1e6;
  return numbers().toString(static_cast<double>(bytes) / kMegabyte, 'f', 1);
}

/// "about 2 minutes left".
QString left(double seconds) {
  constexpr double kFew = 10;
  constexpr double kSteps = 10;
  constexpr double kLongestInSeconds = 90;
  if (seconds < kFew) return translated("a few seconds left");
  if (seconds < kLongestInSeconds) {
    return translated("about %1 seconds left").arg(static_cast<int>(std::ceil(seconds / kSteps) * kSteps));
  }
  return translated("about %1 minutes left").arg(static_cast<int>(std::ceil(seconds / kMinute)));
}

}  // namespace

QString number(std::uint64_t value) { return numbers().toString(static_cast<qulonglong>(value)); }

QString megabytes(std::uint64_t bytes) { return translated("%1 MB").arg(inMegabytes(bytes)); }

QString length(double seconds) {
  if (seconds < kMinute - 0.5) return translated("%1 s").arg(std::max(1, static_cast<int>(std::lround(seconds))));
  const auto whole = static_cast<qulonglong>(std::llround(seconds));
  if (seconds < kHour - 0.5)
    return translated("%1 min %2 s").arg(QString::number(whole / 60), QString::number(whole % 60));
  return translated("%1 h %2 min").arg(QString::number(whole / 3600), QString::number(whole % 3600 / 60));
}

QString chosenFacts(std::uint64_t bytes, std::optional<double> seconds) {
  const QString size = megabytes(bytes);
  return seconds ? size + QStringLiteral(" \u00b7 ") + length(*seconds) : size;
}

QString progress(const RunProgress& progress, std::optional<double> secondsLeft) {
  if (progress.stage == RunStage::none || progress.all == 0) return {};
  const QString what = progress.stage == RunStage::searching ? translated("Reading the damaged film: %1 of %2")
                                                             : translated("Writing the repaired film: %1 of %2");
  const QString text = what.arg(inMegabytes(std::min(progress.done, progress.all)), megabytes(progress.all));
  return secondsLeft ? translated("%1, %2").arg(text, left(*secondsLeft)) : text;
}

QString completedPicture(FilmVerdict verdict) {
  if (verdict == FilmVerdict::good) return QStringLiteral("sheet-done");
  return verdict == FilmVerdict::partly ? QStringLiteral("sheet-warning") : QStringLiteral("sheet-failed");
}

QString completedTitle(FilmVerdict verdict) {
  if (verdict == FilmVerdict::good) return translated("Your film was repaired");
  return verdict == FilmVerdict::partly ? translated("Your film was repaired in part")
                                        : translated("No picture could be kept");
}

QString completedMessage(FilmVerdict verdict) {
  if (verdict == FilmVerdict::good) {
    return translated("On the next page you can look at it and save it. Nothing was changed in your damaged file.");
  }
  if (verdict == FilmVerdict::partly) {
    return translated(
        "Some of it is lost. On the next page you can see what was kept, look at it and save it. Nothing was changed "
        "in your damaged file.");
  }
  return translated(
      "The descriptions at the beginning of the damaged file are there, but the pictures are not. The next page tells "
      "what was kept. Nothing was changed in your damaged file.");
}

QString resultTitle(FilmVerdict verdict) {
  if (verdict == FilmVerdict::good) return translated("Your repaired film");
  return verdict == FilmVerdict::partly ? translated("Repaired in part") : translated("No picture was kept");
}

QString resultMessage(const FilmReport& report) {
  if (report.verdict == FilmVerdict::good) {
    return translated("Look at it here, then save it to a folder of your choice.");
  }
  if (report.verdict == FilmVerdict::nothing) {
    return report.soundChunks == 0
               ? translated("The damaged file holds neither pictures nor sound. There is nothing worth saving.")
               : translated("The damaged file holds no pictures. If you save it, you get the sound alone.");
  }
  const QString text = translated(
      "Some of it is lost. Look at what was kept here, then save it to a folder of your "
      "choice.");
  if (report.blankPictures == 0) return text;
  return translated("%1 %2").arg(text, counted("Of %n picture(s), only zeros are left.", report.blankPictures));
}

QString keptPictures(const FilmReport& report) {
  if (report.pictures == 0) return translated("none");
  const QString count = number(report.pictures);
  return report.pictureSeconds ? count + QStringLiteral(" \u00b7 ") + length(*report.pictureSeconds) : count;
}

QString keptSound(const FilmReport& report) {
  if (report.soundChunks == 0) return translated("none");
  return report.soundSeconds ? length(*report.soundSeconds) : translated("yes");
}

QString keptShare(const FilmReport& report) {
  constexpr double kAll = 0.9995;
  constexpr double kWhole = 100;
  if (report.share >= kAll) return translated("all film data");
  if (report.share <= 0) return translated("no film data");
  const int percent = static_cast<int>(std::floor(report.share * kWhole));
  return percent == 0 ? translated("under 1 % of it") : translated("%1 % of film data").arg(percent);
}

QString unreadable(const FilmReport& report) {
  if (report.failedReads == 0) return {};
  return counted(
             "%n byte(s) of the damaged file could not be read, the first at byte %1. What lies there is missing from "
             "the repaired film.",
             report.unreadableBytes)
      .arg(number(report.firstUnreadable));
}

QString rejection(Rejection reason) {
  switch (reason) {
    case Rejection::headerLost:
      return andUnchanged(translated("The descriptions of pictures and sound at its beginning are lost or damaged."));
    case Rejection::unreadable:
      return andUnchanged(
          translated("Its beginning could not be read from the disk, and a film cannot be repaired without it."));
    case Rejection::noSound:
      return andUnchanged(
          translated("It has no sound track, or the description of its sound is lost. Only films with sound can be "
                     "repaired."));
    case Rejection::uncompressed:
      return andUnchanged(
          translated("Its pictures are not compressed. Only films with compressed pictures can be repaired."));
    case Rejection::tooSmall:
      return andUnchanged(
          translated("It is too small: only films larger than 0.5 MB (524,288 bytes) can be repaired."));
    case Rejection::stopped:
      break;
  }
  return andUnchanged(translated("The repair was stopped before the beginning of the film had been read."));
}

}  // namespace zelvo::platform::qt::texts
