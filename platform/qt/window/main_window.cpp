#include "platform/qt/window/main_window.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QShortcut>
#include <QToolTip>
#include <QVBoxLayout>
#include <array>

#include "platform/qt/drawing/appearance.h"
#include "platform/qt/drawing/scroll_areas.h"
#include "platform/qt/texts.h"
#include "platform/qt/window/desktop_notice.h"
#include "platform/qt/window/dragged_files.h"

namespace zelvo::platform::qt {

namespace {

constexpr int kWidth = 960;
constexpr int kHeight = 620;
constexpr int kLeastWidth = 640;
constexpr int kLeastWindowHeight = 420;
/// What a window manager may put round the window, whose measures nobody knows before it is shown.
constexpr QSize kFrameRoom(8, 40);

/// Panels may hold buttons of the toolkit too, which only the cast tells from ours.
std::vector<QtButton*> buttonsIn(const QWidget& widget) {
  std::vector<QtButton*> ours;
  for (QPushButton* one : widget.findChildren<QPushButton*>()) {
    if (auto* const button = dynamic_cast<QtButton*>(one)) ours.push_back(button);
  }
  return ours;
}

QAccessibleInterface* accessibleWindow(const QString&, QObject* object) {
  auto* const window = dynamic_cast<MainWindow*>(object);
  return window == nullptr ? nullptr : new QAccessibleWidget(window, QAccessible::Window);  // Qt's cache owns it
}

}  // namespace

MainWindow::MainWindow(MainQueue& queue, Pictures& pictures, MoviePane* movie, MovieView& movieView)
    : queue_(queue),
      content_(new QWidget(this)),
      movie_(movie),
      layers_(new QStackedWidget),
      pages_(new QStackedWidget) {
  QAccessible::installFactory(accessibleWindow);  // once, however often it is asked
  installScrollAreaAccessibility();
  setWindowTitle(texts::productName());
  setAcceptDrops(true);
  resize(kWidth, kHeight);
  setMinimumSize(kLeastWidth, kLeastWindowHeight);
  auto* const all = new QVBoxLayout(this);
  all->setContentsMargins(0, 0, 0, 0);
  all->addWidget(content_);

  ground_ = new HostedWidget(content_);
  ground_->setFocusPolicy(Qt::NoFocus);
  const PageParts parts{queue, pictures};
  choosePage_ = new ChoosePage(parts);
  repairPage_ = new RepairPage(parts);
  resultPage_ = new ResultPage(parts, *movie);
  for (WindowPage* page : std::array<WindowPage*, 3>{choosePage_, repairPage_, resultPage_}) {
    pages_->addWidget(page);
    page->mark->setAction([this](Button&) { aboutPanel_->show(); });
  }
  auto* const inContent = new QVBoxLayout(content_);
  inContent->setContentsMargins(0, 0, 0, 0);
  inContent->addWidget(layers_);
  layers_->addWidget(pages_);
  for (QStackedWidget* const stack : {pages_, layers_}) {
    connect(stack, &QStackedWidget::currentChanged, this, [this, stack] { pageChanged(*stack); });
  }

  panels_ = std::make_unique<PanelStack>(*content_, queue, pictures);
  fixedPanels_ = std::make_unique<WindowPanels>(*panels_);
  helpPanel_ = std::make_unique<HelpPanel>(*panels_);
  aboutPanel_ = std::make_unique<AboutPanel>(*panels_);
  panels_->setObserver([this] { panelsChanged(); });
  panels_->setBeginObserver([this](PanelFrame& panel) { panelBegan(panel); });
  resultPage_->filmreport->setSheet(fixedPanels_->repaircompletedwindow);
  fillOutlets(movieView);
  showInTitle(*repairPage_, *repairPage_->bar);
  showInTitle(fixedPanels_->saveprogresspanel, fixedPanels_->saveBar);
  addShortcuts();
  choosePage_->firstFocus()->setFocus();
}

MainWindow::~MainWindow() {
  place_.reset();
  // Widgets that go leave the pointer to those that are still there, and these would tell of it.
  for (QtButton* button : buttonsIn(*content_)) button->host().stopTracking();
  panels_->setObserver({});
  panels_->setBeginObserver({});
  while (PanelFrame* const panel = panels_->top()) panels_->end(*panel);
  panels_->setControls(nullptr);
  delete content_;  // while the stack that its panels belong to is there
}

void MainWindow::orderOut() {
  queue_.perform([this] { hide(); });
}

void MainWindow::makeKeyAndOrderFront() {
  queue_.perform([this] {
    show();
    raise();
    activateWindow();
  });
}

void MainWindow::fillOutlets(MovieView& movieView) {
  tabview_ = std::make_unique<QtTabView>(queue_, *pages_);
  unseenMovie_ = std::make_unique<UnseenMovieView>(queue_);
  unseenLabel_ = std::make_unique<QLabel>();
  unseenField_ = std::make_unique<QtTextField>(queue_, *unseenLabel_);
  ChoosePage& one = *choosePage_;
  RepairPage& two = *repairPage_;
  ResultPage& three = *resultPage_;
  WindowPanels& panels = *fixedPanels_;
  controllerOutlets_ =
      std::make_unique<ControllerOutlets>(ControllerOutlets{.mainWindow = *this,
                                                            .tabview = *tabview_,
                                                            .movieview = movieView,
                                                            .browsebutton = *one.browsebutton,
                                                            .textfield = one.textfield,
                                                            .pathfield = one.pathfield,
                                                            .repairbutton = *one.repairbutton,
                                                            .pathlabel = two.pathlabel,
                                                            .progressbar = two.progressbar,
                                                            .stopbutton = *two.stopbutton,
                                                            .previewbutton = *three.previewbutton,
                                                            .savebutton = *three.savebutton,
                                                            .clickherebutton = *three.clickherebutton,
                                                            .downloadmplayertext = three.downloadmplayertext,
                                                            .downloadmplayertext1 = three.downloadmplayertext1,
                                                            .downloadmplayertext2 = three.downloadmplayertext2,
                                                            .downloadmplayertext3 = three.downloadmplayertext3,
                                                            .downloadmplayertext4 = three.downloadmplayertext4,
                                                            .durationfield = three.durationfield,
                                                            .main1 = *one.home,
                                                            .main2 = *two.home,
                                                            .main3 = *three.home,
                                                            .help1 = *one.help,
                                                            .help2 = *two.help,
                                                            .help3 = *three.help,
                                                            .update1 = *one.update,
                                                            .update2 = *two.update,
                                                            .update3 = *three.update,
                                                            .filenotselectedwindow = panels.filenotselectedwindow,
                                                            .filenotselectedokbutton = panels.filenotselectedokbutton,
                                                            .stoprepairwindow = panels.stoprepairwindow,
                                                            .stoprepairokbutton = panels.stoprepairokbutton,
                                                            .stoprepaircancelbutton = panels.stoprepaircancelbutton,
                                                            .saveprogresspanel = panels.saveprogresspanel,
                                                            .saveprogressbar = panels.saveprogressbar,
                                                            .stopsavingbutton = panels.stopsavingbutton,
                                                            .stopsavingwindow = panels.stopsavingwindow,
                                                            .stopsavingOKbutton = panels.stopsavingOKbutton,
                                                            .stopsavingCancelbutton = panels.stopsavingCancelbutton,
                                                            .savecompletedwindow = panels.savecompletedwindow,
                                                            .savecompletedokbutton = panels.savecompletedokbutton,
                                                            .savecompletedtext = panels.savecompletedtext,
                                                            .PreviewErrorWindow = panels.PreviewErrorWindow,
                                                            .PreviewErrorokbutton = panels.PreviewErrorokbutton,
                                                            .own = {.chosenfilm = *one.dropArea,
                                                                    .runprogress = *two.runprogress,
                                                                    .filmreport = *three.filmreport,
                                                                    .rejectionreason = panels.rejectionreason,
                                                                    .workingfoldertext = one.workingfoldertext,
                                                                    .workingfolderbutton = *one.workingfolderbutton,
                                                                    .waitingtext = two.waitingtext,
                                                                    .savedsizelabel = three.savedsizelabel,
                                                                    .invalidfilehead = panels.invalidfilehead,
                                                                    .invalidfiletext = panels.invalidfiletext,
                                                                    .savedbytestext = panels.savedbytestext,
                                                                    .savecompletedhead = panels.savecompletedhead}});
  jobOutlets_ = std::make_unique<JobOutlets>(JobOutlets{.textfield = two.status,
                                                        .videocodecfield = three.videocodecfield,
                                                        .audiocodecfield = three.audiocodecfield,
                                                        .pathfield = one.pathfield,
                                                        .window = *this,
                                                        .filenotsupportedwindow = panels.filenotsupportedwindow,
                                                        .invalidfilewindow = panels.invalidfilewindow,
                                                        .repaircompletedwindow = panels.repaircompletedwindow,
                                                        .stoprepairwindow = panels.stoprepairwindow,
                                                        .stopbutton = *two.stopbutton,
                                                        .tabview2 = *tabview_,
                                                        .movieview1 = *unseenMovie_,
                                                        .filenotsupportedokbutton = panels.filenotsupportedokbutton,
                                                        .invalidfileokbutton = panels.invalidfileokbutton,
                                                        .repaircompletedokbutton = panels.repaircompletedokbutton,
                                                        .previewbutton = *three.previewbutton,
                                                        .minutestextfield = *unseenField_,
                                                        .secondstextfield = *unseenField_,
                                                        .hourstextfield = *unseenField_});
}

HostedViews MainWindow::hostedViews() {
  HostedViews views{.content = ground_->host(),
                    .result = resultPage_->result->host(),
                    .movie = movie_->movie().host(),
                    .pageButtons = {choosePage_->browsebutton->hosted(), resultPage_->savebutton->hosted()}};
  for (int layer = 1; layer < layers_->count(); ++layer) {
    const auto& page = dynamic_cast<WindowPage&>(*layers_->widget(layer));
    if (page.filled() != nullptr) views.pageButtons.push_back(page.filled()->hosted());
  }
  return views;
}

void MainWindow::addShortcuts() {
  addShortcut(QKeySequence(Qt::CTRL | Qt::Key_O), [this] { return choosePage_->browsebutton; });
  addShortcut(QKeySequence(Qt::CTRL | Qt::Key_R), [this] { return choosePage_->repairbutton; });
  addShortcut(QKeySequence(Qt::CTRL | Qt::Key_P), [this] { return resultPage_->previewbutton; });
  addShortcut(QKeySequence(Qt::CTRL | Qt::Key_S), [this] { return shownPage().saving(); });
  connect(new QShortcut(QKeySequence(Qt::Key_F1), this), &QShortcut::activated, this, [this] { askForHelp(); });
  connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q), this), &QShortcut::activated, this, [this] { close(); });
}

