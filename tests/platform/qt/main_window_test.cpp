#include "platform/qt/window/main_window.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>

#include <QPushButton>
#include <QToolTip>
#include <QUrl>
#include <string>
#include <vector>

#include "platform/qt/drawing/appearance.h"
#include "tests/platform/qt/element_bench.h"

namespace zelvo::tests {
namespace {

using platform::qt::QtButton;
using Names = std::vector<std::string>;

class MainWindow : public testing::Test {
 protected:
  MainWindow() {
    note(*window.choosePage().browsebutton, "browse");
    note(*window.choosePage().repairbutton, "repair");
    note(*window.resultPage().previewbutton, "preview");
    note(*window.resultPage().savebutton, "save");
    note(*window.choosePage().help, "help1");
    note(*window.repairPage().help, "help2");
    note(*window.resultPage().help, "help3");
    window.setFileReceiver([this](const std::string& file) { files.push_back(file); });
  }
  void note(QtButton& button, const std::string& name) {
    button.setAction([this, name](platform::Button&) { presses.push_back(name); });
  }
  void showPage(int page) {
    window.controllerOutlets().tabview.selectFirstTabViewItem();
    for (int step = 0; step < page; ++step) window.controllerOutlets().tabview.selectNextTabViewItem();
    settle();
  }
  Names afterKeys() {
    presses.clear();
    for (const Qt::Key key : {Qt::Key_O, Qt::Key_R, Qt::Key_P, Qt::Key_S}) pressKey(window, key, Qt::ControlModifier);
    pressKey(window, Qt::Key_F1);
    return presses;
  }
  /// Drags `urls` over the middle of the window and lets them fall. \return whether the window wants them.
  bool drops(const QList<QUrl>& urls) {
    QMimeData data;
    data.setUrls(urls);
    const QPoint place = window.rect().center();
    QDragEnterEvent enter(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
    enter.ignore();
    QCoreApplication::sendEvent(window.windowHandle(), &enter);
    QDropEvent drop(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
    drop.ignore();
    QCoreApplication::sendEvent(window.windowHandle(), &drop);
    EXPECT_EQ(enter.isAccepted(), drop.isAccepted());
    if (drop.isAccepted()) {
      EXPECT_EQ(drop.dropAction(), Qt::CopyAction) << "the file stays where it is";
    }
    return drop.isAccepted();
  }
  static QList<QUrl> local(const QStringList& paths) {
    QList<QUrl> urls;
    for (const QString& path : paths) urls.push_back(QUrl::fromLocalFile(path));
    return urls;
  }

  ElementBench bench;
  platform::qt::MainWindow& window = bench.window;
  Names presses;
  Names files;
};

// ---- Shortcuts ----

TEST_F(MainWindow, ShortcutsPressTheButtonsOfThePageThatIsShown) {
  EXPECT_EQ(afterKeys(), (Names{"browse", "repair", "help1"}));
  showPage(1);
  EXPECT_EQ(afterKeys(), (Names{"help2"}));
  showPage(2);
  EXPECT_EQ(afterKeys(), (Names{"preview", "save", "help3"}));
}

TEST_F(MainWindow, ShortcutsPressNoDisabledButton) {
  window.choosePage().browsebutton->setEnabled(false);
  window.choosePage().repairbutton->setEnabled(false);
  window.choosePage().help->setEnabled(false);
  EXPECT_TRUE(afterKeys().empty());
}

TEST_F(MainWindow, ShortcutsPressNoHiddenButton) {
  window.choosePage().browsebutton->setHidden(true);
  EXPECT_EQ(afterKeys(), (Names{"repair", "help1"}));
}

TEST_F(MainWindow, ShortcutsPressNothingWhileAPanelIsShown) {
  window.panels().begin(window.fixedPanels().filenotselectedwindow);
  EXPECT_TRUE(afterKeys().empty());
  window.panels().orderOut(window.fixedPanels().filenotselectedwindow);
}

TEST_F(MainWindow, EscDoesNothingWithoutAPanel) {
  pressKey(window, Qt::Key_Escape);
  EXPECT_TRUE(window.isVisible());
  EXPECT_TRUE(presses.empty());
}

// ---- Files from outside ----

TEST_F(MainWindow, OneDroppedFileIsHandedOver) {
  EXPECT_TRUE(drops(local({QStringLiteral("/films/a b.avi")})));
  EXPECT_EQ(files, (Names{"/films/a b.avi"}));
}

TEST_F(MainWindow, DroppedNameKeepsItsLettersAndSigns) {
  EXPECT_TRUE(drops(local({QStringLiteral("/films/Käse 100%25 #1?.avi")})));
  EXPECT_EQ(files, (Names{"/films/Käse 100%25 #1?.avi"}));
}

TEST_F(MainWindow, TwoDroppedFilesAreRefused) {
  EXPECT_FALSE(drops(local({QStringLiteral("/films/a.avi"), QStringLiteral("/films/b.avi")})));
  EXPECT_TRUE(files.empty());
}

TEST_F(MainWindow, SeveralDroppedFilesGoToTheirReceiver) {
  std::vector<Names> several;
  window.setFilesReceiver([&several](Names all) { several.push_back(std::move(all)); });
  EXPECT_TRUE(drops(local({QStringLiteral("/films/a.avi"), QStringLiteral("/films/Käse 100%25 #1?.avi")})));
  EXPECT_EQ(several, (std::vector<Names>{{"/films/a.avi", "/films/Käse 100%25 #1?.avi"}}));
  EXPECT_TRUE(files.empty());
  EXPECT_TRUE(drops(local({QStringLiteral("/films/a.avi")})));
  EXPECT_EQ(files, (Names{"/films/a.avi"})) << "one is one as before";
  EXPECT_EQ(several.size(), 1U);
}

TEST_F(MainWindow, SeveralFilesAreTakenOnTheFirstPageWithoutAPanelOnly) {
  int received = 0;
  window.setFilesReceiver([&received](const Names&) { ++received; });
  const QList<QUrl> two = local({QStringLiteral("/films/a.avi"), QStringLiteral("/films/b.avi")});
  for (const int page : {1, 2}) {
    showPage(page);
    EXPECT_FALSE(drops(two)) << page;
  }
  showPage(0);
  window.panels().begin(window.fixedPanels().filenotselectedwindow);
  EXPECT_FALSE(drops(two));
  window.panels().orderOut(window.fixedPanels().filenotselectedwindow);
  EXPECT_FALSE(drops({two.front(), QUrl(QStringLiteral("https://example.org/b.avi"))}));
  EXPECT_EQ(received, 0);
  EXPECT_TRUE(drops(two));
  EXPECT_EQ(received, 1);
}

TEST_F(MainWindow, DroppedWebAddressIsRefused) {
  EXPECT_FALSE(drops({QUrl(QStringLiteral("https://example.org/a.avi"))}));
  EXPECT_TRUE(files.empty());
}

TEST_F(MainWindow, DroppedTextIsRefused) {
  EXPECT_FALSE(drops({}));
  EXPECT_TRUE(files.empty());
}

TEST_F(MainWindow, FilesAreTakenOnTheFirstPageOnly) {
  for (const int page : {1, 2}) {
    showPage(page);
    EXPECT_FALSE(drops(local({QStringLiteral("/films/a.avi")}))) << page;
    window.offerFile("/films/a.avi");
  }
  EXPECT_TRUE(files.empty());
}

TEST_F(MainWindow, FilesAreNotTakenWhileAPanelIsShown) {
  window.panels().begin(window.fixedPanels().filenotselectedwindow);
  EXPECT_FALSE(drops(local({QStringLiteral("/films/a.avi")})));
  window.offerFile("/films/a.avi");
  EXPECT_TRUE(files.empty());
  window.panels().orderOut(window.fixedPanels().filenotselectedwindow);
}

TEST_F(MainWindow, RefusedDropSaysWhy) {
  const auto why = [this](const QList<QUrl>& urls) {
    QToolTip::hideText();
    EXPECT_FALSE(drops(urls));
    return QToolTip::text().toStdString();
  };
  const QList<QUrl> one = local({QStringLiteral("/films/a.avi")});
  EXPECT_EQ(why(local({QStringLiteral("/films/a.avi"), QStringLiteral("/films/b.avi")})),
            "One film at a time, please.");
  EXPECT_EQ(why({QUrl(QStringLiteral("https://example.org/a.avi"))}),
            "Only a file of this computer can be dropped here.");
  EXPECT_EQ(why({}), "Only a file of this computer can be dropped here.");
  window.panels().begin(window.fixedPanels().filenotselectedwindow);
  EXPECT_EQ(why(one), "Please answer the message first.");
  window.panels().orderOut(window.fixedPanels().filenotselectedwindow);
  showPage(1);
  EXPECT_EQ(why(one), "A film is being repaired. Another one can be dropped on the first page.");
  showPage(2);
  EXPECT_EQ(why(one), "Press Home first: a film is dropped on the first page.");
  showPage(0);
  QToolTip::hideText();
  EXPECT_TRUE(drops(one));
  EXPECT_EQ(QToolTip::text().toStdString(), "");
}

TEST_F(MainWindow, OfferedFileIsHandedOverAsIfItWereDropped) {
  window.offerFile("/films/\xff.avi");
  EXPECT_EQ(files, (Names{"/films/\xff.avi"}));
}

TEST_F(MainWindow, DropAreaInvitesOnlyWhileAFileIsOverTheWindow) {
  const auto edge = [this] {
    const QImage picture = window.choosePage().dropArea->grab().toImage();
    return picture.pixel(picture.width() / 2, 1) == platform::qt::accent(window.palette()).rgb();
  };
  QMimeData data;
  data.setUrls(local({QStringLiteral("/films/a.avi")}));
  EXPECT_FALSE(edge());
  QDragEnterEvent enter(window.rect().center(), Qt::CopyAction, &data, Qt::LeftButton, {});
  QCoreApplication::sendEvent(window.windowHandle(), &enter);
  EXPECT_TRUE(edge());
  QDragLeaveEvent leave;
  QCoreApplication::sendEvent(window.windowHandle(), &leave);
  EXPECT_FALSE(edge());
}

TEST_F(MainWindow, ClickAnywhereInTheDropAreaOpensTheChooser) {
  clickAt(*window.choosePage().dropArea, {20, 20});
  EXPECT_EQ(presses, (Names{"browse"}));
  clickOn(*window.choosePage().browsebutton);
  EXPECT_EQ(presses, (Names{"browse", "browse"}));
}

TEST_F(MainWindow, OtherMouseButtonsDoNotOpenTheChooser) {
  QTest::mouseClick(window.windowHandle(), Qt::RightButton, {},
                    window.choosePage().dropArea->mapTo(&window, QPoint(20, 20)));
  EXPECT_TRUE(presses.empty());
}

// ---- Closing ----

TEST_F(MainWindow, ClosesWhenTheJudgeAgrees) {
  bool agrees = false;
  int asked = 0;
  window.setCloseJudge([&] {
    ++asked;
    return agrees;
  });
  EXPECT_FALSE(window.close());
  EXPECT_TRUE(window.isVisible());
  agrees = true;
  EXPECT_TRUE(window.close());
  EXPECT_FALSE(window.isVisible());
  EXPECT_EQ(asked, 2);
}

TEST_F(MainWindow, CtrlQAsksTheJudge) {
  int asked = 0;
  window.setCloseJudge([&] {
    ++asked;
    return false;
  });
  pressKey(window, Qt::Key_Q, Qt::ControlModifier);
  EXPECT_EQ(asked, 1);
  EXPECT_TRUE(window.isVisible());
}

TEST_F(MainWindow, StaysOpenWithoutAskingWhileAPanelIsShown) {
  int asked = 0;
  window.setCloseJudge([&] {
    ++asked;
    return true;
  });
  window.panels().begin(window.fixedPanels().filenotselectedwindow);
  EXPECT_FALSE(window.close());
  EXPECT_TRUE(window.isVisible());
  EXPECT_EQ(asked, 0);
  window.panels().orderOut(window.fixedPanels().filenotselectedwindow);
  EXPECT_TRUE(window.close());
  EXPECT_EQ(asked, 1);
}

// ---- Pages ----

TEST_F(MainWindow, FocusGoesToTheNextStepOfEachPage) {
  EXPECT_EQ(window.focusWidget(), window.choosePage().browsebutton);
  showPage(1);
  EXPECT_EQ(window.focusWidget(), window.repairPage().stopbutton);
  showPage(2);
  EXPECT_EQ(window.focusWidget(), window.resultPage().previewbutton);
  showPage(0);
  EXPECT_EQ(window.focusWidget(), window.choosePage().browsebutton);
}

TEST_F(MainWindow, LastChosenPathIsShownOnlyWhileItIsNotTheChosenOne) {
  const auto& outlets = window.controllerOutlets();
  const QLabel& last = window.choosePage().textfield.label();
  outlets.textfield.setStringValue("/films/a.avi");
  outlets.pathfield.setStringValue("/films/a.avi");
  EXPECT_TRUE(last.isHidden());
  outlets.pathfield.setStringValue("");
  EXPECT_FALSE(last.isHidden());
}

TEST_F(MainWindow, PiecesOfTheHintTakeNoRoomWhileTheyAreEmpty) {
  showPage(2);
  const auto& outlets = window.controllerOutlets();
  EXPECT_TRUE(window.resultPage().downloadmplayertext1.label().isHidden());
  outlets.downloadmplayertext1.setStringValue("If you hear nothing, ");
  EXPECT_FALSE(window.resultPage().downloadmplayertext1.label().isHidden());
  outlets.downloadmplayertext1.setStringValue("");
  EXPECT_TRUE(window.resultPage().downloadmplayertext1.label().isHidden());
}

TEST_F(MainWindow, OutletsOfTheJobAndTheControllerAreTheSameElementsWhereTheyShareANameAndTwoOtherwise) {
  const auto& outlets = window.controllerOutlets();
  const auto& job = window.jobOutlets();
  EXPECT_EQ(&outlets.pathfield, &job.pathfield);
  EXPECT_EQ(&outlets.stopbutton, &job.stopbutton);
  EXPECT_EQ(&outlets.previewbutton, &job.previewbutton);
  EXPECT_EQ(&outlets.stoprepairwindow, &job.stoprepairwindow);
  EXPECT_EQ(&outlets.tabview, &job.tabview2);
  EXPECT_NE(&outlets.textfield, &job.textfield);
}

TEST_F(MainWindow, IsShownAndHiddenByAWorker) {
  bench.onWorker([this] { window.orderOut(); });
  EXPECT_FALSE(window.isVisible());
  bench.onWorker([this] { window.makeKeyAndOrderFront(); });
  EXPECT_TRUE(window.isVisible());
}

TEST_F(MainWindow, GroundOfThePagesCoversTheContentAtEverySize) {
  const auto& ground = dynamic_cast<const platform::qt::QtViewHost&>(window.hostedViews().content);
  EXPECT_EQ(ground.widget().geometry(), window.rect());
  window.resize(1100, 700);
  settle();
  EXPECT_EQ(ground.widget().geometry(), QRect(0, 0, 1100, 700));
}

TEST_F(MainWindow, ButtonsOfAnotherKindInAPanelAreLeftInPeace) {
  auto& panel = *new platform::qt::PanelFrame(window.panels(), {QString(), QStringLiteral("Title"), QString()});
  auto* const foreign = new QPushButton(QStringLiteral("Of the toolkit"));
  panel.addContent(foreign);
  window.panels().begin(panel);
  settle();
  EXPECT_TRUE(foreign->isVisible());
  window.panels().orderOut(panel);
}

TEST_F(MainWindow, NothingIsOutOfReachAtItsSmallestSize) {
  window.resize(window.minimumSize());
  for (const int page : {0, 1, 2}) {
    showPage(page);
    for (QtButton* button : allBelow<QtButton>(window)) {
      if (!button->isVisible()) continue;
      button->setFocus(Qt::TabFocusReason);  // a page scrolls to what has the keyboard
      settle();
      const QRect place(button->mapTo(&window, QPoint(0, 0)), button->size());
      EXPECT_TRUE(window.rect().contains(place)) << page << " " << button->title();
      EXPECT_GE(button->width(), button->sizeHint().width()) << page << " " << button->title();
    }
  }
}

}  // namespace
}  // namespace zelvo::tests
