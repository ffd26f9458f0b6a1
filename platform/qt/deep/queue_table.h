/// The films of a queue as a table. A click on a film that is done, or the Enter key, asks for its result; a click on
/// the cross at its end, or the Delete key, takes a film out.
/// Thread: main, but for `show` and `update`, which any thread may call.
#pragma once

#include <QTreeView>
#include <functional>

#include "platform/deep_outlets.h"
#include "platform/main_queue.h"
#include "platform/qt/deep/queue_model.h"
#include "platform/qt/drawing/pictures.h"

namespace zelvo::platform::qt {

class QueueTable final : public QTreeView, public QueueView {
 public:
  QueueTable(MainQueue& queue, Pictures& pictures);

  // ---- platform::QueueView ----
  void show(const std::vector<QueuedFilm>& films) override;
  void update(std::size_t film, const QueuedFilm& told) override;
  void setOpener(std::function<void(std::size_t film)> opener) override { opener_ = std::move(opener); }
  void setRemover(std::function<void(std::size_t film)> remover) override { remover_ = std::move(remover); }

  [[nodiscard]] const QueueModel& films() const { return *model_; }
  [[nodiscard]] QSize minimumSizeHint() const override;
  [[nodiscard]] QSize sizeHint() const override { return minimumSizeHint(); }
  /// Whoever scrolls to the part with the keyboard scrolls to all of it, and not to its current row only.
  [[nodiscard]] QVariant inputMethodQuery(Qt::InputMethodQuery query) const override {
    return QWidget::inputMethodQuery(query);
  }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;

 private:
  class Cells;

  void display(const std::vector<QueuedFilm>& films);
  void clickedAt(const QModelIndex& index);
  void open(const QModelIndex& index);
  void takeOut(const QModelIndex& index);

  MainQueue& queue_;
  QueueModel* model_;
  std::function<void(std::size_t film)> opener_;
  std::function<void(std::size_t film)> remover_;
};

}  // namespace zelvo::platform::qt
