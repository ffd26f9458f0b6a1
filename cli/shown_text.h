/// Names, sizes and times as a person reads them on a terminal.
#pragma once

#include <string>
#include <string_view>

#include "avi/fourcc.h"
#include "platform/shown_text.h"

namespace zelvo::cli {

using platform::counted;
using platform::fixedPoint;
using platform::shortened;
using platform::shownHex;
using platform::shownNumber;
using platform::shownSeconds;
using platform::shownSize;
using platform::shownTime;

/// Text from outside (a path, a code of the file) as `platform::printableText` makes it, so that it stays on its line
/// and cannot steer the terminal.
[[nodiscard]] std::string printable(std::string_view text);

/// The four characters; a byte that is not printable ASCII is shown as \xNN.
[[nodiscard]] std::string shownCode(avi::FourCC code);

/// A line of what a command tells: "  Label:    text" and its end.
[[nodiscard]] std::string labelledLine(std::string_view label, const std::string& text);

/// A path between quotes that a shell takes back as it is.
[[nodiscard]] std::string quotedForShell(std::string_view path);

}  // namespace zelvo::cli
