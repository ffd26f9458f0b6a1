// Everything that the window says goes through its language: in one that marks every text, nothing is left unmarked but
// what is given, and names.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QCoreApplication>
#include <QLabel>
#include <QTranslator>
#include <algorithm>
#include <memory>
#include <set>

#include "platform/qt/language.h"
#include "tests/platform/qt/window_bench.h"

namespace zelvo::tests {
namespace {

namespace qt = platform::qt;

constexpr QChar kMark(0x27e6);

class MarkedTexts final : public QTranslator {
 public:
  [[nodiscard]] QString translate(const char* context, const char* english, const char*, int number) const override {
    if (std::string_view(context) != "zelvo" || std::string_view(english) == "en_US") return {};
    QString text = QString::fromUtf8(english);
    if (number >= 0) text.replace(QStringLiteral("%n"), qt::kNumberPlace);
    return kMark + text;
  }
  [[nodiscard]] bool isEmpty() const override { return false; }
};

class TranslatedWindow : public testing::Test {
 protected:
  TranslatedWindow() {
    QCoreApplication::installTranslator(&texts_);
    bench_ = std::make_unique<WindowBench>();
  }
  ~TranslatedWindow() override {
    bench_.reset();
    QCoreApplication::removeTranslator(&texts_);
  }

  /// What `root` and the widgets below it say, shown or not, to eyes and to a screen reader.
  [[nodiscard]] static std::set<std::string> unmarked(const QWidget& root) {
    std::set<std::string> found;
    QList<const QWidget*> all = {&root};
    for (const QWidget* one : root.findChildren<QWidget*>()) all += one;
    for (const QWidget* widget : all) {
      QStringList said = {widget->toolTip(), widget->accessibleName(), widget->accessibleDescription()};
      if (const auto* const label = qobject_cast<const QLabel*>(widget)) said += label->text();
      if (const auto* const button = qobject_cast<const QAbstractButton*>(widget)) said += button->text();
      for (const QString& text : said) {
        const bool hasWords = std::any_of(text.begin(), text.end(), [](QChar one) { return one.isLetter(); });
        if (hasWords && !text.contains(kMark)) found.insert(text.toStdString());
      }
    }
    return found;
  }

  MarkedTexts texts_;
  std::unique_ptr<WindowBench> bench_;
};

TEST_F(TranslatedWindow, EveryPageAndPanelSpeaksTheWindowsLanguage) {
  EXPECT_EQ(unmarked(*bench_->window), (std::set<std::string>{"Zelvo AVI Repair", "click here"}));
}

TEST_F(TranslatedWindow, AChooserDoes) {
  bench_->window->choosePage().browsebutton->click();
  bench_->settle();
  ASSERT_FALSE(bench_->window->panels().isEmpty());
  std::set<std::string> said = unmarked(*bench_->window->panels().top());
  for (auto one = said.begin(); one != said.end();) one = one->find('/') != std::string::npos ? said.erase(one) : ++one;
  EXPECT_EQ(said, std::set<std::string>{});
  bench_->key(Qt::Key_Escape);
}

TEST_F(TranslatedWindow, ARepairIsTold) {
  bench_->repair(damagedFilm(bench_->temp));
  std::set<std::string> said = unmarked(bench_->window->resultPage());
  for (const char* name : {"Zelvo AVI Repair", "MPEG-4", "MP3", "FMP4"}) said.erase(name);
  // The sentence about players, piece by piece, is given.
  EXPECT_EQ(said, (std::set<std::string>{"If you are unable to hear the audio or see the video clearly,", "please",
                                         "click here", "for more", "information."}));
}

}  // namespace
}  // namespace zelvo::tests
