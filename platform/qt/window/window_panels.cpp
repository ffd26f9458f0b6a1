#include "platform/qt/window/window_panels.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/qt/drawing/appearance.h"
#include "platform/qt/drawing/text.h"
#include "platform/qt/texts.h"
#include "platform/qt/window/film_texts.h"

namespace zelvo::platform::qt {

namespace {

using Role = PanelFrame::Role;

PanelFrame& panel(PanelStack& stack, const char* picture, const QString& title, const QString& message) {
  return *new PanelFrame(stack, {QString::fromLatin1(picture), title, message});
}

FlatProgressBar& bar(PanelFrame& in) {
  auto* const made = new FlatProgressBar;
  made->setAccessibleName(in.title());
  in.addContent(made);
  return *made;
}

/// A text below the bar.
QLabel& line(PanelFrame& in) {
  auto* const made = new QLabel;
  made->setTextFormat(Qt::PlainText);
  made->setFont(textFont(kSmallPixels));
  made->setForegroundRole(QPalette::PlaceholderText);
  made->setWordWrap(true);
  in.addContent(made);
  return *made;
}

}  // namespace

WindowPanels::WindowPanels(PanelStack& stack)
    : filenotselectedwindow(panel(stack, "sheet-info", texts::noFilmTitle(), texts::noFilmMessage())),
      filenotselectedokbutton(filenotselectedwindow.addButton(texts::ok(), Role::defaultAndCancels)),
      stoprepairwindow(panel(stack, "sheet-question", texts::stopRepairTitle(), texts::stopRepairMessage())),
      stoprepairokbutton(stoprepairwindow.addButton(texts::stopRepair())),
      stoprepaircancelbutton(stoprepairwindow.addButton(texts::keepRepairing(), Role::defaultAndCancels)),
      invalidfilewindow(panel(stack, "sheet-warning", texts::invalidTitle(), texts::invalidMessage())),
      invalidfilehead(stack.queue(), invalidfilewindow),
      invalidfiletext(stack.queue(), invalidfilewindow.message()),
      invalidfileokbutton(invalidfilewindow.addButton(texts::ok(), Role::defaultAndCancels)),
      filenotsupportedwindow(
          panel(stack, "sheet-warning", texts::notSupportedTitle(), texts::rejection(Rejection::headerLost))),
      rejectionreason(stack.queue(), filenotsupportedwindow),
      filenotsupportedokbutton(filenotsupportedwindow.addButton(texts::ok(), Role::defaultAndCancels)),
      repaircompletedwindow(panel(stack, "sheet-done", texts::completedTitle(FilmVerdict::good),
                                  texts::completedMessage(FilmVerdict::good))),
      repaircompletedokbutton(repaircompletedwindow.addButton(texts::seeResult(), Role::defaultAndCancels)),
      saveprogresspanel(panel(stack, "sheet-info", texts::savingTitle(), texts::savingMessage())),
      saveBar(bar(saveprogresspanel)),
      saveprogressbar(stack.queue(), saveBar),
      savedbytestext(stack.queue(), line(saveprogresspanel)),
      stopsavingbutton(saveprogresspanel.addButton(texts::stop(), Role::cancels)),
      stopsavingwindow(panel(stack, "sheet-question", texts::stopSavingTitle(), texts::stopSavingMessage())),
      stopsavingOKbutton(stopsavingwindow.addButton(texts::stopSaving())),
      stopsavingCancelbutton(stopsavingwindow.addButton(texts::keepSaving(), Role::defaultAndCancels)),
      savecompletedwindow(panel(stack, "sheet-done", texts::savedTitle(), texts::nothing())),
      savecompletedhead(stack.queue(), savecompletedwindow),
      savecompletedtext(stack.queue(), savecompletedwindow.message()),
      savecompletedokbutton(savecompletedwindow.addButton(texts::ok(), Role::defaultAndCancels)),
      PreviewErrorWindow(panel(stack, "sheet-warning", texts::previewErrorTitle(), texts::previewErrorMessage())),
      PreviewErrorokbutton(PreviewErrorWindow.addButton(texts::ok(), Role::defaultAndCancels)) {
  for (const auto& [field, in] : {std::pair(&invalidfiletext, &invalidfilewindow),
                                  {&savedbytestext, &saveprogresspanel},
                                  {&savecompletedtext, &savecompletedwindow}}) {
    field->setShape(breakable);
    // A longer text wants more room.
    field->setObserver([&stack, panel = in](const QString&) { stack.placeAgain(*panel); });
  }
  filenotselectedwindow.setHelpTopic(QStringLiteral("no-film-chosen"));
  stoprepairwindow.setHelpTopic(QStringLiteral("stop-the-repair"));
  invalidfilewindow.setHelpTopic(QStringLiteral("not-an-avi-film"));
  filenotsupportedwindow.setHelpTopic(QStringLiteral("cannot-be-repaired"));
  repaircompletedwindow.setHelpTopic(QStringLiteral("was-repaired"));
  saveprogresspanel.setHelpTopic(QStringLiteral("saving"));
  stopsavingwindow.setHelpTopic(QStringLiteral("stop-saving"));
  savecompletedwindow.setHelpTopic(QStringLiteral("saving-is-done"));
  PreviewErrorWindow.setHelpTopic(QStringLiteral("cannot-be-shown"));
}

bool WindowPanels::tellsOfAnEnd(const PanelFrame& panel) const {
  const std::array ends = {&invalidfilewindow, &filenotsupportedwindow, &repaircompletedwindow, &savecompletedwindow};
  return std::find(ends.begin(), ends.end(), &panel) != ends.end();
}

}  // namespace zelvo::platform::qt
