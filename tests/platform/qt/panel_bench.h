/// A window with panels, pressed as a user presses: keys and clicks go to the window, which hands them on.
#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QTreeView>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/window_controls.h"
#include "platform/linux/chooser_files.h"
#include "platform/linux/loop_waker.h"
#include "platform/linux/main_queue.h"
#include "platform/notification_centre.h"
#include "platform/qt/chooser/file_panels.h"
#include "platform/qt/drawing/pictures.h"
#include "platform/qt/panels/alert_panels.h"
#include "platform/qt/panels/wait_panels.h"
#include "platform/qt/window/application.h"
#include "platform/qt/window/main_window.h"
#include "tests/platform/qt/code_place.h"
#include "tests/support/temp_folder.h"

namespace zelvo::tests {

/// The home folder of the user is one of the test's own.
class OwnHome {
 public:
  OwnHome();
  ~OwnHome();
  OwnHome(const OwnHome&) = delete;
  OwnHome& operator=(const OwnHome&) = delete;

  [[nodiscard]] const TempFolder& folder() const { return folder_; }
  [[nodiscard]] std::string path(const std::string& name = {}) const { return folder_.path(name); }
  /// Makes a folder in it, with those above, and answers its path.
  std::string make(const std::string& name) const;

 private:
  TempFolder folder_;
  QByteArray homeBefore_;
  QByteArray configBefore_;
};

/// Forbids what an ordinary user may not do, also to root.
class AsOrdinaryUser {
 public:
  AsOrdinaryUser();
  ~AsOrdinaryUser();
  AsOrdinaryUser(const AsOrdinaryUser&) = delete;
  AsOrdinaryUser& operator=(const AsOrdinaryUser&) = delete;

 private:
  bool wasRoot_;
};

class PanelBench {
 public:
  PanelBench();
  ~PanelBench();
  PanelBench(const PanelBench&) = delete;
  PanelBench& operator=(const PanelBench&) = delete;

  OwnHome home;
  platform::linux_::LinuxMainQueue queue;
  platform::NotificationCentre centre;
  app::WindowControls controls{centre};
  platform::qt::Pictures pictures;
  std::unique_ptr<platform::MovieView> movieView;
  platform::qt::MainWindow window;
  platform::qt::QtApplication application;
  platform::qt::QtAlertPanels alerts;
  platform::qt::QtWaitPanels waits;
  std::shared_ptr<platform::ChooserFiles> files = std::make_shared<platform::linux_::LinuxChooserFiles>();
  platform::qt::QtPanels panels;

  /// Serves events until `done`. Waiting in vain fails and ends the test, and tells what the topmost panel shows.
  void serveUntil(const std::function<bool()>& done,
                  const ::zelvo::tests::CodePlace& where = ::zelvo::tests::CodePlace::current());
  /// Serves what waits.
  void serve();
  /// Runs `work` in the event loop, once the code that is running waits there.
  void later(std::function<void()> work);

  void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
  void type(const std::string& text);
  void click(QWidget& widget);
  void doubleClick(QWidget& widget, const QPoint& place);

  [[nodiscard]] platform::qt::PanelFrame* top() { return window.panels().top(); }
  /// The titles of the buttons of the topmost panel, from left to right.
  [[nodiscard]] std::vector<std::string> buttonTitles();
  /// The button of the topmost panel that says `title`; there must be one.
  [[nodiscard]] platform::qt::QtButton& button(const std::string& title);
  /// The texts that the topmost panel shows on labels.
  [[nodiscard]] std::vector<std::string> shownTexts();
  [[nodiscard]] bool says(const std::string& part);
  [[nodiscard]] QWidget* focus() { return window.focusWidget(); }

  // ---- A chooser that is the topmost panel ----
  [[nodiscard]] platform::qt::FileChooser& chooser();
  [[nodiscard]] QLineEdit& nameField() { return chooser().nameField(); }
  /// Waits until its folder is read, and answers the names in its list.
  std::vector<std::string> listed();
  /// Clicks the entry of that name.
  void select(const std::string& name);
  void open(const std::string& name);
  [[nodiscard]] QRect placeOf(const std::string& name);
};

}  // namespace zelvo::tests
