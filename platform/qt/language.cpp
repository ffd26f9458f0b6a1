#include "platform/qt/language.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QMutexLocker>
#include <algorithm>
#include <limits>

/// The translations are linked into the program; those of a static library must be named to be.
static void initialiseTranslations() { Q_INIT_RESOURCE(translations); }

namespace zelvo::platform::qt {

namespace {

/// All texts share one, since each is named by its own words.
constexpr const char* kContext = "zelvo";

/// In this one, a translation is asked for what it was made of.
constexpr const char* kBack = "zelvo, back";

QString lookedUp(const std::string& english) { return QCoreApplication::translate(kContext, english.c_str()); }

}  // namespace

QString translated(const char* english) { return QCoreApplication::translate(kContext, english); }

QString translated(std::string_view english) { return lookedUp(std::string(english)); }

QString counted(const char* english, std::uint64_t number) {
  constexpr auto kMost = static_cast<std::uint64_t>(std::numeric_limits<int>::max());
  const int form = static_cast<int>(std::min(number, kMost));
  QString text = QCoreApplication::translate(kContext, english, nullptr, form);
  if (!text.contains(kNumberPlace)) return QString::fromStdString(englishTranslator().counted(english, number));
  return text.replace(kNumberPlace, numbers().toString(static_cast<qulonglong>(number)));
}

QString inEnglish(const QString& text) { return QCoreApplication::translate(kBack, text.toUtf8().constData()); }

QLocale numbers() { return QLocale(translated("en_US")); }

std::string QtTranslator::translated(std::string_view english) const {
  return lookedUp(std::string(english)).toStdString();
}

std::string QtTranslator::counted(std::string_view english, std::uint64_t number) const {
  return qt::counted(std::string(english).c_str(), number).toStdString();
}

std::string QtTranslator::number(std::uint64_t number) const {
  return numbers().toString(static_cast<qulonglong>(number)).toStdString();
}

std::string QtTranslator::fixedPoint(double number, int digits) const {
  QLocale locale = numbers();
  locale.setNumberOptions(QLocale::OmitGroupSeparator);
  return locale.toString(number, 'f', digits).toStdString();
}

std::optional<QString> knownLanguage(const QStringList& languages) {
  for (const QString& one : languages) {
    switch (QLocale(one).language()) {
      case QLocale::C:
      case QLocale::English:
        return std::nullopt;
      case QLocale::German:
        return QStringLiteral("de");
      case QLocale::French:
        return QStringLiteral("fr");
      default:
        break;
    }
  }
  return std::nullopt;
}

QString LanguageTexts::translate(const char* context, const char* english, const char* remark, int number) const {
  const QMutexLocker lock(&asking_);
  if (std::string_view(context) == kBack) return english_.value(QString::fromUtf8(english));
  QString text = QTranslator::translate(context, english, remark, number);
  if (number >= 0) text.replace(QStringLiteral("%n"), kNumberPlace);
  if (!text.isEmpty()) english_.insert(text, QString::fromUtf8(english));
  return text;
}

Language::Language(const QString& name) {
  initialiseTranslations();
  const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
  if (toolkit_.load(QStringLiteral("qtbase_") + name, folder)) QCoreApplication::installTranslator(&toolkit_);
  if (texts_.load(QStringLiteral(":/translations/zelvo_") + name)) QCoreApplication::installTranslator(&texts_);
}

Language::~Language() {
  QCoreApplication::removeTranslator(&texts_);
  QCoreApplication::removeTranslator(&toolkit_);
}

}  // namespace zelvo::platform::qt
