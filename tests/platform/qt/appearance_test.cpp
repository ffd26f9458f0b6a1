#include "platform/qt/drawing/appearance.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <string>

namespace zelvo::tests {
namespace {

using platform::qt::Appearance;

/// Relative luminance, 0 for black to 1 for white.
double luminance(const QColor& colour) {
  const auto linear = [](float part) {
    const auto value = static_cast<double>(part);
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

/// 1 for equal colours to 21 for black and white.
double contrast(const QColor& one, const QColor& other) {
  const double a = luminance(one);
  const double b = luminance(other);
  return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

TEST(Contrast, OfKnownPairsIsRight) {
  EXPECT_NEAR(contrast(Qt::black, Qt::white), 21, 0.001);
  EXPECT_NEAR(contrast(QColor(0x77, 0x77, 0x77), Qt::white), 4.48, 0.01);
  EXPECT_NEAR(contrast(Qt::red, Qt::white), 4.0, 0.01);
}

class AppearanceContrast : public testing::TestWithParam<Appearance> {
 protected:
  const QPalette palette = platform::qt::paletteOf(GetParam());
};

constexpr std::array kSurfaces = {QPalette::Window, QPalette::Base, QPalette::AlternateBase, QPalette::Button,
                                  QPalette::ToolTipBase};
constexpr std::array kTexts = {QPalette::WindowText,      QPalette::Text, QPalette::ButtonText,
                               QPalette::PlaceholderText, QPalette::Link, QPalette::LinkVisited,
                               QPalette::ToolTipText};

TEST_P(AppearanceContrast, EveryTextCanBeReadOnEverySurface) {
  for (const auto group : {QPalette::Active, QPalette::Inactive}) {
    for (const auto text : kTexts) {
      for (const auto surface : kSurfaces) {
        EXPECT_GE(contrast(palette.color(group, text), palette.color(group, surface)), 4.5)
            << "role " << text << " on role " << surface;
      }
    }
  }
}

TEST_P(AppearanceContrast, SelectedTextCanBeRead) {
  EXPECT_GE(contrast(palette.color(QPalette::HighlightedText), palette.color(QPalette::Highlight)), 4.5);
}

TEST_P(AppearanceContrast, FocusStandsOutFromEverySurface) {
  for (const auto surface : kSurfaces) {
    EXPECT_GE(contrast(platform::qt::focusColour(palette), palette.color(surface)), 3.0) << "role " << surface;
  }
}

TEST_P(AppearanceContrast, OneOfTheTwoFocusRingsStandsOutFromTheFilledButtons) {
  const QColor fill(0x10, 0x89, 0xd5);
  EXPECT_GE(
      std::max(contrast(platform::qt::focusColour(palette), fill), contrast(platform::qt::surface(palette), fill)),
      3.0);
}

TEST_P(AppearanceContrast, ProgressStandsOutFromItsEmptyPartOrThePage) {
  EXPECT_GE(contrast(platform::qt::accent(palette), palette.color(QPalette::Window)), 3.0);
}

TEST_P(AppearanceContrast, DisabledTextsAreQuieterThanTheOthers) {
  for (const auto text : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    EXPECT_LT(contrast(palette.color(QPalette::Disabled, text), palette.color(QPalette::Window)),
              contrast(palette.color(QPalette::Active, text), palette.color(QPalette::Window)));
  }
}

TEST_P(AppearanceContrast, ActiveAndInactiveWindowsLookTheSame) {
  for (int role = 0; role < QPalette::NColorRoles; ++role) {
    const auto one = static_cast<QPalette::ColorRole>(role);
    EXPECT_EQ(palette.color(QPalette::Active, one), palette.color(QPalette::Inactive, one)) << role;
  }
}

INSTANTIATE_TEST_SUITE_P(Schemes, AppearanceContrast, testing::Values(Appearance::light, Appearance::dark),
                         [](const auto& named) { return named.param == Appearance::light ? "Light" : "Dark"; });

TEST(Appearance, SchemesAreLightAndDark) {
  const auto window = [](Appearance appearance) {
    return luminance(platform::qt::paletteOf(appearance).color(QPalette::Window));
  };
  EXPECT_GT(window(Appearance::light), 0.8);
  EXPECT_LT(window(Appearance::dark), 0.05);
}

TEST(Appearance, ProductsBlueIsTheSameInBoth) {
  for (const Appearance appearance : {Appearance::light, Appearance::dark}) {
    EXPECT_EQ(platform::qt::accent(platform::qt::paletteOf(appearance)).rgb(), 0xff1089d5);
  }
}

}  // namespace
}  // namespace zelvo::tests
