/// A plain copy of a repaired film to where the user wants it. It is written under a hidden name and gets its own when
/// it lies whole on its medium. Sizes are in bytes.
#pragma once

#include <cstdint>
#include <string>
#include <system_error>

#include "deep/deep_services.h"
#include "platform/relaxed.h"

namespace zelvo::deep {

struct CopyOrder {
  std::string from;
  std::string to;
  bool mayReplace = false;  ///< a file that bears the name gives way
  std::string damaged;      ///< the film that is never replaced
  std::uint64_t size = 0;   ///< of the film, as it was written
};

/// What is shared by who copies and who looks. Thread: any.
struct CopyProgress {
  platform::Relaxed<std::uint64_t> done;
  platform::Relaxed<std::uint64_t> all;
  platform::Relaxed<bool> isFlushing;
  platform::Relaxed<bool> isStopped;
};

struct CopyEnd {
  enum class Kind {
    done,
    stopped,
    noRoom,       ///< `needed` and `free`
    sourceGone,   ///< the repaired film is not there any more, or not whole
    unreadable,   ///< `cause`
    nameTaken,    ///< something bears the name by now
    isDamaged,    ///< the name leads to the damaged film
    writeFailed,  ///< `cause`
  };
  Kind kind = Kind::done;
  std::error_code cause = {};
  std::uint64_t needed = 0;
  std::uint64_t free = 0;
};

/// Nothing of it is left where it does not come to its end. `moved` is told now and then.
/// Thread: any.
[[nodiscard]] CopyEnd copyFilm(const DeepServices& services, const CopyOrder& order, CopyProgress& progress,
                               const std::function<void()>& moved);

}  // namespace zelvo::deep
