#include "update/web_address.h"

namespace zelvo::update {

std::string withSpacesEscaped(std::string_view address) {
  std::string escaped;
  for (const char character : address) {
    if (character == ' ') {
      escaped += "%20";
    } else {
      escaped += character;
    }
  }
  return escaped;
}

}  // namespace zelvo::update
