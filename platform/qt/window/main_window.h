/// The window: three pages, the panels over them, and what the logic reads and changes of both.
/// Thread: main, but for the functions of platform::Window, which any thread may call.
#pragma once

#include <QStackedWidget>
#include <QUrl>
#include <QWidget>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/hosted_views.h"
#include "platform/main_queue.h"
#include "platform/movies.h"
#include "platform/outlets.h"
#include "platform/qt/drawing/hosted_widget.h"
#include "platform/qt/drawing/pictures.h"
#include "platform/qt/panels/about_panel.h"
#include "platform/qt/panels/help_panel.h"
#include "platform/qt/panels/panel_stack.h"
#include "platform/qt/preview/movie_pane.h"
#include "platform/qt/window/unseen_movie_view.h"
#include "platform/qt/window/window_pages.h"
#include "platform/qt/window/window_panels.h"
#include "platform/qt/window/window_place.h"
#include "platform/settings.h"

namespace zelvo::platform::qt {

/// To a screen reader it is the frame that everything of the program lies in.
class MainWindow final : public QWidget, public Window {
 public:
  /// `movie` shows what `movieView` is given; the window takes it over.
  MainWindow(MainQueue& queue, Pictures& pictures, MoviePane* movie, MovieView& movieView);
  ~MainWindow() override;

  // ---- platform::Window ----
  void orderOut() override;
  void makeKeyAndOrderFront() override;

  [[nodiscard]] const ControllerOutlets& controllerOutlets() const { return *controllerOutlets_; }
  [[nodiscard]] const JobOutlets& jobOutlets() const { return *jobOutlets_; }
  [[nodiscard]] HostedViews hostedViews();
  [[nodiscard]] PanelStack& panels() { return *panels_; }

  /// Asked before the window closes. It is not asked while a panel is shown: the window then stays.
  void setCloseJudge(std::function<bool()> judge) { closeJudge_ = std::move(judge); }
  /// Given the path of each file that is dropped on the window while the first page is shown and no panel is.
  void setFileReceiver(std::function<void(const std::string& file)> receiver) { fileReceiver_ = std::move(receiver); }
  /// Given the paths when several files are dropped at once. Without a receiver they are refused.
  void setFilesReceiver(std::function<void(std::vector<std::string> files)> receiver) {
    filesReceiver_ = std::move(receiver);
  }
  /// Hands a file over as if it were dropped.
  void offerFile(const std::string& file);

  /// The page that F1 leads to while a message is shown: an address of a local file with a place for each message.
  void setHelpPage(const QUrl& page) { helpPage_ = page; }
  /// Shows that page inside the window, at one of its places.
  void showHelp(const QString& topic);
  /// Shows inside the window what no browser could be started for.
  void showUnopened(const QUrl& address);
  /// What the About panel says; as "0.1.0".
  void setVersion(const QString& version) { aboutPanel_->setVersion(version); }
  /// What the buttons that look for an update say besides, since they cannot do it.
  void setUpdateRemark(const QString& remark);
  /// Makes the window as large as it would like to be, or as `free`, the screen's part that no desktop panel covers,
  /// has room for; a title bar's height is left to the window manager. Logical pixels. Where a place is remembered, the
  /// window goes there.
  void fitInto(const QSize& free);
  /// Where its place is remembered; they outlive the window.
  void setSettings(Settings& settings) { place_ = std::make_unique<WindowPlace>(*this, settings); }

  /// False while the window cannot answer: the button that stops a save looks off then.
  void setAnswering(bool answering);

  // ---- Pages that lie over the three ----
  /// The window takes the page over.
  void addPage(WindowPage& page);
  /// Shows a page that was added; null uncovers the three again.
  void showPage(WindowPage* page);
  /// The page that is seen.
  [[nodiscard]] WindowPage& shownPage() const;
  /// True while the first page is seen, and no panel lies over it.
  [[nodiscard]] bool isChoosing() const;
  /// The title tells how far `bar` is while `shownWith`, a page or a panel, is shown. What was named later comes first.
  void showInTitle(const QWidget& shownWith, const FlatProgressBar& bar);

  [[nodiscard]] bool wasPainted() const { return wasPainted_; }

  // ---- For tests and pictures of the window ----
  [[nodiscard]] ChoosePage& choosePage() { return *choosePage_; }
  [[nodiscard]] RepairPage& repairPage() { return *repairPage_; }
  [[nodiscard]] ResultPage& resultPage() { return *resultPage_; }
  [[nodiscard]] WindowPanels& fixedPanels() { return *fixedPanels_; }
  [[nodiscard]] HelpPanel& helpPanel() { return *helpPanel_; }
  [[nodiscard]] AboutPanel& aboutPanel() { return *aboutPanel_; }
  /// 0, 1 or 2.
  [[nodiscard]] int page() const { return pages_->currentIndex(); }

 protected:
  void closeEvent(QCloseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragLeaveEvent(QDragLeaveEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void fillOutlets(MovieView& movieView);
  void addShortcuts();
  /// Keys that press a button while it is seen and no panel is.
  void addShortcut(const QKeySequence& keys, const std::function<QtButton*()>& button);
  /// The product's name, with how far a run or a save is while one is shown.
  void showTitle();
  /// F1.
  void askForHelp();
  /// Why what is dragged cannot be dropped here and now; empty when it can.
  [[nodiscard]] QString whyRefused(const QMimeData& dragged) const;
  /// Says so where it does.
  [[nodiscard]] bool refuses(const QDropEvent& event);
  void pageChanged(QStackedWidget& stack);
  void panelBegan(const PanelFrame& panel);
  void panelsChanged();
  void giveLostFocus();
  void resynchronise();

  MainQueue& queue_;
  QWidget* content_;
  HostedWidget* ground_;
  MoviePane* movie_;
  QStackedWidget* layers_;  ///< the three pages first, then those that lie over them
  QStackedWidget* pages_;
  ChoosePage* choosePage_;
  RepairPage* repairPage_;
  ResultPage* resultPage_;
  std::unique_ptr<PanelStack> panels_;
  std::unique_ptr<WindowPanels> fixedPanels_;
  std::unique_ptr<HelpPanel> helpPanel_;
  std::unique_ptr<AboutPanel> aboutPanel_;
  std::unique_ptr<QtTabView> tabview_;
  std::unique_ptr<UnseenMovieView> unseenMovie_;
  std::unique_ptr<QLabel> unseenLabel_;
  std::unique_ptr<QtTextField> unseenField_;  ///< the job's duration, which nothing tells
  std::unique_ptr<ControllerOutlets> controllerOutlets_;
  std::unique_ptr<JobOutlets> jobOutlets_;
  std::function<bool()> closeJudge_;
  std::function<void(const std::string& file)> fileReceiver_;
  std::function<void(std::vector<std::string> files)> filesReceiver_;
  std::vector<std::pair<const QWidget*, const FlatProgressBar*>> titleBars_;
  QUrl helpPage_;
  std::unique_ptr<WindowPlace> place_;
  bool wasPainted_ = false;
};

}  // namespace zelvo::platform::qt
