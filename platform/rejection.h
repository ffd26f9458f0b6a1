/// Why a film cannot be repaired, for the sheet that says so.
#pragma once

namespace zelvo::platform {

enum class Rejection {
  headerLost,    ///< the descriptions at the film's beginning are not all there
  unreadable,    ///< the same, after reads of the beginning had failed
  noSound,       ///< only the sound's description is missing
  uncompressed,  ///< the pictures' description is whole, and says that they are not compressed
  tooSmall,      ///< everything is there, but the file is 524,288 bytes or less
  stopped,       ///< a stop came before the beginning was read
};

/// Thread: any, as for the elements of elements.h.
class RejectionView {
 public:
  virtual ~RejectionView() = default;
  virtual void show(Rejection reason) = 0;
};

}  // namespace zelvo::platform
