// zelvo-avi-probe: the child of the window's path probe. It is a program of its own since the window's takes a tenth of
// a second and more to be loaded.
#include <span>

#include "platform/linux/path_probe_child.h"

int main(int argc, char** argv) {
  const std::span<char* const> arguments(argv, static_cast<std::size_t>(argc));
  constexpr int kWrongUse = 2;
  if (!zelvo::platform::linux_::isProbeChild(arguments)) return kWrongUse;
  zelvo::platform::linux_::answerForPaths(arguments);
}
