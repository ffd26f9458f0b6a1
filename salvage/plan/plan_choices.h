/// What the user's choices change in a plan.
#pragma once

#include "salvage/headers/film_header.h"
#include "salvage/plan/film_plan.h"

namespace zelvo::salvage {

/// Pictures that are damaged, torn or cut become lost ones, for which an empty chunk keeps the time.
void emptyDamagedPictures(FilmPlan& plan, const FilmHeader& header);

/// Takes out the slots of which nothing is left. Spans keep to the slots around them.
void closeGaps(FilmPlan& plan);

}  // namespace zelvo::salvage
