/// A row of widgets that goes on in a line below where it has no more room, like the words of a sentence. Logical
/// pixels.
#pragma once

#include <QLayout>
#include <memory>
#include <vector>

namespace zelvo::platform::qt {

/// Each widget gets its own preferred width, and the height of the tallest of its line; hidden ones take no room.
/// Thread: main.
class WrappingRow final : public QLayout {
 public:
  explicit WrappingRow(int spacing) : gap_(spacing) { setContentsMargins(0, 0, 0, 0); }
  ~WrappingRow() override;

  void addItem(QLayoutItem* item) override;
  [[nodiscard]] QLayoutItem* itemAt(int index) const override;
  QLayoutItem* takeAt(int index) override;
  [[nodiscard]] int count() const override { return static_cast<int>(items_.size()); }

  [[nodiscard]] Qt::Orientations expandingDirections() const override { return {}; }
  [[nodiscard]] bool hasHeightForWidth() const override { return true; }
  [[nodiscard]] int heightForWidth(int width) const override;
  [[nodiscard]] QSize sizeHint() const override;
  /// As wide as the widest widget.
  [[nodiscard]] QSize minimumSize() const override;
  void setGeometry(const QRect& area) override;

 private:
  /// Goes through the lines, and places the widgets when `isPlacing`. Answers the height of all lines.
  int layOut(const QRect& area, bool isPlacing) const;

  int gap_;
  std::vector<std::unique_ptr<QLayoutItem>> items_;
};

}  // namespace zelvo::platform::qt
