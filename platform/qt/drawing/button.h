/// A button of the window. It can carry a self-drawn control; by itself it is a framed button, a picture or a link.
/// Thread: main, but for the functions of platform::Button, which any thread may call.
#pragma once

#include <QPushButton>
#include <atomic>
#include <functional>
#include <string>

#include "platform/main_queue.h"
#include "platform/panel_controls.h"
#include "platform/qt/drawing/pictures.h"
#include "platform/qt/drawing/posted_value.h"
#include "platform/qt/drawing/view_host.h"
#include "platform/view.h"

namespace zelvo::platform::qt {

class QtButton final : public QPushButton, public BaseButton {
 public:
  enum class Look { push, picture, link };

  /// `title` is shown by framed buttons and links and told to a screen reader by all. A picture button shows the title
  /// on its picture when `showTitle` was called.
  QtButton(MainQueue& queue, Pictures& pictures, const QString& title, Look look, QWidget* parent = nullptr);

  // ---- platform::Button ----
  void setEnabled(bool enabled) override;
  void setHidden(bool hidden) override;
  void setState(State state) override;
  [[nodiscard]] State state() const override { return state_; }
  void setImage(std::string_view name) override;

  // ---- platform::BaseButton ----
  [[nodiscard]] std::string title() const override;
  void setAttributedTitle(const AttributedText& title) override;
  void setHighlightsBy(std::uint32_t mask) override { highlightsBy_ = mask; }
  void setEnabledObserver(std::function<void(bool enabled)> observer) override;

  /// Shows and tells another title.
  void setTitle(const QString& title);
  /// True: a frame, whatever the button carries. For what is not the next step.
  void setOutlined(bool outlined);
  [[nodiscard]] bool isOutlined() const { return isOutlined_; }

  /// Each press changes the state, and `otherTitle` stands in the place of the title while it is on. Not a checkable
  /// button of the toolkit's: a screen reader would toggle one without pressing it.
  void setTwoState(const QString& otherTitle);
  void showTitle() { showsTitle_ = true; }
  /// Shows its picture at this size (logical pixels) rather than at the picture's own.
  void setPictureSize(const QSize& size) { pictureSize_ = size; }
  /// The name of the picture that is shown.
  [[nodiscard]] const std::string& imageName() const { return image_; }
  /// What a press does, with the state as it is by then.
  void setAction(std::function<void(Button& sender)> action) { action_ = std::move(action); }
  [[nodiscard]] QtViewHost& host() const { return *host_; }
  [[nodiscard]] HostedButton hosted() { return {*host_, *this}; }

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool event(QEvent* event) override;
  void changeEvent(QEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void nextCheckState() override;
  [[nodiscard]] bool hitButton(const QPoint& place) const override { return rect().contains(place); }

 private:
  void paintBase(QPainter& painter);
  void paintPush(QPainter& painter) const;
  void paintPicture(QPainter& painter);
  void paintLink(QPainter& painter) const;
  void paintFocus(QPainter& painter) const;
  /// A frame on the outermost `width` points.
  void strokeFrame(QPainter& painter, double width, const QColor& colour) const;
  void showState(State state);
  void showEnabled(bool enabled);
  void pressed();

  MainQueue& queue_;
  Pictures& pictures_;
  Look look_;
  QString title_;
  QString otherTitle_;
  std::string image_;
  std::atomic<State> state_{State::off};
  PostedValue<bool> enabled_;  ///< a repair disables its stop button ten times per 1024 bytes
  std::uint32_t highlightsBy_ = 1;
  bool isOutlined_ = false;
  bool isTwoState_ = false;
  bool showsTitle_ = false;
  QSize pictureSize_;
  bool showsFocus_ = false;
  /// In the middle, unless an attributed title says otherwise.
  static constexpr ParagraphStyle kCentred{LineBreakMode::byWordWrapping, TextAlignment::centre};
  ParagraphStyle titleStyle_ = kCentred;
  std::function<void(bool enabled)> enabledObserver_;
  std::function<void(Button& sender)> action_;
  QtViewHost* host_;
};

}  // namespace zelvo::platform::qt
