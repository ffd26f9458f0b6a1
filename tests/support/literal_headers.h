/// The literal transcription of the validity check and of the header harvest. Sizes are in bytes; blocks are 1024 bytes
/// and numbered from 1.
#pragma once

#include <cstdint>

#include "platform/bytes.h"
#include "tests/support/literal_bytes.h"

namespace zelvo::tests::literal {

/// What both stages leave behind. Payloads keep what an earlier harvest stored when this one does not find them.
struct Headers {
  bool valid = false;
  bool db = false;

  platform::Bytes avihdata1;
  platform::Bytes avihdata2;
  platform::Bytes videocodec;
  platform::Bytes videoscaleratedata;
  platform::Bytes videoscaledata;
  std::uint64_t videostrfsize = 0;
  platform::Bytes videostrfdata;
  platform::Bytes audiocodec;
  platform::Bytes audioscaleratedata;
  platform::Bytes audioscaledata;
  std::uint64_t audiostrfsize = 0;
  platform::Bytes audiostrfdata;

  bool avihscaleratedatafound = false;
  bool videocodecfound = false;
  bool videostrfcodecfound = false;
  bool audiocodecfound = false;
  bool audiostrfcodecfound = false;

  [[nodiscard]] bool allFound() const {
    return avihscaleratedatafound && audiocodecfound && videocodecfound && videostrfcodecfound && audiostrfcodecfound;
  }
};

/// Sets `valid` and `db` and clears the five flags; answers `valid`.
bool fileValidityCheck(Input& input, std::uint64_t inputfilesize, Headers& headers);

/// Answers whether the file can be repaired.
bool harvestHeaders(Input& input, std::uint64_t inputfilesize, Headers& headers);

}  // namespace zelvo::tests::literal
