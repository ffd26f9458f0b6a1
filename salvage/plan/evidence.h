/// All that the first stages found in a damaged film, for those that make the plan.
#pragma once

#include <vector>

#include "avi/input_file.h"
#include "platform/trial_decoder.h"
#include "salvage/headers/film_header.h"
#include "salvage/scan/chunk_chain.h"
#include "salvage/scan/index_template.h"
#include "salvage/scan/media_scan.h"
#include "salvage/scan/stream_codes.h"
#include "salvage/scan/stream_facts.h"
#include "salvage/scan/surviving_headers.h"

namespace zelvo::salvage {

/// Borrows everything. `chain`, `facts` and `index` are those of `scan`.
struct Evidence {
  avi::InputFile& input;
  const SurvivingHeaders& headers;
  const FilmHeader& header;  ///< of the repaired film
  const StreamCodes& codes;
  const MediaScan& scan;
  const ChunkChain& chain;
  const std::vector<StreamFacts>& facts;
  const IndexTemplate& index;
  platform::TrialDecoder* decoder = nullptr;  ///< null when nothing can be tried
};

/// What may be let go while the plan is made, since of a large film it takes more memory than the plan.
struct SpentEvidence {
  MediaScan& scan;
  ChunkChain& chain;
  IndexTemplate& index;
};

}  // namespace zelvo::salvage
