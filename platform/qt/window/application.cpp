#include "platform/qt/window/application.h"

#include <QApplication>
#include <QCursor>
#include <QDeadlineTimer>
#include <QEvent>
#include <QScreen>
#include <QSessionManager>
#include <QSocketNotifier>
#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <thread>
#include <utility>

#include "platform/qt/window/main_window.h"

namespace zelvo::platform::qt {

namespace {

/// What a signal handler may touch.
std::atomic<bool> endIsRequested{false};
std::atomic<const WakeNotifier*> signalWaker{nullptr};
static_assert(std::atomic<bool>::is_always_lock_free && std::atomic<const WakeNotifier*>::is_always_lock_free);

constexpr std::array kEndingSignals = {SIGTERM, SIGINT, SIGHUP};

void noteSignal(int) {
  endIsRequested = true;
  if (const WakeNotifier* const waker = signalWaker) waker->wake();
}

void handleEndingSignals(void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  sigfillset(&action.sa_mask);
  for (const int number : kEndingSignals) {
    struct sigaction before {};
    // Whoever started the program with one of them ignored is not overruled.
    if (sigaction(number, nullptr, &before) == 0 && before.sa_handler == SIG_IGN) continue;
    sigaction(number, &action, nullptr);
  }
}

/// What a person does. Moves of the pointer are none of it: buttons know by them where it is.
bool isOfAPerson(QEvent::Type kind) {
  switch (kind) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::ContextMenu:
    case QEvent::Wheel:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
    case QEvent::TabletPress:
    case QEvent::TabletRelease:
    case QEvent::InputMethod:
    case QEvent::NativeGesture:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
    case QEvent::Close:
      return true;
    default:
      return false;
  }
}

}  // namespace

WakeNotifier::WakeNotifier(std::unique_ptr<Waker> waker, std::function<void()> woken)
    : waker_(std::move(waker)), notifier_(new QSocketNotifier(waker_->descriptor(), QSocketNotifier::Read, this)) {
  connect(notifier_, &QSocketNotifier::activated, this, [this, told = std::move(woken)] {
    waker_->settle();
    told();
  });
}

WakeNotifier::~WakeNotifier() { delete notifier_; }  // before the descriptor that it watches

QtApplication::QtApplication(ServedQueue& queue, MainWindow& window, LoopWakers wakers)
    : queue_(queue),
      window_(window),
      arrival_(std::move(wakers.arrival), [this] { serve(); }),
      signal_(std::move(wakers.signal), [this] { requestTermination(); }) {
  nextServing_.setSingleShot(true);
  nextServing_.setTimerType(Qt::PreciseTimer);
  connect(&nextServing_, &QTimer::timeout, this, [this] { serve(); });
  queue_.setWaker([this] { arrival_.wake(); });
  endIsRequested = false;
  signalWaker = &signal_;
  handleEndingSignals(noteSignal);
  connect(
      qApp, &QGuiApplication::commitDataRequest, this,
      [this](QSessionManager&) {
        endIsRequested = true;
        requestTermination();
      },
      Qt::DirectConnection);
  window_.setCloseJudge([this] {
    if (delegate_ != nullptr && !delegate_->windowShouldClose()) return false;
    if (delegate_ != nullptr) delegate_->windowWillClose();
    return true;
  });
}

QtApplication::~QtApplication() {
  window_.setCloseJudge({});
  handleEndingSignals(SIG_DFL);
  signalWaker = nullptr;
  queue_.setWaker({});
}

void QtApplication::setDelegate(Window& window, WindowDelegate* delegate) {
  if (&window == static_cast<Window*>(&window_)) delegate_ = delegate;
}

void QtApplication::showMainWindow() {
  constexpr int kLongestWaitMilliseconds = 3000;  // a display that never paints does not keep the program
  window_.fitInto(window_.screen()->availableGeometry().size());
  window_.show();
  const QDeadlineTimer deadline(kLongestWaitMilliseconds);
  while (!window_.wasPainted() && !deadline.hasExpired()) {
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::WaitForMoreEvents, 20);
  }
}

int QtApplication::run() {
  if (terminated_) return 0;
  if (startHandler_) QTimer::singleShot(0, this, [handler = std::exchange(startHandler_, {})] { handler(); });
  return QApplication::exec();
}

void QtApplication::terminate() {
  terminated_ = true;
  QCoreApplication::exit(0);  // every event loop that runs, those of modal panels included
}

void QtApplication::drainMainQueue() {
  while (const auto again = queue_.serve()) {
    if (again->count() > 0) std::this_thread::sleep_for(*again);
  }
}

void QtApplication::serve() {
  if (deliversRedrawsOnly_) return;  // woken again once the long work lets events through
  if (const auto again = queue_.serve()) nextServing_.start(*again);
}

void QtApplication::deliverRedraws() {
  if (deliversRedrawsOnly_) return;
  constexpr auto kInterval = std::chrono::milliseconds(16);
  const auto now = std::chrono::steady_clock::now();
  if (now < nextDelivery_) return;
  deliversRedrawsOnly_ = true;
  queue_.runDueRedraws();
  QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::ExcludeSocketNotifiers);
  deliversRedrawsOnly_ = false;
  nextDelivery_ = std::chrono::steady_clock::now() + kInterval;
  // What came meanwhile was not for now.
  arrival_.wake();
}

void QtApplication::closeInput() {
  if (std::exchange(inputIsClosed_, true)) return;
  window_.setAnswering(false);
  qApp->installEventFilter(this);
}

void QtApplication::openInput() {
  if (!inputIsClosed_) return;
  // What the display was told before this question has reached the program by the answer; a thread of the toolkit may
  // still have it in its hands.
  static_cast<void>(QCursor::pos());
  constexpr int kOnItsWayMilliseconds = 50;
  bool isOver = false;
  QTimer end;
  end.setSingleShot(true);
  connect(&end, &QTimer::timeout, this, [&isOver] { isOver = true; });
  end.start(kOnItsWayMilliseconds);
  const bool before = std::exchange(deliversRedrawsOnly_, true);
  while (!isOver) {
    QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers | QEventLoop::WaitForMoreEvents);
  }
  deliversRedrawsOnly_ = before;
  qApp->removeEventFilter(this);
  inputIsClosed_ = false;
  window_.setAnswering(true);
  arrival_.wake();  // what came meanwhile was not for now
}

bool QtApplication::eventFilter(QObject*, QEvent* event) {
  if (!isOfAPerson(event->type())) return false;
  event->ignore();  // a window that is asked to close stays, a drop is refused
  return true;
}

void QtApplication::setTerminationHandler(std::function<void()> handler) { terminationHandler_ = std::move(handler); }

bool QtApplication::terminationRequested() const { return endIsRequested; }

void QtApplication::requestTermination() {
  if (terminationHandler_) terminationHandler_();
}

}  // namespace zelvo::platform::qt
