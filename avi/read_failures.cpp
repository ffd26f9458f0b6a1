#include "avi/read_failures.h"

namespace zelvo::avi {

void ReadFailures::add(const ReadFailures& later) {
  if (count == 0) {
    firstOffset = later.firstOffset;
    firstCause = later.firstCause;
  }
  count += later.count;
}

}  // namespace zelvo::avi
