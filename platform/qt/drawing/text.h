/// Texts and paths between the system's own form and Qt's.
#pragma once

#include <QLabel>
#include <QString>
#include <string>
#include <string_view>

namespace zelvo::platform::qt {

/// UTF-8; what is not shows as U+FFFD.
[[nodiscard]] inline QString shown(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}
[[nodiscard]] inline std::string plain(const QString& text) { return text.toStdString(); }

/// The text with places at which a line may end: after each slash, and within names that are too long for a line.
[[nodiscard]] QString breakable(const QString& text);
/// What `breakable` was made of.
[[nodiscard]] QString withoutBreaks(const QString& text);
/// Shows `text` with such places; a screen reader is told it without them.
void showBreakable(QLabel& label, const QString& text);

/// A place in a film to the next whole second: "2:05", "1:02:05".
[[nodiscard]] QString clockTime(double seconds);

}  // namespace zelvo::platform::qt
