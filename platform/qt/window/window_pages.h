/// The three pages of the window: choosing, repairing, the result. Each holds its elements under their outlets' names.
/// Thread: main.
#pragma once

#include "platform/qt/drawing/elements.h"
#include "platform/qt/drawing/hosted_widget.h"
#include "platform/qt/preview/movie_pane.h"
#include "platform/qt/window/drop_area.h"
#include "platform/qt/window/film_report_pane.h"
#include "platform/qt/window/offer_line.h"
#include "platform/qt/window/run_progress_line.h"
#include "platform/qt/window/window_page.h"

namespace zelvo::platform::qt {

class ChoosePage final : public WindowPage {
 public:
  explicit ChoosePage(const PageParts& parts);

  QtButton* browsebutton;
  QtButton* repairbutton;
  DropArea* dropArea;
  QtTextField textfield;  ///< the path that was chosen last
  QtTextField pathfield;  ///< the path that is chosen
  QtTextField workingfoldertext;
  QtButton* workingfolderbutton;
  QtButton* deeprepairbutton;
  QtButton* addfilmsbutton;
  QtButton* refusedofferbutton;
  OfferLine* refusedoffer;

 private:
  void showChoice();
  void focusRepair();
  [[nodiscard]] QWidget* workingFolderLine();

  QWidget* workingFolder_ = nullptr;
};

class RepairPage final : public WindowPage {
 public:
  explicit RepairPage(const PageParts& parts);

  QtTextField pathlabel;
  QtTextField status;  ///< the job's `textfield`
  FlatProgressBar* bar;
  QtProgressBar progressbar;
  RunProgressLine* runprogress;
  QtTextField waitingtext;
  QtButton* stopbutton;
};

/// `movie` shows the film, and plays one by the button of the preview.
class ResultPage final : public WindowPage {
 public:
  ResultPage(const PageParts& parts, MoviePane& movie);

  HostedWidget* result;  ///< the framed area round the movie
  QtTextField videocodecfield;
  QtTextField audiocodecfield;
  FilmReportPane* filmreport;
  QtTextField durationfield;
  QtTextField savedsizelabel;  ///< what `durationfield` is the size of
  QtButton* previewbutton;
  QtButton* savebutton;
  QtButton* clickherebutton;
  QtTextField downloadmplayertext;
  QtTextField downloadmplayertext1;
  QtTextField downloadmplayertext2;
  QtTextField downloadmplayertext3;
  QtTextField downloadmplayertext4;
  QtButton* partlyofferbutton;
  OfferLine* partlyoffer;
};

}  // namespace zelvo::platform::qt