void MainWindow::addShortcut(const QKeySequence& keys, const std::function<QtButton*()>& button) {
  connect(new QShortcut(keys, this), &QShortcut::activated, this, [this, button] {
    QtButton* const pressed = button();
    if (panels_->isEmpty() && pressed != nullptr && pressed->isVisible()) pressed->click();
  });
}

void MainWindow::showInTitle(const QWidget& shownWith, const FlatProgressBar& bar) {
  titleBars_.emplace_back(&shownWith, &bar);
  connect(&bar, &QProgressBar::valueChanged, this, [this] { showTitle(); });
}

void MainWindow::showTitle() {
  const FlatProgressBar* bar = nullptr;
  for (const auto& [shownWith, one] : titleBars_) {
    const auto* const panel = dynamic_cast<const PanelFrame*>(shownWith);
    if (panel != nullptr ? panels_->isShown(*panel) : shownWith == &shownPage()) bar = one;
  }
  const bool isKnown = bar != nullptr && !bar->isBusy();
  const QString title = isKnown ? texts::titleWithPercent(bar->percent()) : texts::productName();
  if (title != windowTitle()) setWindowTitle(title);
}

void MainWindow::askForHelp() {
  const PanelFrame* const panel = panels_->top();
  if (panel == nullptr) {
    QtButton* const help = shownPage().help;
    if (help->isVisible()) help->click();
  } else if (panel != helpPanel_->frame()) {
    showHelp(panel->helpTopic());
  }
}

