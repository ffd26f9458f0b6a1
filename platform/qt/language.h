/// The language that the window speaks. Texts are named by themselves in English; without a language installed, they
/// are shown as they are.
/// Thread: any, but for what installs a language.
#pragma once

#include <QHash>
#include <QLocale>
#include <QMutex>
#include <QString>
#include <QStringList>
#include <QTranslator>
#include <optional>

#include "platform/translator.h"

namespace zelvo::platform::qt {

/// Where the number goes in a translation of a text with "%n", as the application's translator answers it: the toolkit
/// would write the number in its own way.
inline constexpr QChar kNumberPlace(0xfffc);

/// The text in the window's language.
[[nodiscard]] QString translated(const char* english);
[[nodiscard]] QString translated(std::string_view english);
/// The same for a text with "%n", as Translator::counted.
[[nodiscard]] QString counted(const char* english, std::uint64_t number);
/// What was translated to `text` before; `text` itself when nothing was.
[[nodiscard]] QString inEnglish(const QString& text);
/// How the window's language writes numbers.
[[nodiscard]] QLocale numbers();

/// Speaks the window's language to those who do not know the toolkit.
class QtTranslator final : public Translator {
 public:
  [[nodiscard]] std::string translated(std::string_view english) const override;
  [[nodiscard]] std::string counted(std::string_view english, std::uint64_t number) const override;
  [[nodiscard]] std::string number(std::uint64_t number) const override;
  [[nodiscard]] std::string fixedPoint(double number, int digits) const override;
};

/// The first of the languages ("de-AT", "fr") that the window knows; nothing when that is English, or none.
[[nodiscard]] std::optional<QString> knownLanguage(const QStringList& languages);

/// The texts of one language. It remembers those that it was asked for.
class LanguageTexts final : public QTranslator {
 public:
  [[nodiscard]] QString translate(const char* context, const char* english, const char* remark,
                                  int number) const override;

 private:
  mutable QMutex asking_;
  mutable QHash<QString, QString> english_;  ///< by the translation
};

/// A language of the window for as long as it lives. Made after the application object, before any text is shown;
/// thread: main.
class Language {
 public:
  /// `name` is "de" or "fr".
  explicit Language(const QString& name);
  ~Language();
  Language(const Language&) = delete;
  Language& operator=(const Language&) = delete;

 private:
  LanguageTexts texts_;
  QTranslator toolkit_;  ///< what the toolkit says by itself, where its texts are installed
};

}  // namespace zelvo::platform::qt
