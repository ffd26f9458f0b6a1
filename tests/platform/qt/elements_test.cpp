#include <QPainter>
#include <QTextDocumentFragment>
#include <cmath>
#include <limits>
#include <string>
#include <thread>
#include <vector>

#include "platform/qt/drawing/appearance.h"
#include "platform/qt/drawing/elements.h"
#include "tests/platform/qt/element_bench.h"
#include "tests/platform/qt/pixels.h"

namespace zelvo::tests {
namespace {

using platform::qt::ElidedLabel;
using platform::qt::FlatProgressBar;
using platform::qt::QtTextField;

/// What a tooltip shows of its text, which may be taken for HTML.
QString shownTooltip(const QWidget& widget) {
  const QString tip = widget.toolTip();
  return Qt::mightBeRichText(tip) ? QTextDocumentFragment::fromHtml(tip).toPlainText() : tip;
}

QImage drawn(QWidget& widget, double scale = 1) {
  QImage picture = blankPicture(widget.width(), widget.height(), scale);
  widget.render(&picture, QPoint(), QRegion(), QWidget::DrawChildren);
  return picture;
}

/// What a label of one line shows when it shows `line`.
QImage lineOf(const QLabel& label, const QString& line) {
  QImage picture = blankPicture(label.width(), label.height(), 1);
  QPainter painter(&picture);
  painter.setFont(label.font());
  painter.setPen(label.palette().color(label.foregroundRole()));
  painter.drawText(label.rect(), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, line);
  return picture;
}

class QtElements : public testing::Test {
 protected:
  QtElements() { label.resize(160, 24); }
  void serve() {
    while (queue.serve()) {
    }
  }

