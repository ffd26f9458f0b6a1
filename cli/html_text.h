/// Text from outside in a page.
#pragma once

#include <string>
#include <string_view>

namespace zelvo::cli {

/// As `printable` shows it, with what a page would take for its own escaped; also good inside double quotes.
[[nodiscard]] std::string htmlText(std::string_view text);

}  // namespace zelvo::cli
