/// What the bar below the preview says, in the window's language.
#pragma once

#include <QString>

#include "platform/qt/language.h"

namespace zelvo::platform::qt::texts {

inline QString playFilm() { return translated("Play"); }
inline QString pauseFilm() { return translated("Pause"); }
inline QString placeInFilm() { return translated("Place in the film"); }
inline QString mute() { return translated("Mute"); }
inline QString unmute() { return translated("Sound on"); }
inline QString volume() { return translated("Volume"); }
inline QString timeOf(const QString& time, const QString& length) {
  return QStringLiteral("%1 / %2").arg(time, length);
}
/// The same to a screen reader.
inline QString timeOfInWords(const QString& time, const QString& length) {
  return translated("%1 of %2").arg(time, length);
}
inline QString percentOf(int percent) { return translated("%1 %").arg(percent); }
inline QString muted() { return translated("Muted"); }

}  // namespace zelvo::platform::qt::texts
