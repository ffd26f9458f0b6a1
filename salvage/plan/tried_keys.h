/// Key pictures of codecs whose bits nobody here can read: found by decoding.
#pragma once

#include "avi/input_file.h"
#include "platform/trial_decoder.h"
#include "salvage/headers/film_header.h"
#include "salvage/payloads/trial_budget.h"
#include "salvage/plan/film_plan.h"

namespace zelvo::salvage {

/// Decodes the pictures of each stream whose codec does not tell its keys and of which no index names any, from the
/// front on as far as the budget goes, and flags those that the decoder calls intra pictures and keys. A stream whose
/// decoder does not name the types of its pictures stays as it is.
/// Thread: any; as long as the budget lasts.
void flagKeysByDecoding(platform::TrialDecoder& decoder, avi::InputFile& input, const FilmHeader& header,
                        TrialBudget budget, FilmPlan& plan);

}  // namespace zelvo::salvage
