/// The losses of a film, one a row.
/// Thread: main.
#pragma once

#include <QListView>
#include <QStandardItemModel>
#include <functional>
#include <optional>

#include "platform/damage_picture.h"

namespace zelvo::platform::qt {

class LossList final : public QListView {
 public:
  LossList();

  /// Each with a sign in the paint that it has in the picture.
  void showLosses(const DamagePicture& picture);

  /// Marks a loss; nobody is told.
  void mark(std::size_t loss);
  [[nodiscard]] std::optional<std::size_t> marked() const;
  /// Told when the user marks another loss.
  void setMarkObserver(std::function<void(std::size_t loss)> observer) { onMark_ = std::move(observer); }
  /// Told of a loss that is clicked or entered.
  void setOpener(std::function<void(std::size_t loss)> opener) { onOpen_ = std::move(opener); }

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }
  /// Whoever scrolls to the part with the keyboard scrolls to all of it, and not to its current row only.
  [[nodiscard]] QVariant inputMethodQuery(Qt::InputMethodQuery query) const override {
    return QWidget::inputMethodQuery(query);
  }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;

 private:
  void open(const QModelIndex& index);

  QStandardItemModel losses_;
  bool isMarking_ = false;
  std::function<void(std::size_t loss)> onMark_;
  std::function<void(std::size_t loss)> onOpen_;
};

}  // namespace zelvo::platform::qt
