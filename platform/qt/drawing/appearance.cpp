#include "platform/qt/drawing/appearance.h"

#include <QDBusConnection>
#include <QDBusInterface>
#include <QDBusReply>
#include <QDBusVariant>
#include <QStyleFactory>

namespace zelvo::platform::qt {

namespace {

/// One colour scheme. Each text colour has a contrast of at least 4.5 to 1 on each surface it is used on.
struct Scheme {
  QRgb window;
  QRgb strip;
  QRgb surface;
  QRgb line;
  QRgb text;
  QRgb secondary;
  QRgb link;
  QRgb textAccent;
  QRgb focus;
  QRgb disabled;
};

constexpr QRgb kWhite = 0xffffffff;

constexpr Scheme kLight{
    .window = kWhite,
    .strip = 0xfff2f7fb,
    .surface = kWhite,
    .line = 0xffc9d8e3,
    .text = 0xff16242f,
    .secondary = 0xff4c6070,
    .link = 0xff0a6aa8,
    .textAccent = 0xff0b6fb0,
    .focus = 0xff035f8f,
    .disabled = 0xff6b7b88,
};

constexpr Scheme kDark{
    .window = 0xff12181e,
    .strip = 0xff19212a,
    .surface = 0xff212b35,
    .line = 0xff3a4856,
    .text = 0xffe9eff4,
    .secondary = 0xffa9b8c4,
    .link = 0xff6cc9f4,
    .textAccent = 0xff0b6fb0,
    .focus = 0xff3bbdee,
    .disabled = 0xff8796a3,
};

/// What the desktop's portal says: 1 for dark, 2 for light, anything else for no wish.
uint portalColourScheme() {
  constexpr int kLongestWaitMilliseconds = 300;
  QDBusInterface settings(QStringLiteral("org.freedesktop.portal.Desktop"),
                          QStringLiteral("/org/freedesktop/portal/desktop"),
                          QStringLiteral("org.freedesktop.portal.Settings"), QDBusConnection::sessionBus());
  if (!settings.isValid()) return 0;
  settings.setTimeout(kLongestWaitMilliseconds);
  const QDBusReply<QDBusVariant> reply = settings.call(
      QStringLiteral("Read"), QStringLiteral("org.freedesktop.appearance"), QStringLiteral("color-scheme"));
  if (!reply.isValid()) return 0;
  QVariant value = reply.value().variant();
  if (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
  return value.toUInt();
}

}  // namespace

Appearance desktopAppearance() {
  constexpr uint kDarkWish = 1;
  constexpr uint kLightWish = 2;
  if (QDBusConnection::sessionBus().isConnected()) {
    const uint wish = portalColourScheme();
    if (wish == kDarkWish) return Appearance::dark;
    if (wish == kLightWish) return Appearance::light;
  }
  constexpr int kMiddle = 128;
  return QApplication::palette().color(QPalette::Window).lightness() < kMiddle ? Appearance::dark : Appearance::light;
}

QPalette paletteOf(Appearance appearance) {
  const Scheme& scheme = appearance == Appearance::dark ? kDark : kLight;
  QPalette palette;
  for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
    const QColor text(group == QPalette::Disabled ? scheme.disabled : scheme.text);
    palette.setColor(group, QPalette::Window, QColor(scheme.window));
    palette.setColor(group, QPalette::WindowText, text);
    palette.setColor(group, QPalette::Base, QColor(scheme.surface));
    palette.setColor(group, QPalette::AlternateBase, QColor(scheme.strip));
    palette.setColor(group, QPalette::Text, text);
    palette.setColor(group, QPalette::Button, QColor(scheme.strip));
    palette.setColor(group, QPalette::ButtonText, text);
    palette.setColor(group, QPalette::PlaceholderText, QColor(scheme.secondary));
    palette.setColor(group, QPalette::BrightText, QColor(scheme.focus));
    palette.setColor(group, QPalette::Link, QColor(scheme.link));
    palette.setColor(group, QPalette::LinkVisited, QColor(scheme.link));
    palette.setColor(group, QPalette::Highlight, QColor(scheme.textAccent));
    palette.setColor(group, QPalette::HighlightedText, QColor(kWhite));
    palette.setColor(group, QPalette::ToolTipBase, QColor(scheme.surface));
    palette.setColor(group, QPalette::ToolTipText, QColor(scheme.text));
    palette.setColor(group, QPalette::Mid, QColor(scheme.line));
    palette.setColor(group, QPalette::Midlight, QColor(scheme.strip));
    palette.setColor(group, QPalette::Light, QColor(scheme.strip));
    palette.setColor(group, QPalette::Dark, QColor(scheme.line));
    palette.setColor(group, QPalette::Shadow, QColor(0, 0, 0));
  }
  return palette;
}

QFont textFont(int pixels, QFont::Weight weight) {
  QFont font = QApplication::font();
  font.setPixelSize(pixels);
  font.setWeight(weight);
  return font;
}

void apply(Appearance appearance) {
  QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
  QApplication::setPalette(paletteOf(appearance));
  QApplication::setFont(textFont(kTextPixels));
}

}  // namespace zelvo::platform::qt
