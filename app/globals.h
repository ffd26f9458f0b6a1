/// What the controller's flows share process-wide, besides the engine's globals. Main thread only, unless said
/// otherwise.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zelvo::controls {
class ViewTransparent;
}

namespace zelvo::app {

/// Selects the scratch path of the next run: 1 the first of the pair, any other value the second.
extern std::uint8_t negvalue;
/// Full path that the user chose in the save panel; used as a folder.
extern std::string savepath;
/// Size of the file saved last, in MiB, rounded down.
extern std::uint64_t oSize;
/// Read by the update check. Nothing sets it, so it stays false.
extern bool scanIsRunning;
/// Overlay whose count (`controls::viewsOverlaidCountOf`) the update check reads. Nothing assigns it, so that is 0.
/// Borrowed.
extern controls::ViewTransparent* viewTransparentDummy;
/// Key of a tracking area's user information.
inline constexpr std::string_view kTrackerKey = "whichTracker";

/// Everything as it is when the program starts; the engine's globals are its own.
void resetGlobals();

}  // namespace zelvo::app
