#include "platform/qt/panels/help_panel.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QScrollBar>

#include "platform/qt/texts.h"

namespace zelvo::platform::qt {

namespace {

constexpr QSize kRoom(840, 540);

/// Where the help tells of every message.
QString allMessages() { return QStringLiteral("messages"); }

}  // namespace

void HelpPanel::show(const QUrl& page, const QString& topic, const QString& why) {
  close();
  auto& frame = *new PanelFrame(stack_, {QString(), texts::help(), why});
  frame_ = &frame;
  frame.setStaysOnTop();
  browser_ = new QTextBrowser;
  browser_->setAccessibleName(texts::help());
  browser_->setOpenLinks(false);
  // The pages' own style sheet is for browsers; this much of it is needed to find a message among the others.
  browser_->document()->setDefaultStyleSheet(QStringLiteral("dt { font-weight: bold; }"));
  QObject::connect(browser_, &QTextBrowser::anchorClicked, browser_, [this](const QUrl& link) {
    const QUrl to = browser_->source().resolved(link);
    if (to.isLocalFile()) {
      turnTo(to.adjusted(QUrl::RemoveFragment), to.fragment());
    } else {
      QDesktopServices::openUrl(to);
    }
  });
  frame.addContent(browser_);
  frame.addButton(texts::closeHelp(), PanelFrame::Role::defaultAndCancels).setAction([this](Button&) { close(); });
  frame.setRoom(kRoom, *browser_);
  frame.setFirstFocus(*browser_);
  stack_.begin(frame);
  turnTo(page, topic);  // only now has the page the width by which its lines are broken
}

void HelpPanel::turnTo(const QUrl& page, const QString& topic) {
  if (!page.isLocalFile() || !QFileInfo::exists(page.toLocalFile())) {
    browser_->setPlainText(texts::addressIs(page.toDisplayString()));
    return;
  }
  if (browser_->source() != page) browser_->setSource(page);
  if (topic.isEmpty()) return;
  QScrollBar& bar = *browser_->verticalScrollBar();
  bar.setValue(bar.minimum());
  browser_->scrollToAnchor(topic);
  if (bar.value() == bar.minimum()) browser_->scrollToAnchor(allMessages());
}

void HelpPanel::close() {
  PanelFrame* const frame = frame_;
  frame_ = nullptr;
  browser_ = nullptr;
  if (frame == nullptr) return;
  stack_.orderOut(*frame);
  frame->deleteLater();  // a button of it may be what closed it
}

}  // namespace zelvo::platform::qt
