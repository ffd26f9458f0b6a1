#include "platform/files.h"

#include <cerrno>

namespace zelvo::platform {

bool isNoRoom(const std::error_code& cause) {
  if (cause == std::errc::no_space_on_device) return true;
#ifdef EDQUOT  // the standard has no name for it
  return cause.value() == EDQUOT &&
         (cause.category() == std::system_category() || cause.category() == std::generic_category());
#else
  return false;
#endif
}

}  // namespace zelvo::platform
