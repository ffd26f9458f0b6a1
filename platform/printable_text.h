/// Text from outside (names of files, labels of disks, what a file's headers say) on its way to a terminal. Such text
/// must neither move the cursor nor change the order in which a line is read.
/// Decision: command-line, Names cannot steer a terminal
#pragma once

#include <string>
#include <string_view>

namespace zelvo::platform {

/// Whether a terminal would obey the character: a control character (U+0000 to U+001F, U+007F to U+009F) or one that
/// sets the direction of what follows (U+061C, U+200E, U+200F, U+202A to U+202E, U+2066 to U+2069).
/// Thread: any.
[[nodiscard]] bool steersTerminal(char32_t character);

/// The text as UTF-8 without any such character, line ends included: below U+0080 they become \xNN, from there on
/// \uNNNN, and a byte that no character can be made of becomes \xNN too. Everything else stays as it is, a backslash
/// too; so what has been made printable once stays the same.
/// Thread: any.
[[nodiscard]] std::string printableText(std::string_view text);

}  // namespace zelvo::platform
