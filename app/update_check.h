/// What the controller needs of the update check. The controller declares it, since it is the one that asks. // Decision 0069
#pragma once

#include "platform/elements.h"

namespace zelvo::app {

/// Thread: main.
class UpdateCheck {
 public:
  virtual ~UpdateCheck() = default;
  /// `checkForUpdateClicked:` asks for the published version and offers the update. `sender` is null at start-up, when
  /// nothing but a newer version is told. Returns when all that is done.
  virtual void checkForUpdateClicked(platform::Button* sender) = 0;
};

}  // namespace zelvo::app
