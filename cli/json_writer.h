/// JSON as every command writes it.
#pragma once

#include "platform/json_writer.h"

namespace zelvo::cli {

class JsonWriter final : public platform::JsonWriter {};

}  // namespace zelvo::cli
