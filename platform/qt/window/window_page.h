/// What the pages of the window have in common: the strip at the top with the product's name, the step and the three
/// picture buttons, and the texts that pages are made of.
/// Thread: main.
#pragma once

#include <QLabel>
#include <QScrollArea>
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
  /// A page that is no step: `name` stands in its strip, and it looks for no update.
  WindowPage(const PageParts& parts, const QString& name);

  QtButton* mark;  ///< the product's picture: what it is
  QtButton* home;
  QtButton* help;
  QtButton* update;

  /// Where the focus goes when the page comes.
  void setFirstFocus(QWidget* widget) { firstFocus_ = widget; }
  [[nodiscard]] QWidget* firstFocus() const { return firstFocus_; }
  /// The button that carries the control of a filled one; none on most pages.
  [[nodiscard]] QtButton* filled() const { return filled_; }
  /// The button that saves what the page shows; none on most pages.
  [[nodiscard]] QtButton* saving() const { return saving_; }

 protected:
  [[nodiscard]] QVBoxLayout* body() const { return body_; }
  /// One column, no wider than is read well, and a little above the middle.
  void showInTheMiddle(QLayout* column);
  /// Scrolls to a part of the page that was shown just now.
  void bringIntoView(QWidget& part);
  void setFilled(QtButton& button) { filled_ = &button; }
  void setSaving(QtButton& button) { saving_ = &button; }

 private:
  /// `middle` stands in the middle of the strip.
  WindowPage(const PageParts& parts, QWidget* middle);

  QVBoxLayout* body_;
  QScrollArea* area_;
  QWidget* firstFocus_ = nullptr;
  QtButton* filled_ = nullptr;
  QtButton* saving_ = nullptr;
};

[[nodiscard]] QLabel* headline(const QString& text);
[[nodiscard]] QLabel* explanation(const QString& text);

/// Room round and between the parts of a page.
inline constexpr int kPageMargin = 40;
inline constexpr int kPageGap = 16;

}  // namespace zelvo::platform::qt
