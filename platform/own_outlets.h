/// Elements of the window beside the given outlets: what tells the user more than these do. No step of a flow depends
/// on them.
/// Decision: window, What we add stands beside
#pragma once

#include "platform/chosen_film.h"
#include "platform/elements.h"
#include "platform/film_report.h"
#include "platform/rejection.h"
#include "platform/run_progress.h"
#include "platform/sheet_head.h"

namespace zelvo::platform {

struct OwnOutlets {
  ChosenFilmView& chosenfilm;      ///< page 1: the card of the chosen film
  RunProgressView& runprogress;    ///< page 2: stage, bytes and time left
  FilmReportView& filmreport;      ///< page 3 and the repair-completed sheet: what was kept
  RejectionView& rejectionreason;  ///< the not-supported sheet: its message

  TextField& workingfoldertext;  ///< page 1: where rebuilt files lie until they are saved, and how much room is there
  Button& workingfolderbutton;   ///< page 1: chooses another such folder
  TextField& waitingtext;        ///< page 2: what the run waits for; empty while it waits for nothing
  TextField& savedsizelabel;     ///< page 3: what `durationfield` is the size of
  SheetHead& invalidfilehead;
  TextField& invalidfiletext;
  TextField& savedbytestext;  ///< the sheet of a save's progress: how much of the copy is written
  SheetHead& savecompletedhead;
};

}  // namespace zelvo::platform
