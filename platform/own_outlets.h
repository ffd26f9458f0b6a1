/// Elements of the window beside the given outlets: what tells the user more than these do. No step of a flow depends on
/// them.
#pragma once

#include "platform/chosen_film.h"
#include "platform/film_report.h"
#include "platform/rejection.h"
#include "platform/run_progress.h"

namespace zelvo::platform {

struct OwnOutlets {
  ChosenFilmView& chosenfilm;      ///< page 1: the card of the chosen film
  RunProgressView& runprogress;    ///< page 2: stage, bytes and time left
  FilmReportView& filmreport;      ///< page 3 and the repair-completed sheet: what was kept
  RejectionView& rejectionreason;  ///< the not-supported sheet: its message
};

}  // namespace zelvo::platform
