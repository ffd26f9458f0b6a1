#include "platform/qt/damage/damage_paints.h"

#include <array>

#include "platform/qt/language.h"

namespace zelvo::platform::qt {

namespace {

struct Look {
  QRgb light;
  QRgb dark;
  Qt::BrushStyle pattern;
  int weight;
};

/// In the order of DamagePaint.
constexpr std::array<Look, kDamagePaints> kLooks = {{
    {0xff8fc7ae, 0xff2f6b55, Qt::NoBrush, 0},
    {0xff5b6675, 0xff93a0b3, Qt::NoBrush, 1},
    {0xff9aa6b6, 0xff66738a, Qt::Dense5Pattern, 2},
    {0xff0072b2, 0xff4aa8e0, Qt::HorPattern, 3},
    {0xffe69f00, 0xfff0b93c, Qt::Dense4Pattern, 6},
    {0xffb52a1c, 0xfff2665a, Qt::BDiagPattern, 7},
    {0xff56b4e9, 0xff8fd0f5, Qt::VerPattern, 4},
    {0xff9b5c94, 0xffd796cf, Qt::DiagCrossPattern, 5},
}};

const Look& lookOf(DamagePaint paint) { return kLooks[static_cast<std::size_t>(paint)]; }

}  // namespace

QColor colourOf(DamagePaint paint, const QPalette& palette) {
  constexpr int kMiddle = 128;
  const bool isDark = palette.color(QPalette::Window).lightness() < kMiddle;
  return QColor::fromRgb(isDark ? lookOf(paint).dark : lookOf(paint).light);
}

Qt::BrushStyle patternOf(DamagePaint paint) { return lookOf(paint).pattern; }

int weightOf(DamagePaint paint) { return lookOf(paint).weight; }

QString nameOf(DamagePaint paint) { return translated(kDamagePaintNames[static_cast<std::size_t>(paint)]); }

}  // namespace zelvo::platform::qt
