#include "cli/html_text.h"

#include "cli/shown_text.h"

namespace zelvo::cli {

std::string htmlText(std::string_view text) {
  std::string out;
  for (const char c : printable(text)) {
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      default:
        out += c;
    }
  }
  return out;
}

}  // namespace zelvo::cli
