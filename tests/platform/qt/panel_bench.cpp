#include "tests/platform/qt/panel_bench.h"

#include <unistd.h>

#include <QApplication>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <filesystem>
#include <utility>

#include "platform/qt/drawing/text.h"
#include "tests/platform/qt/bounded_wait.h"

namespace zelvo::tests {

using platform::qt::FileChooser;
using platform::qt::plain;
using platform::qt::QtButton;
using platform::qt::shown;

namespace {

class NoMovieView final : public platform::MovieView {
 public:
  void setMovie(std::shared_ptr<platform::Movie>) override {}
};

constexpr uid_t kNobody = 65534;

}  // namespace

OwnHome::OwnHome() : homeBefore_(qgetenv("HOME")), configBefore_(qgetenv("XDG_CONFIG_HOME")) {
  qputenv("HOME", QByteArray::fromStdString(folder_.path()));
  qputenv("XDG_CONFIG_HOME", QByteArray::fromStdString(folder_.path(".config")));
}

OwnHome::~OwnHome() {
  qputenv("HOME", homeBefore_);
  if (configBefore_.isNull()) {
    qunsetenv("XDG_CONFIG_HOME");
  } else {
    qputenv("XDG_CONFIG_HOME", configBefore_);
  }
}

std::string OwnHome::make(const std::string& name) const {
  std::filesystem::create_directories(folder_.path(name));
  return folder_.path(name);
}

AsOrdinaryUser::AsOrdinaryUser() : wasRoot_(::geteuid() == 0) {
  if (wasRoot_ && ::seteuid(kNobody) != 0) wasRoot_ = false;
}

AsOrdinaryUser::~AsOrdinaryUser() {
  if (wasRoot_ && ::seteuid(0) != 0) std::abort();
}

PanelBench::PanelBench()
    : pictures(ZELVO_PICTURES),
      movieView(std::make_unique<NoMovieView>()),
      window(queue, pictures, new platform::qt::MoviePane, *movieView),
      application(queue, window, platform::linux_::loopWakers()),
      alerts(window.panels(), application),
      waits(window.panels(), application),
      panels(window.panels(), alerts, files) {
  window.panels().setControls(&controls);
  controls.dress(window.hostedViews());
  window.show();
  window.activateWindow();
  if (!QTest::qWaitForWindowActive(&window)) std::abort();
}

PanelBench::~PanelBench() { window.panels().setControls(nullptr); }

void PanelBench::serveUntil(const std::function<bool()>& done, const ::zelvo::tests::CodePlace& where) {
  constexpr int kTurnMilliseconds = 20;
  waitUntil(
      done,
      [] { QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, kTurnMilliseconds); },
      [this] {
        if (top() == nullptr) return std::string("no panel");
        std::string all = "a panel \"" + top()->title().toStdString() + "\"";
        for (const std::string& text : shownTexts()) all += ", \"" + text + "\"";
        return all;
      },
      where);
}

void PanelBench::serve() {
  for (int turn = 0; turn < 3; ++turn) QCoreApplication::processEvents();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void PanelBench::later(std::function<void()> work) { QTimer::singleShot(0, &application, std::move(work)); }

void PanelBench::press(int key, Qt::KeyboardModifiers modifiers) {
  QTest::keyClick(window.windowHandle(), static_cast<Qt::Key>(key), modifiers);
}

void PanelBench::type(const std::string& text) {
  for (const QChar one : shown(text)) QTest::sendKeyEvent(QTest::Click, focus(), Qt::Key_unknown, one, Qt::NoModifier);
}

void PanelBench::click(QWidget& widget) {
  QTest::mouseClick(window.windowHandle(), Qt::LeftButton, Qt::NoModifier,
                    widget.mapTo(&window, widget.rect().center()));
}

void PanelBench::doubleClick(QWidget& widget, const QPoint& place) {
  QTest::mouseClick(window.windowHandle(), Qt::LeftButton, Qt::NoModifier, widget.mapTo(&window, place));
  QTest::mouseDClick(window.windowHandle(), Qt::LeftButton, Qt::NoModifier, widget.mapTo(&window, place));
}

std::vector<std::string> PanelBench::buttonTitles() {
  QList<QtButton*> buttons = top()->findChildren<QtButton*>(QString(), Qt::FindDirectChildrenOnly);
  std::sort(buttons.begin(), buttons.end(), [](const QtButton* a, const QtButton* b) { return a->x() < b->x(); });
  std::vector<std::string> titles;
  for (const QtButton* one : buttons) titles.push_back(plain(one->text()));
  return titles;
}

QtButton& PanelBench::button(const std::string& title) {
  for (QtButton* one : top()->findChildren<QtButton*>()) {
    if (plain(one->text()) == title) return *one;
  }
  std::abort();
}

std::vector<std::string> PanelBench::shownTexts() {
  std::vector<std::string> all;
  for (const QLabel* one : top()->findChildren<QLabel*>()) {
    if (one->isVisible() && !one->text().isEmpty()) all.push_back(plain(one->text()));
  }
  return all;
}

bool PanelBench::says(const std::string& part) {
  const std::vector<std::string> all = shownTexts();
  return std::any_of(all.begin(), all.end(), [&](const std::string& one) {
    QString text = shown(one);
    return text.remove(QChar(0x200b)).contains(shown(part));
  });
}

FileChooser& PanelBench::chooser() {
  for (QWidget* one : top()->findChildren<QWidget*>()) {
    if (auto* const found = dynamic_cast<FileChooser*>(one)) return *found;
  }
  std::abort();
}

std::vector<std::string> PanelBench::listed() {
  serveUntil([this] { return chooser().browser().isRead(); });
  std::vector<std::string> names;
  const QAbstractItemModel& model = *chooser().browser().list().model();
  for (int row = 0; row < model.rowCount(); ++row) {
    names.push_back(plain(model.index(row, 0).data(Qt::DisplayRole).toString()));
  }
  return names;
}

QRect PanelBench::placeOf(const std::string& name) {
  const std::vector<std::string> names = listed();
  const auto found = std::find(names.begin(), names.end(), name);
  if (found == names.end()) std::abort();
  QTreeView& list = chooser().browser().list();
  const QModelIndex index = list.model()->index(static_cast<int>(found - names.begin()), 0);
  list.scrollTo(index);
  return list.visualRect(index);
}

void PanelBench::select(const std::string& name) {
  QWidget& ground = *chooser().browser().list().viewport();
  const QPoint place = placeOf(name).center();
  QTest::mouseClick(window.windowHandle(), Qt::LeftButton, Qt::NoModifier, ground.mapTo(&window, place));
}

void PanelBench::open(const std::string& name) {
  const QPoint place = placeOf(name).center();
  doubleClick(*chooser().browser().list().viewport(), place);
}

}  // namespace zelvo::tests
