#include "platform/qt/panels/alert_panels.h"

#include <array>

#include "platform/qt/drawing/text.h"
#include "platform/qt/language.h"
#include "platform/qt/panels/panel_frame.h"
#include "platform/qt/panels/sheet_head.h"
#include "platform/qt/texts.h"

namespace zelvo::platform::qt {

namespace {

struct Choice {
  QString title;
  int answer;
};

QString textOf(const std::optional<std::string>& text) { return shown(text.value_or("")); }

/// From left to right.
std::vector<Choice> choicesOf(const AlertPanel& alert) {
  std::vector<Choice> all;
  const std::array<std::pair<const std::optional<std::string>*, int>, 2> optional = {
      {{&alert.otherButton, kAlertOther}, {&alert.alternateButton, kAlertAlternate}}};
  for (const auto& [title, answer] : optional) {
    if (!title->value_or("").empty()) all.push_back({shown(**title), answer});
  }
  const QString first = textOf(alert.defaultButton);
  all.push_back({first.isEmpty() ? texts::ok() : first, kAlertDefault});
  return all;
}

PanelFrame::Role roleOf(int answer, int dismissed) {
  if (answer == kAlertDefault) {
    return dismissed == answer ? PanelFrame::Role::defaultAndCancels : PanelFrame::Role::byDefault;
  }
  return dismissed == answer ? PanelFrame::Role::cancels : PanelFrame::Role::plain;
}

QString pictureIn(const AlertPanel& alert, std::size_t buttons) {
  if (alert.sign) return QString::fromLatin1(pictureOf(*alert.sign));
  return buttons > 1 ? QStringLiteral("sheet-question") : QStringLiteral("sheet-warning");
}

}  // namespace

int QtAlertPanels::runAlertPanel(const AlertPanel& alert) {
  const int dismissed = dismissalAnswer(alert, QtTranslator());
  if (end_.terminated()) return dismissed;
  const std::vector<Choice> choices = choicesOf(alert);
  const QString picture = pictureIn(alert, choices.size());
  PanelFrame panel(stack_, {picture, textOf(alert.title), textOf(alert.message)});
  QEventLoop loop;
  int answer = dismissed;
  for (const Choice& choice : choices) {
    QtButton& button = panel.addButton(choice.title, roleOf(choice.answer, dismissed));
    button.setAction([&answer, &loop, given = choice.answer](Button&) {
      answer = given;
      loop.quit();
    });
  }
  runModally(stack_, panel, loop);
  return answer;
}

}  // namespace zelvo::platform::qt