void MainWindow::showHelp(const QString& topic) {
  if (helpPage_.isValid()) helpPanel_->show(helpPage_, topic, {});
}

void MainWindow::showUnopened(const QUrl& address) {
  helpPanel_->show(address.adjusted(QUrl::RemoveFragment), address.fragment(), texts::noBrowser());
}

void MainWindow::setUpdateRemark(const QString& remark) {
  for (const WindowPage* page : std::array<const WindowPage*, 3>{choosePage_, repairPage_, resultPage_}) {
    page->update->setToolTip(remark.isEmpty() ? texts::update() : texts::update() + QStringLiteral("\n") + remark);
    page->update->setAccessibleDescription(remark);
  }
}

void MainWindow::fitInto(const QSize& free) {
  resize(QSize(kWidth, kHeight).boundedTo(free - kFrameRoom).expandedTo(minimumSize()));
  if (place_ != nullptr) place_->restore();
}

void MainWindow::addPage(WindowPage& page) {
  layers_->addWidget(&page);
  page.mark->setAction([this](Button&) { aboutPanel_->show(); });
}

void MainWindow::showPage(WindowPage* page) {
  QWidget* const next = page == nullptr ? static_cast<QWidget*>(pages_) : page;
  if (next == layers_->currentWidget()) return;
  // As on a change of the three: the keyboard goes where the window says, and not to the next page's first button.
  QWidget* const focused = focusWidget();
  if (focused != nullptr && layers_->currentWidget()->isAncestorOf(focused)) focused->clearFocus();
  layers_->setCurrentWidget(next);
}

