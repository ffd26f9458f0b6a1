/// What the pages of the window have in common: the strip at the top with the product's name, the step and the three
/// picture buttons, and the texts that pages are made of.
/// Thread: main.
#pragma once

#include <QLabel>
#include <QVBoxLayout>
#include <QWidget>

#include "platform/main_queue.h"
#include "platform/qt/drawing/button.h"
#include "platform/qt/drawing/pictures.h"

namespace zelvo::platform::qt {

/// Makes the parts of pages.
struct PageParts {
  MainQueue& queue;
  Pictures& pictures;

  [[nodiscard]] QtButton* button(const QString& title, QtButton::Look look) const;
  [[nodiscard]] QtButton* pictureButton(const QString& title, std::string_view picture) const;
};

/// A page with its strip. What it shows goes into `body`.
class WindowPage : public QWidget {
 public:
  /// `step` is 0, 1 or 2.
  WindowPage(const PageParts& parts, int step);

  QtButton* home;
  QtButton* help;
  QtButton* update;

  /// Where the focus goes when the page comes.
  void setFirstFocus(QWidget* widget) { firstFocus_ = widget; }
  [[nodiscard]] QWidget* firstFocus() const { return firstFocus_; }

 protected:
  [[nodiscard]] QVBoxLayout* body() const { return body_; }

 private:
  QVBoxLayout* body_;
  QWidget* firstFocus_ = nullptr;
};

[[nodiscard]] QLabel* headline(const QString& text);
[[nodiscard]] QLabel* explanation(const QString& text);

/// Room round and between the parts of a page.
inline constexpr int kPageMargin = 40;
inline constexpr int kPageGap = 16;

}  // namespace zelvo::platform::qt
