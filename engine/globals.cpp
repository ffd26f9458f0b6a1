#include "engine/globals.h"

namespace zelvo::engine {

platform::Guarded<std::optional<std::string>> path;
platform::Relaxed<std::uint64_t> inputfilesize;
platform::Guarded<std::string> internalpath;
platform::Relaxed<bool> stopflag;
platform::Relaxed<bool> validitycheck1;
platform::Relaxed<bool> flag;
platform::Relaxed<std::uint64_t> globalsectorforsample;

void resetGlobals() {
  path.set(std::nullopt);
  inputfilesize = 0;
  internalpath.set("");
  stopflag = false;
  validitycheck1 = false;
  flag = false;
  globalsectorforsample = 0;
}

}  // namespace zelvo::engine
