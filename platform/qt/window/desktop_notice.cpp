#include "platform/qt/window/desktop_notice.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QStringList>
#include <QVariantMap>

#include "platform/qt/texts.h"

namespace zelvo::platform::qt {

void showDesktopNotice(const QString& title, const QString& message) {
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return;
  QDBusMessage notice = QDBusMessage::createMethodCall(
      QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("/org/freedesktop/Notifications"),
      QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("Notify"));
  constexpr uint kReplacesNone = 0;
  constexpr int kUsualTime = -1;
  notice << texts::productName() << kReplacesNone << QStringLiteral("zelvo-avi-repair") << title << message
         << QStringList() << QVariantMap() << kUsualTime;
  bus.asyncCall(notice);
}

}  // namespace zelvo::platform::qt
