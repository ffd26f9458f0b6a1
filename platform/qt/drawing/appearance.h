/// The colours and the font of the whole window, as a palette: every widget takes them from there, and none by itself.
/// Which role stands for what is said at each function. Sizes are logical pixels.
/// Decision: controls, Given colours hold in both schemes
/// Thread: main.
#pragma once

#include <QApplication>
#include <QColor>
#include <QFont>
#include <QPalette>

namespace zelvo::platform::qt {

enum class Appearance { light, dark };

/// What the desktop asks for: its colour scheme if it tells one, else by its window colour.
[[nodiscard]] Appearance desktopAppearance();

/// From now on the program looks so.
void apply(Appearance appearance);

[[nodiscard]] QPalette paletteOf(Appearance appearance);

// ---- Roles ----
/// A quieter text: hints, labels of values.
[[nodiscard]] inline QColor secondaryText(const QPalette& palette) { return palette.color(QPalette::PlaceholderText); }
/// Lines between areas, the frame of a field, the empty part of a progress bar.
[[nodiscard]] inline QColor line(const QPalette& palette) { return palette.color(QPalette::Mid); }
/// The strip at the top of the window and other areas that stand back.
[[nodiscard]] inline QColor strip(const QPalette& palette) { return palette.color(QPalette::AlternateBase); }
/// Panels and fields.
[[nodiscard]] inline QColor surface(const QPalette& palette) { return palette.color(QPalette::Base); }
/// The product's blue.
[[nodiscard]] inline QColor accent(const QPalette&) { return QColor(0x10, 0x89, 0xd5); }
/// The frame of a button under the pointer.
[[nodiscard]] inline QColor hoverFrame(const QPalette&) { return QColor(0x3b, 0xbd, 0xee); }
/// The edge of what warns.
[[nodiscard]] inline QColor warning(const QPalette&) { return QColor(0xf2, 0xb3, 0x3d); }
/// A deeper one of it, on which white text can be read.
[[nodiscard]] inline QColor textAccent(const QPalette& palette) { return palette.color(QPalette::Highlight); }
/// Where the keyboard's focus is.
[[nodiscard]] inline QColor focusColour(const QPalette& palette) { return palette.color(QPalette::BrightText); }

/// The program's font.
[[nodiscard]] QFont textFont(int pixels, QFont::Weight weight = QFont::Normal);

inline constexpr int kTextPixels = 14;
inline constexpr int kSmallPixels = 13;
inline constexpr int kTitlePixels = 18;
inline constexpr int kHeadlinePixels = 26;

}  // namespace zelvo::platform::qt
