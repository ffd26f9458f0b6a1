/// What the preview and its bar say.
#pragma once

#include <QString>

namespace zelvo::platform::qt::texts {

inline QString playFilm() { return QStringLiteral("Play"); }
inline QString pauseFilm() { return QStringLiteral("Pause"); }
inline QString placeInFilm() { return QStringLiteral("Place in the film"); }
inline QString mute() { return QStringLiteral("Mute"); }
inline QString unmute() { return QStringLiteral("Sound on"); }
inline QString volume() { return QStringLiteral("Volume"); }
inline QString timeOf(const QString& time, const QString& length) {
  return QStringLiteral("%1 / %2").arg(time, length);
}
/// The same to a screen reader.
inline QString timeOfInWords(const QString& time, const QString& length) {
  return QStringLiteral("%1 of %2").arg(time, length);
}
inline QString percentOf(int percent) { return QStringLiteral("%1 %").arg(percent); }
inline QString muted() { return QStringLiteral("off"); }

}  // namespace zelvo::platform::qt::texts
