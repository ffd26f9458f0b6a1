/// How each kind of damage looks and is called. Colours that a colour-blind eye tells apart, and a pattern for each
/// besides.
/// Thread: main.
#pragma once

#include <QBrush>
#include <QColor>
#include <QPalette>
#include <QString>

#include "platform/damage_picture.h"

namespace zelvo::platform::qt {

[[nodiscard]] QColor colourOf(DamagePaint paint, const QPalette& palette);
/// Drawn over the colour; Qt::NoBrush for what needs none.
[[nodiscard]] Qt::BrushStyle patternOf(DamagePaint paint);
/// What is painted over what where both share a place: the larger one.
[[nodiscard]] int weightOf(DamagePaint paint);
/// Its name in the legend.
[[nodiscard]] QString nameOf(DamagePaint paint);

}  // namespace zelvo::platform::qt
