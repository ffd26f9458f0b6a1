/// What a repair has kept, at the side of the result page: a headline, a sentence, figures, and what could not be read.
/// The repair-completed sheet takes its picture and words from the same report.
/// Thread: main, but for the functions of platform::FilmReportView, which any thread may call.
#pragma once

#include <QGridLayout>
#include <QLabel>
#include <QWidget>
#include <optional>

#include "platform/film_report.h"
#include "platform/main_queue.h"
#include "platform/qt/drawing/elements.h"
#include "platform/qt/drawing/picture_widget.h"
#include "platform/qt/panels/panel_frame.h"

namespace zelvo::platform::qt {

class FilmReportPane final : public QWidget, public FilmReportView {
 public:
  /// `videoField` and `audioField` show the codecs' own names; the common ones stand before them.
  FilmReportPane(MainQueue& queue, Pictures& pictures, QLabel& videoField, QLabel& audioField);

  // ---- platform::FilmReportView ----
  void show(const FilmReport& report) override;
  void clear() override;

  /// The sheet that leads to the page.
  void setSheet(PanelFrame& sheet) { sheet_ = &sheet; }
  /// Adds a row to the figures.
  void addFigure(const QString& name, QWidget& value) { addFigure(*new QLabel(name), value); }
  void addFigure(QLabel& name, QWidget& value);

  [[nodiscard]] QString title() const { return title_->text(); }
  [[nodiscard]] QString message() const { return message_->text(); }
  [[nodiscard]] QString failedReads() const { return unreadable_->text(); }
  [[nodiscard]] QString figure(int row) const;
  [[nodiscard]] QString videoName() const { return videoName_->text(); }
  [[nodiscard]] QString audioName() const { return audioName_->text(); }
  [[nodiscard]] QString pictureName() const;

 private:
  void display(const std::optional<FilmReport>& report);
  QLabel* addFigure(const QString& name);

  MainQueue& queue_;
  PanelFrame* sheet_ = nullptr;
  PictureWidget* picture_;
  QLabel* title_;
  QLabel* message_;
  QGridLayout* figures_;
  QLabel* videoName_;
  QLabel* audioName_;
  QLabel* pictures_ = nullptr;
  QLabel* sound_ = nullptr;
  QLabel* share_ = nullptr;
  QWidget* unreadableBox_;
  QLabel* unreadable_;
};

}  // namespace zelvo::platform::qt
