/// What the program answers to whoever started it.
#pragma once

namespace zelvo::cli {

enum class Exit {
  done = 0,
  unrepairable = 1,  ///< not an AVI file, or one that cannot be repaired; one that does not play throughout
  wrongUse = 2,      ///< the command line makes no sense
  ioFailed = 3,      ///< reading or writing failed, or was refused
  stopped = 130,     ///< stopped by a signal
};

/// How much an exit weighs where several inputs had one each: 3, 130, 1, 0, the heaviest first. Wrong use is found
/// before the first input is touched, so it weighs most.
[[nodiscard]] constexpr int weight(Exit exit) {
  switch (exit) {
    case Exit::wrongUse:
      return 4;
    case Exit::ioFailed:
      return 3;
    case Exit::stopped:
      return 2;
    case Exit::unrepairable:
      return 1;
    case Exit::done:
      break;
  }
  return 0;
}

[[nodiscard]] constexpr Exit worse(Exit one, Exit other) { return weight(one) < weight(other) ? other : one; }

}  // namespace zelvo::cli
