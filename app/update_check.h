/// What the controller needs of the update check: the operations that it passes on under its own names.
#pragma once

#include "update/update_operations.h"

namespace zelvo::app {

using UpdateCheck = update::UpdateOperations;

}  // namespace zelvo::app