WindowPage& MainWindow::shownPage() const {
  const QWidget* const layer = layers_->currentWidget();
  return dynamic_cast<WindowPage&>(layer == pages_ ? *pages_->currentWidget() : *layers_->currentWidget());
}

void MainWindow::pageChanged(QStackedWidget& stack) {
  showTitle();
  if (&stack == pages_ && layers_->currentWidget() != pages_) return;  // nobody sees it
  const WindowPage& page = shownPage();
  if (panels_->isEmpty() && page.firstFocus()->isEnabled()) page.firstFocus()->setFocus(Qt::OtherFocusReason);
  QAccessibleEvent changed(&stack, QAccessible::Alert);
  QAccessible::updateAccessibility(&changed);
  resynchronise();
}

void MainWindow::panelBegan(const PanelFrame& panel) {
  if (isActiveWindow() || !fixedPanels_->tellsOfAnEnd(panel)) return;
  showDesktopNotice(panel.title(), panel.message().text());
  QApplication::alert(this);
}

void MainWindow::panelsChanged() {
  showTitle();
  // Later, since what ends a panel may turn the page next, and the keyboard goes where that leads.
  QMetaObject::invokeMethod(
      this, [this] { giveLostFocus(); }, Qt::QueuedConnection);
  resynchronise();
}

void MainWindow::giveLostFocus() {
  // What had the keyboard before the panel may be disabled by now, or on a page that is gone.
  const QWidget* const focused = focusWidget();
  const bool isLost = focused == nullptr || !focused->isVisible() || !focused->isEnabled();
  if (panels_->isEmpty() && isLost) {
    QWidget* const first = shownPage().firstFocus();
    if (first->isEnabled()) {
      first->setFocus(Qt::OtherFocusReason);
    } else {
      focusNextChild();
    }
  }
}

void MainWindow::resynchronise() {
  for (QtButton* button : buttonsIn(*content_)) {
    if (button->isVisible()) button->host().resynchronise();
  }
}

bool MainWindow::isChoosing() const { return &shownPage() == choosePage_ && panels_->isEmpty(); }

void MainWindow::offerFile(const std::string& file) {
  if (isChoosing() && fileReceiver_) fileReceiver_(file);
}

void MainWindow::setAnswering(bool answering) {
  PanelFrame& panel = fixedPanels_->saveprogresspanel;
  fixedPanels_->stopsavingbutton.setEnabled(answering);
  if (answering && panels_->top() == &panel) panel.firstFocus().setFocus(Qt::PopupFocusReason);
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (!panels_->isEmpty() || (closeJudge_ && !closeJudge_())) event->ignore();
}

void MainWindow::paintEvent(QPaintEvent*) { wasPainted_ = true; }

void MainWindow::resizeEvent(QResizeEvent*) { ground_->setGeometry(content_->rect()); }

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (refuses(*event)) return;
  event->setDropAction(Qt::CopyAction);
  event->accept();
  choosePage_->dropArea->setInviting(true);
}

void MainWindow::dragLeaveEvent(QDragLeaveEvent*) { choosePage_->dropArea->setInviting(false); }

QString MainWindow::whyRefused(const QMimeData& dragged) const {
  if (!panels_->isEmpty()) return texts::answerFirst();
  if (&shownPage() == repairPage_) return texts::stillRepairing();
  if (&shownPage() != choosePage_) return texts::homeFirst();
  if (dragged.urls().size() > 1 && !filesReceiver_) return texts::oneAtATime();
  return draggedFiles(dragged).empty() ? texts::onlyFiles() : QString();
}

bool MainWindow::refuses(const QDropEvent& event) {
  const QString why = whyRefused(*event.mimeData());
  if (!why.isEmpty()) QToolTip::showText(mapToGlobal(event.position().toPoint()), why, this);
  return !why.isEmpty();
}

void MainWindow::dropEvent(QDropEvent* event) {
  choosePage_->dropArea->setInviting(false);
  if (refuses(*event)) return;
  event->setDropAction(Qt::CopyAction);  // the file stays where it is, whatever the other side proposed
  event->accept();
  std::vector<std::string> files = draggedFiles(*event->mimeData());
  if (files.size() == 1) {
    offerFile(files.front());
  } else if (filesReceiver_) {
    filesReceiver_(std::move(files));
  }
}

}  // namespace zelvo::platform::qt
