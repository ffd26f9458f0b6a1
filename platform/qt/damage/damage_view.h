/// Draws the picture of a film's damage, tells what happened at the place under the pointer, and lets the keyboard walk
/// from loss to loss.
/// Thread: main.
#pragma once

#include <QWidget>
#include <functional>
#include <optional>
#include <vector>

#include "platform/damage_picture.h"

namespace zelvo::platform::qt {

class DamageView final : public QWidget {
 public:
  explicit DamageView(QWidget* parent = nullptr);

  void show(DamagePicture picture);
  [[nodiscard]] const DamagePicture& picture() const { return picture_; }

  /// Marks a loss and tells of it; nothing ends that.
  void select(std::optional<std::size_t> loss);
  [[nodiscard]] std::optional<std::size_t> selected() const { return selected_; }
  /// Told whenever another loss is marked.
  void setSelectionObserver(std::function<void(std::size_t loss)> observer) { onSelect_ = std::move(observer); }
  /// Told the time, in seconds, that a click or the Enter key asks for.
  void setTimeReceiver(std::function<void(double seconds)> receiver) { onTime_ = std::move(receiver); }

  /// The line below the bars.
  [[nodiscard]] QString words() const;

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;
  [[nodiscard]] bool hasHeightForWidth() const override { return true; }
  [[nodiscard]] int heightForWidth(int width) const override;

  // ---- Where things lie, in the widget's points ----
  /// The bar itself, without its texts.
  [[nodiscard]] QRectF barArea(std::size_t bar) const;
  /// Where a mark is painted: never too narrow to be seen or met.
  [[nodiscard]] QRectF markArea(std::size_t bar, const DamageMark& mark) const;
  /// The losses that are painted there, rising. One place may show many.
  [[nodiscard]] std::vector<std::size_t> lossesAt(const QPointF& point) const;

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;

 private:
  struct Pointed {
    std::size_t bar;
    double place;  ///< in the bar's own measure
    std::vector<std::size_t> losses;
  };

  [[nodiscard]] std::optional<std::size_t> barAt(const QPointF& point) const;
  void paintBar(QPainter& painter, std::size_t bar) const;
  void paintMarks(QPainter& painter, std::size_t bar) const;
  void paintTicks(QPainter& painter, std::size_t bar) const;
  void paintSelection(QPainter& painter) const;
  void paintLegend(QPainter& painter) const;
  void walkTo(std::size_t loss);
  [[nodiscard]] int legendHeight(int width) const;
  [[nodiscard]] std::vector<DamagePaint> legend() const;

  DamagePicture picture_;
  std::optional<std::size_t> selected_;
  std::optional<Pointed> pointed_;
  std::function<void(std::size_t loss)> onSelect_;
  std::function<void(double seconds)> onTime_;
};

}  // namespace zelvo::platform::qt
