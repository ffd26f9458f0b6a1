/// A sentence of a page with a button at its end, or below it, which are seen together or not at all.
/// Thread: main, but for what platform::DeepOffer's users call, which any thread may.
#pragma once

#include <QLabel>
#include <QWidget>

#include "platform/deep_outlets.h"
#include "platform/main_queue.h"
#include "platform/qt/drawing/button.h"

namespace zelvo::platform::qt {

/// Hidden at first.
class OfferLine final : public QWidget, public DeepOffer {
 public:
  /// `button` becomes a part of the line.
  OfferLine(MainQueue& queue, QtButton& button, Qt::Orientation orientation);

  // ---- platform::DeepOffer ----
  void show(std::string_view sentence) override;
  void hide() override;

  /// `other` is hidden while the line is seen: both would be too much for a small window.
  void standInFor(QWidget& other) { other_ = &other; }

  [[nodiscard]] QString sentence() const { return sentence_->text(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void showNow(bool isShown);

  MainQueue& queue_;
  QLabel* sentence_;
  QWidget* other_ = nullptr;
};

}  // namespace zelvo::platform::qt
