#include "platform/qt/deep/comparison_table.h"

#include <QHeaderView>
#include <QVBoxLayout>

#include "platform/qt/deep/focus_ring.h"
#include "platform/qt/deep_texts.h"
#include "platform/qt/drawing/appearance.h"
#include "platform/qt/drawing/text.h"

namespace zelvo::platform::qt {

namespace {

constexpr int kComparisonGap = 8;
constexpr int kComparisonRow = 28;

}  // namespace

/// As high as its rows.
class ComparisonTable::Table final : public QTableWidget {
 public:
  Table() : QTableWidget(0, 2) {
    setFont(textFont(kSmallPixels));
    setAccessibleName(texts::comparison());
    setHorizontalHeaderLabels({texts::normalRepair(), texts::deepRepair()});
    horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    horizontalHeader()->setHighlightSections(false);
    verticalHeader()->setHighlightSections(false);
    verticalHeader()->setDefaultSectionSize(kComparisonRow);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTabKeyNavigation(false);
    setCornerButtonEnabled(false);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  }
  [[nodiscard]] QSize sizeHint() const override {
    return {QTableWidget::sizeHint().width(),
            horizontalHeader()->sizeHint().height() + rowCount() * kComparisonRow + 2 * frameWidth()};
  }
  [[nodiscard]] QSize minimumSizeHint() const override { return {0, sizeHint().height()}; }

 protected:
  void paintEvent(QPaintEvent* event) override {
    QTableWidget::paintEvent(event);
    paintFocusRing(*this);
  }
};

ComparisonTable::ComparisonTable() : sentence_(new QLabel), table_(new Table) {
  sentence_->setTextFormat(Qt::PlainText);
  sentence_->setWordWrap(true);
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(kComparisonGap);
  column->addWidget(sentence_);
  column->addWidget(table_);
}

void ComparisonTable::showComparison(const DeepComparison& comparison) {
  sentence_->setText(shown(comparison.sentence));
  table_->setRowCount(static_cast<int>(comparison.rows.size()));
  for (int row = 0; row < table_->rowCount(); ++row) {
    const DeepComparison::Row& told = comparison.rows[static_cast<std::size_t>(row)];
    table_->setVerticalHeaderItem(row, new QTableWidgetItem(shown(told.about)));
    table_->setItem(row, 0, new QTableWidgetItem(shown(told.normal)));
    table_->setItem(row, 1, new QTableWidgetItem(shown(told.deep)));
    for (const int column : {0, 1}) table_->item(row, column)->setToolTip(table_->item(row, column)->text());
  }
  table_->setVisible(!comparison.rows.empty());
  table_->updateGeometry();
}

}  // namespace zelvo::platform::qt
