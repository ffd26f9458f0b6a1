/// What the normal repair keeps of a film, beside what the deep one has.
/// Thread: main.
#pragma once

#include <QLabel>
#include <QTableWidget>
#include <QWidget>

#include "platform/deep_outlets.h"

namespace zelvo::platform::qt {

class ComparisonTable final : public QWidget {
 public:
  ComparisonTable();

  void showComparison(const DeepComparison& comparison);
  [[nodiscard]] QString sentence() const { return sentence_->text(); }
  [[nodiscard]] QTableWidget& table() const { return *table_; }

 private:
  class Table;

  QLabel* sentence_;
  QTableWidget* table_;
};

}  // namespace zelvo::platform::qt
