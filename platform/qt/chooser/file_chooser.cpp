#include "platform/qt/chooser/file_chooser.h"

#include <QAccessible>
#include <QApplication>
#include <QDir>
#include <QEvent>
#include <QFile>
#include <QHBoxLayout>
#include <QPainter>
#include <QUrl>
#include <QVBoxLayout>
#include <array>

#include "platform/paths.h"
#include "platform/qt/drawing/appearance.h"
#include "platform/qt/drawing/text.h"

namespace zelvo::platform::qt {

namespace {

constexpr int kChooserGap = 12;
constexpr int kFieldHeight = 32;
constexpr int kWarningSize = 20;
constexpr int kRing = 2;
/// White on it has a contrast of 6.9 to 1, in both schemes.
constexpr QRgb kSelection = 0xff035f8f;

QPalette withSelection(QPalette palette) {
  palette.setColor(QPalette::Highlight, QColor(kSelection));
  return palette;
}

}  // namespace

/// The sign beside a sentence.
class FileChooser::Warning final : public QWidget {
 public:
  explicit Warning(Pictures& pictures) : pictures_(pictures) { setFixedSize(kWarningSize, kWarningSize); }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    pictures_.draw(painter, "sheet-warning", QRectF(rect()));
  }

 private:
  Pictures& pictures_;
};

FileChooser::FileChooser(PanelStack& stack, std::shared_ptr<ChooserFiles> files, const FileFilter& filter,
                         const QString& nameLabel)
    : browser_(new FolderBrowser(stack.queue(), stack.pictures(), std::move(files), filter)),
      name_(new QLineEdit),
      warning_(new Warning(stack.pictures())),
      sentence_(new QLabel),
      note_(new ElidedLabel),
      rows_(new QVBoxLayout(this)) {
  setPalette(withSelection(palette()));
  name_->setMinimumHeight(kFieldHeight);
  name_->setAccessibleName(nameLabel);
  name_->setObjectName(QStringLiteral("fileNameEdit"));
  auto* const label = new QLabel(nameLabel);
  label->setBuddy(name_);
  auto* const field = new QHBoxLayout;
  field->setSpacing(kChooserGap);
  field->addWidget(label);
  field->addWidget(name_, 1);

  sentence_->setTextFormat(Qt::PlainText);
  sentence_->setWordWrap(true);
  QPalette quiet = note_->palette();
  quiet.setColor(QPalette::WindowText, secondaryText(palette()));
  note_->setPalette(quiet);
  auto* const line = new QHBoxLayout;
  line->setSpacing(kChooserGap / 2);
  line->addWidget(warning_, 0, Qt::AlignTop);
  line->addWidget(sentence_, 1);
  line->addWidget(note_, 1);
  warning_->hide();
  sentence_->hide();

  rows_->setContentsMargins(kRing, 0, kRing, kRing);
  rows_->setSpacing(kChooserGap);
  rows_->addWidget(browser_, 1);
  rows_->addLayout(field);
  rows_->addLayout(line);
  connect(name_, &QLineEdit::textChanged, this, [this] { say({}); });
  connect(qApp, &QApplication::focusChanged, this, [this] { update(); });
  for (QWidget* part : std::array<QWidget*, 3>{name_, &browser_->list(), &browser_->placeList()}) {
    part->installEventFilter(this);
  }
  browser_->installEventFilter(this);
}

bool FileChooser::eventFilter(QObject*, QEvent* event) {
  // The ring lies round a part, outside it, and would stay behind where the part was.
  if (event->type() == QEvent::Resize || event->type() == QEvent::Move) update();
  return false;
}

void FileChooser::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const std::array<const QWidget*, 3> parts = {name_, &browser_->list(), &browser_->placeList()};
  for (const QWidget* part : parts) {
    if (!part->hasFocus()) continue;
    const QRect place(part->mapTo(this, QPoint(0, 0)), part->size());
    painter.fillRect(place.adjusted(-kRing, -kRing, kRing, kRing), focusColour(palette()));
  }
}

void FileChooser::say(const QString& sentence) {
  showBreakable(*sentence_, sentence);
  warning_->setVisible(!sentence.isEmpty());
  sentence_->setVisible(!sentence.isEmpty());
  note_->setVisible(sentence.isEmpty());
  if (sentence.isEmpty()) return;
  QAccessibleEvent said(sentence_, QAccessible::Alert);
  QAccessible::updateAccessibility(&said);
}

void FileChooser::addTickBox(const QString& text, bool isTicked) {
  tickBox_ = new QCheckBox(text);
  tickBox_->setChecked(isTicked);
  rows_->insertWidget(rows_->count() - 1, tickBox_, 0, Qt::AlignLeft);
}

void FileChooser::setNote(const QString& note) { note_->setWholeText(note); }

void FileChooser::fallSilent() {
  browser_->fallSilent();
  name_->blockSignals(true);
}

std::string FileChooser::typedPath() const {
  QString typed = name_->text();
  if (typed.isEmpty()) return {};
  if (const FolderEntry* const entry = browser_->entryShownAs(typed)) return pathIn(browser_->folder(), entry->name);
  if (typed.startsWith(QLatin1String("file://"))) typed = QUrl(typed).toLocalFile();
  if (typed == QLatin1String("~") || typed.startsWith(QLatin1String("~/"))) typed.replace(0, 1, QDir::homePath());
  const std::string bytes = QFile::encodeName(typed).toStdString();
  return bytes.starts_with('/') ? bytes : pathIn(browser_->folder(), bytes);
}

}  // namespace zelvo::platform::qt