  platform::linux_::LinuxMainQueue queue;
  ElidedLabel label;
  QtTextField field{queue, label};
};

// ---- Text ----

TEST_F(QtElements, ShortTextIsShownWhole) {
  field.setStringValue("/films/a.avi");
  EXPECT_TRUE(samePixels(drawn(label), lineOf(label, QStringLiteral("/films/a.avi"))));
}

TEST_F(QtElements, LongTextGivesWayInItsMiddleAndTheTooltipTellsAll) {
  const QString path = QStringLiteral("/media/camera/DCIM/2019-06-22 wedding of Anna and Paul/MVI_0042.AVI");
  field.setStringValue(path.toStdString());
  const QString elided = label.fontMetrics().elidedText(path, Qt::ElideMiddle, label.width());
  ASSERT_TRUE(elided.startsWith(QStringLiteral("/med"))) << elided.toStdString();
  ASSERT_TRUE(elided.endsWith(QStringLiteral(".AVI"))) << elided.toStdString();
  EXPECT_TRUE(samePixels(drawn(label), lineOf(label, elided)));
  EXPECT_EQ(shownTooltip(label), path);
  EXPECT_EQ(label.text(), path) << "a screen reader reads the whole";
}

TEST_F(QtElements, TooltipShowsEveryTextAsItIs) {
  for (const char* text : {"/films/Tom & Jerry.avi", "/films/<b>bold</b>.avi", "<b>x</b>", "/f/a \"quoted\" 'name'.avi",
                           "/films/&amp;.avi", "/films/1 < 2 & 3 > 2.avi", "plain"}) {
    field.setStringValue(text);
    EXPECT_EQ(shownTooltip(label).toStdString(), text);
  }
}

TEST_F(QtElements, LineEndsInANameAreShownAndTheLineStaysOne) {
  field.setStringValue("a\nb\rc");
  EXPECT_TRUE(samePixels(drawn(label), lineOf(label, QStringLiteral("a\u240ab\u240dc"))));
}

TEST_F(QtElements, InvisibleCharactersInANameAreShown) {
  field.setStringValue("a\tb\x1b\x7f\xe2\x80\xa8z");
  EXPECT_TRUE(samePixels(drawn(label), lineOf(label, QStringLiteral("a\u2409b\u241b\u2421\u2424z"))));
}

TEST_F(QtElements, InvalidTextShowsReplacementCharacters) {
  field.setStringValue("a\xff\xfe.avi");
  EXPECT_EQ(label.text(), QStringLiteral("a\ufffd\ufffd.avi"));
}

TEST_F(QtElements, MarkupIsShownAsText) {
  label.resize(300, 24);
  field.setStringValue("<b>bold</b>");
  EXPECT_TRUE(samePixels(drawn(label), lineOf(label, QStringLiteral("<b>bold</b>"))));
}

TEST_F(QtElements, PlaceholderStandsWhereThereIsNoText) {
  label.setPlaceholder(QStringLiteral("No file"));
  label.setForegroundRole(QPalette::PlaceholderText);
  const QImage placeholder = lineOf(label, QStringLiteral("No file"));
  label.setForegroundRole(QPalette::WindowText);
  EXPECT_TRUE(samePixels(drawn(label), placeholder)) << "before any text";
  field.setStringValue("a");
  EXPECT_FALSE(samePixels(drawn(label), placeholder));
  field.setStringValue("");
  EXPECT_TRUE(samePixels(drawn(label), placeholder)) << "after an empty text";
}

TEST_F(QtElements, NumbersAreShownWhole) {
  field.setIntegerValue(std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(label.text(), QStringLiteral("-9223372036854775808"));
}

TEST_F(QtElements, ShapedTextIsShownAndThePlainOneIsKept) {
  field.setShape([](const QString& text) { return QStringLiteral("[") + text + QStringLiteral("]"); });
  QString told;
  field.setObserver([&](const QString& text) { told = text; });
  field.setStringValue("x");
  EXPECT_EQ(label.text(), QStringLiteral("[x]"));
  EXPECT_EQ(field.text(), QStringLiteral("x"));
  EXPECT_EQ(told, QStringLiteral("x"));
}

TEST_F(QtElements, TextsOfAWorkerAreShownInOrderOnTheMainThread) {
  std::vector<QString> seen;
  field.setObserver([&](const QString& text) {
    EXPECT_TRUE(queue.isMainThread());
    seen.push_back(text);
  });
  std::thread([&] {
    for (int i = 0; i < 5; ++i) field.setStringValue(std::to_string(i));
    field.setIntegerValue(5);
  }).join();
  EXPECT_TRUE(seen.empty());
  serve();
  EXPECT_EQ(seen, (std::vector<QString>{QStringLiteral("0"), QStringLiteral("1"), QStringLiteral("2"),
                                        QStringLiteral("3"), QStringLiteral("4"), QStringLiteral("5")}));
  EXPECT_EQ(label.text(), QStringLiteral("5"));
}

TEST_F(QtElements, TextsOfSeveralWorkersKeepTheOrderOfEach) {
  constexpr int kWritten = 50;
  std::vector<std::vector<int>> seen(3);
  field.setObserver([&](const QString& text) {
    const int number = text.toInt();
    seen[static_cast<std::size_t>(number % 3)].push_back(number);
  });
  std::vector<std::thread> workers;
  for (int worker = 0; worker < 3; ++worker) {
    workers.emplace_back([this, worker] {
      for (int i = 0; i < kWritten; ++i) field.setIntegerValue(3 * i + worker);
    });
  }
  for (std::thread& worker : workers) worker.join();
  serve();
  for (const auto& one : seen) {
    EXPECT_EQ(one.size(), static_cast<std::size_t>(kWritten));
    EXPECT_TRUE(std::is_sorted(one.begin(), one.end()));
  }
}

// ---- Progress ----

class QtProgress : public testing::Test {
 protected:
  QtProgress() { bar.resize(256, 22); }
  /// Per cent of the bar's range.
  [[nodiscard]] double part() const { return 100.0 * (bar.value() - bar.minimum()) / (bar.maximum() - bar.minimum()); }

  platform::linux_::LinuxMainQueue queue;
  FlatProgressBar bar;
  platform::qt::QtProgressBar progress{queue, bar};
};

TEST_F(QtProgress, StartsAtNothing) { EXPECT_EQ(part(), 0); }

TEST_F(QtProgress, ShowsPerCent) {
  for (const double percent : {0.0, 0.01, 38.4, 99.99, 100.0}) {
    progress.setDoubleValue(percent);
    EXPECT_NEAR(part(), percent, 0.005);
  }
}

TEST_F(QtProgress, StaysWithinItsRange) {
  progress.setDoubleValue(100.5);
  EXPECT_EQ(part(), 100);
  progress.setDoubleValue(-3);
  EXPECT_EQ(part(), 0);
  progress.setDoubleValue(1e300);
  EXPECT_EQ(part(), 100);
}

TEST_F(QtProgress, ShowsNothingOfWhatIsNoNumber) {
  for (const double none : {std::nan(""), HUGE_VAL, -HUGE_VAL}) {
    progress.setDoubleValue(50);
    progress.setDoubleValue(none);
    EXPECT_EQ(part(), 0);
  }
}

TEST_F(QtProgress, IsFilledFromTheLeft) {
  progress.setDoubleValue(25);
  const QImage picture = drawn(bar);
  const QRgb full = platform::qt::accent(bar.palette()).rgba();
  const QRgb empty = platform::qt::line(bar.palette()).rgba();
  EXPECT_EQ(picture.pixel(0, 11), full);
  EXPECT_EQ(picture.pixel(49, 11), full);
  EXPECT_EQ(picture.pixel(50, 11), empty);
  EXPECT_EQ(picture.pixel(199, 11), empty);
  EXPECT_EQ(picture.pixel(200, 11), kUnpainted) << "the number stands to the right";
}

TEST_F(QtProgress, ValueOfAWorkerIsShownByTheMainThread) {
  std::thread([&] {
    progress.setDoubleValue(10);
    progress.setDoubleValue(20);
  }).join();
  EXPECT_EQ(part(), 0);
  while (queue.serve()) {
  }
  EXPECT_EQ(part(), 20);
}

// ---- Pages ----

class QtPages : public testing::Test {
 protected:
  QtPages() {
    for (int page = 0; page < 3; ++page) pages.addWidget(new QWidget);
  }

  platform::linux_::LinuxMainQueue queue;
  QStackedWidget pages;
  platform::qt::QtTabView tabs{queue, pages};
};

TEST_F(QtPages, AreSelectedOneAfterTheOther) {
  tabs.selectNextTabViewItem();
  EXPECT_EQ(pages.currentIndex(), 1);
  tabs.selectNextTabViewItem();
  EXPECT_EQ(pages.currentIndex(), 2);
  tabs.selectPreviousTabViewItem();
  EXPECT_EQ(pages.currentIndex(), 1);
  tabs.selectNextTabViewItem();
  tabs.selectFirstTabViewItem();
  EXPECT_EQ(pages.currentIndex(), 0);
}

TEST_F(QtPages, EndAtTheFirstAndTheLast) {
  tabs.selectPreviousTabViewItem();
  EXPECT_EQ(pages.currentIndex(), 0);
  for (int times = 0; times < 5; ++times) tabs.selectNextTabViewItem();
  EXPECT_EQ(pages.currentIndex(), 2);
}

TEST_F(QtPages, MovesOfAWorkerAreCountedFromTheirTurn) {
  std::thread([&] {
    tabs.selectNextTabViewItem();
    tabs.selectNextTabViewItem();
    tabs.selectPreviousTabViewItem();
  }).join();
  EXPECT_EQ(pages.currentIndex(), 0);
  while (queue.serve()) {
  }
  EXPECT_EQ(pages.currentIndex(), 1);
}

}  // namespace
}  // namespace zelvo::tests
