#include "avi/chunk_run.h"

namespace zelvo::avi {

std::uint64_t ChunkRun::heldBy(std::uint64_t fileSize) const {
  std::uint64_t sum = 0;
  for (std::size_t chunk = 0; chunk < count(); ++chunk) sum += heldBy(fileSize, chunk);
  return sum;
}

}  // namespace zelvo::avi
