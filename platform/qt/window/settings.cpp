#include "platform/qt/window/settings.h"

#include <QFile>

#include "platform/qt/drawing/text.h"

namespace zelvo::platform::qt {

QtSettings::QtSettings(const std::string& file)
    : settings_(QFile::decodeName(QByteArray::fromStdString(file)), QSettings::IniFormat) {}

std::optional<std::string> QtSettings::value(std::string_view key) const {
  const QVariant found = settings_.value(shown(key));
  return found.isValid() ? std::optional(found.toByteArray().toStdString()) : std::nullopt;
}

void QtSettings::setValue(std::string_view key, std::string_view value) {
  // Bytes, since a path need not be text.
  settings_.setValue(shown(key), QByteArray(value.data(), static_cast<qsizetype>(value.size())));
}

}  // namespace zelvo::platform::qt
