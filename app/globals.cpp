#include "app/globals.h"

namespace zelvo::app {

std::uint8_t negvalue = 0;
std::string savepath;
std::uint64_t oSize = 0;
bool scanIsRunning = false;
controls::ViewTransparent* viewTransparentDummy = nullptr;

void resetGlobals() {
  negvalue = 0;
  savepath.clear();
  oSize = 0;
  scanIsRunning = false;
  viewTransparentDummy = nullptr;
}

}  // namespace zelvo::app
