// zelvo-avi-decoder: decodes what the repair wants to try, where it can do no harm. Started by the programs beside it,
// with a socket as standard input; of no use by itself.
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <exception>

#include "platform/linux/decoder_confinement.h"
#include "platform/linux/decoder_service.h"

int main() {
  constexpr int kWrongUse = 2;
  int kind = 0;
  socklen_t size = sizeof kind;
  if (::getsockopt(STDIN_FILENO, SOL_SOCKET, SO_TYPE, &kind, &size) != 0) return kWrongUse;
  try {
    zelvo::platform::linux_::serveDecoding(STDIN_FILENO, zelvo::platform::linux_::confine());
  } catch (const std::exception&) {
    ::_exit(EXIT_FAILURE);  // of memory, which is an answer too
  }
  ::_exit(EXIT_SUCCESS);  // nothing is left to be tidied up, and tidying may want what is not allowed
}
