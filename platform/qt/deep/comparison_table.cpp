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
constexpr int kComparisonColumns = 3;  // what it is about, normal, deep

}  // namespace

/// As high as its rows.
class ComparisonTable::Table final : public QTableWidget {
 public:
  Table() : QTableWidget(0, kComparisonColumns) {
    setFont(textFont(kSmallPixels));
    setAccessibleName(texts::comparison());
    setHorizontalHeaderLabels({QString(), texts::normalRepair(), texts::deepRepair()});
    horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    horizontalHeader()->setSectionsClickable(false);
    horizontalHeader()->setHighlightSections(false);
    verticalHeader()->hide();
    setShowGrid(false);
    setFrameShape(QFrame::NoFrame);
    verticalHeader()->setDefaultSectionSize(kComparisonRow);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTabKeyNavigation(false);
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
    int column = 0;
    for (const std::string* text : {&told.about, &told.normal, &told.deep}) {
      auto* const cell = new QTableWidgetItem(shown(*text));
      cell->setToolTip(cell->text());
      table_->setItem(row, column++, cell);
    }
    table_->item(row, 0)->setForeground(secondaryText(palette()));
  }
  table_->setVisible(!comparison.rows.empty());
  table_->updateGeometry();
}

}  // namespace zelvo::platform::qt
