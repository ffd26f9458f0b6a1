/// Films of a queue as rows.
/// Thread: main.
#pragma once

#include <QAbstractTableModel>
#include <QIcon>
#include <array>
#include <optional>
#include <vector>

#include "platform/deep_outlets.h"
#include "platform/qt/drawing/pictures.h"

namespace zelvo::platform::qt {

class QueueModel final : public QAbstractTableModel {
 public:
  enum Column { film, state, result, progress, takeOut };
  static constexpr int kColumns = takeOut + 1;

  QueueModel(Pictures& pictures, QObject* parent);

  void setFilms(std::vector<QueuedFilm> films);
  void setFilm(std::size_t which, const QueuedFilm& told);
  [[nodiscard]] const std::vector<QueuedFilm>& films() const { return films_; }

  /// True for a film that has a result.
  [[nodiscard]] bool canBeOpened(const QModelIndex& index) const;
  /// True for one that is not worked on.
  [[nodiscard]] bool canBeTakenOut(const QModelIndex& index) const;

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  [[nodiscard]] const QueuedFilm* at(const QModelIndex& index) const;
  [[nodiscard]] QVariant look(const QueuedFilm& one, const QModelIndex& index) const;

  std::vector<QueuedFilm> films_;
  std::array<QIcon, 4> verdicts_;  ///< by DeepVerdict
  QIcon failed_;
};

}  // namespace zelvo::platform::qt
