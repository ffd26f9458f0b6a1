#include "platform/qt/deep/queue_model.h"

#include <QFile>
#include <QGuiApplication>
#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/paths.h"
#include "platform/qt/deep/verdict_looks.h"
#include "platform/qt/deep_texts.h"
#include "platform/qt/drawing/text.h"

namespace zelvo::platform::qt {

namespace {

QString shownName(const std::string& path) {
  return QFile::decodeName(QByteArray::fromStdString(platform::nameOf(path)));
}

/// 0 to 100; nothing while it has none.
std::optional<int> percentOf(const QueuedFilm& film) {
  if (film.state == QueuedFilm::State::done) return 100;
  if (film.state != QueuedFilm::State::working || !film.share || !std::isfinite(*film.share)) return std::nullopt;
  return static_cast<int>(std::clamp(*film.share, 0.0, 1.0) * 100);
}

QString wordsOf(const QueuedFilm& film) {
  if (!film.words.empty()) return shown(film.words);
  return film.verdict ? nameOf(*film.verdict) : QString();
}

QString textIn(const QueuedFilm& film, int column) {
  switch (column) {
    case QueueModel::film:
      return shownName(film.path);
    case QueueModel::state:
      return nameOf(film.state);
    case QueueModel::result:
      return wordsOf(film);
    default:
      return {};
  }
}

/// Looks the same in a row that is selected.
QIcon signOf(Pictures& pictures, DeepVerdict verdict) {
  constexpr int kPixels = 18;
  const QIcon drawn = pictures.icon(pictureOf(verdict));
  QIcon sign;
  for (const int scale : {1, 2, 3}) {
    const QPixmap picture = drawn.pixmap(QSize(kPixels, kPixels) * scale, 1.0);
    for (const auto mode : {QIcon::Normal, QIcon::Selected}) sign.addPixmap(picture, mode);
  }
  return sign;
}

/// A tooltip is plain text unless it looks like HTML.
QString asTip(const QString& text) {
  return Qt::mightBeRichText(text) ? QStringLiteral("<span>") + text.toHtmlEscaped() + QStringLiteral("</span>") : text;
}

}  // namespace

QueueModel::QueueModel(Pictures& pictures, QObject* parent)
    : QAbstractTableModel(parent), failed_(signOf(pictures, DeepVerdict::hopeless)) {
  for (const auto verdict : {DeepVerdict::clean, DeepVerdict::repaired, DeepVerdict::partial, DeepVerdict::hopeless}) {
    verdicts_[static_cast<std::size_t>(verdict)] = signOf(pictures, verdict);
  }
}

void QueueModel::setFilms(std::vector<QueuedFilm> films) {
  beginResetModel();
  films_ = std::move(films);
  endResetModel();
}

void QueueModel::setFilm(std::size_t which, const QueuedFilm& told) {
  if (which >= films_.size() || films_[which] == told) return;
  films_[which] = told;
  const int row = static_cast<int>(which);
  Q_EMIT dataChanged(index(row, 0), index(row, takeOut));
}

const QueuedFilm* QueueModel::at(const QModelIndex& index) const {
  const auto row = static_cast<std::size_t>(index.row());
  return index.isValid() && row < films_.size() ? &films_[row] : nullptr;
}

bool QueueModel::canBeOpened(const QModelIndex& index) const {
  const QueuedFilm* const one = at(index);
  return one != nullptr && one->state == QueuedFilm::State::done;
}

bool QueueModel::canBeTakenOut(const QModelIndex& index) const {
  const QueuedFilm* const one = at(index);
  return one != nullptr && one->state != QueuedFilm::State::working;
}

int QueueModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(films_.size());
}

int QueueModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : kColumns; }

QVariant QueueModel::look(const QueuedFilm& one, const QModelIndex& index) const {
  if (index.column() == takeOut) return {};
  if (index.column() == result && one.verdict) return verdicts_[static_cast<std::size_t>(*one.verdict)];
  if (index.column() == result && one.state == QueuedFilm::State::failed) return failed_;
  return {};
}

QVariant QueueModel::data(const QModelIndex& index, int role) const {
  const QueuedFilm* const one = at(index);
  if (one == nullptr) return {};
  const int column = index.column();
  switch (role) {
    case Qt::DisplayRole:
      return textIn(*one, column);
    case Qt::DecorationRole:
      return look(*one, index);
    case Qt::UserRole: {  // per cent
      const auto percent = percentOf(*one);
      return column == progress && percent ? QVariant(*percent) : QVariant();
    }
    case Qt::ToolTipRole:
      if (column == film) return asTip(QFile::decodeName(QByteArray::fromStdString(one->path)));
      if (column == takeOut) return canBeTakenOut(index) ? texts::takeOut() : QString();
      if (canBeOpened(index)) return asTip(textIn(*one, result) + QLatin1Char('\n') + texts::showResult());
      return asTip(textIn(*one, column));
    case Qt::AccessibleTextRole:
      if (column == takeOut) return canBeTakenOut(index) ? texts::takeOut() : QString();
      if (column == progress) {
        const auto percent = percentOf(*one);
        return percent ? texts::percent(*percent) : QString();
      }
      return textIn(*one, column);
    default:
      return {};
  }
}

QVariant QueueModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) return {};
  if (role == Qt::TextAlignmentRole) return QVariant::fromValue(Qt::AlignVCenter | Qt::AlignLeft);
  if (role != Qt::DisplayRole) return {};
  switch (section) {
    case film:
      return texts::columnFilm();
    case state:
      return texts::columnState();
    case result:
      return texts::columnResult();
    case progress:
      return texts::columnProgress();
    default:
      return QString();
  }
}

}  // namespace zelvo::platform::qt
