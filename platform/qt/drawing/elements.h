/// Text fields, progress bars and pages of the window.
/// Thread: main, but for the functions of the interfaces of platform/elements.h, which any thread may call.
#pragma once

#include <QLabel>
#include <QProgressBar>
#include <QStackedWidget>
#include <QTimer>
#include <functional>
#include <string>

#include "platform/elements.h"
#include "platform/main_queue.h"
#include "platform/qt/drawing/posted_value.h"

namespace zelvo::platform::qt {

/// One line of text that gives way in its middle when there is no room for all of it, with the whole in a tooltip.
class ElidedLabel : public QLabel {
 public:
  explicit ElidedLabel(QWidget* parent = nullptr);
  /// Shown, more quietly, while there is no text.
  void setPlaceholder(const QString& text);
  void setWholeText(const QString& text);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void reportScreenReader();

  QString placeholder_;
};

/// Shows what it is told on a label.
class QtTextField final : public TextField {
 public:
  /// What becomes of a text before it is shown.
  using Shape = std::function<QString(const QString& text)>;

  QtTextField(MainQueue& queue, QLabel& label);
  void setStringValue(std::string_view text) override;
  void setIntegerValue(std::int64_t number) override;

  void setShape(Shape shape) { shape_ = std::move(shape); }
  /// Told the text after it is shown.
  void setObserver(std::function<void(const QString& text)> observer) { observer_ = std::move(observer); }
  /// The text as it was told.
  [[nodiscard]] const QString& text() const { return text_; }
  [[nodiscard]] QLabel& label() const { return label_; }

 private:
  void show(const QString& text);

  QLabel& label_;
  Shape shape_;
  std::function<void(const QString& text)> observer_;
  QString text_;
  PostedValue<std::string> posted_;  ///< a repair says the same text once per 1024 bytes
};

/// A flat bar with the per cent after it.
class FlatProgressBar final : public QProgressBar {
 public:
  explicit FlatProgressBar(QWidget* parent = nullptr);
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;
  /// While it is, a piece runs along the bar and no per cent is told: nobody knows how much there is to do.
  void setBusy(bool busy);
  [[nodiscard]] bool isBusy() const { return isBusy_; }
  /// The per cent that stands after the bar, rounded down.
  [[nodiscard]] int percent() const;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  bool isBusy_ = false;
  double phase_ = 0;  ///< of the running piece, 0 to 1
  QTimer busyTimer_;  ///< runs while it is busy and shown
};

class QtProgressBar final : public ProgressBar {
 public:
  QtProgressBar(MainQueue& queue, FlatProgressBar& bar);
  void setDoubleValue(double percent) override;
  /// The bar moves with its value only, so there is nothing that could run by itself.
  void setUsesThreadedAnimation(bool) override {}

 private:
  MainQueue& queue_;
  FlatProgressBar& bar_;
};

class QtTabView final : public TabView {
 public:
  QtTabView(MainQueue& queue, QStackedWidget& pages) : queue_(queue), pages_(pages) {}
  void selectFirstTabViewItem() override;
  void selectNextTabViewItem() override;
  void selectPreviousTabViewItem() override;

 private:
  void moveTo(const std::function<int(int page)>& next);

  MainQueue& queue_;
  QStackedWidget& pages_;
};

}  // namespace zelvo::platform::qt
