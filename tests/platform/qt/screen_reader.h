/// What a screen reader is told of the window's elements.
#pragma once

#include <QAccessible>
#include <QAccessibleInterface>
#include <algorithm>
#include <array>
#include <functional>
#include <string>

namespace zelvo::tests {

inline QAccessibleInterface& told(QObject& object) { return *QAccessible::queryAccessibleInterface(&object); }
inline std::string nameOf(QAccessibleInterface& element) { return element.text(QAccessible::Name).toStdString(); }
inline std::string nameOf(QObject& object) { return nameOf(told(object)); }

inline bool isInteractive(QAccessibleInterface& element) {
  constexpr std::array kRoles = {QAccessible::Button,   QAccessible::PushButton,   QAccessible::CheckBox,
                                 QAccessible::Link,     QAccessible::EditableText, QAccessible::ComboBox,
                                 QAccessible::MenuItem, QAccessible::ProgressBar,  QAccessible::Dialog};
  return element.state().focusable != 0 || std::find(kRoles.begin(), kRoles.end(), element.role()) != kRoles.end();
}

/// Every visible element below `root`, itself included.
inline void walk(QAccessibleInterface& root, const std::function<void(QAccessibleInterface&)>& visit) {
  if (root.state().invisible != 0) return;
  visit(root);
  for (int child = 0; child < root.childCount(); ++child) {
    if (QAccessibleInterface* const below = root.child(child)) walk(*below, visit);
  }
}

}  // namespace zelvo::tests
