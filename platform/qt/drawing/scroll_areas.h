/// Scroll areas as a screen reader sees them.
/// Thread: main.
#pragma once

namespace zelvo::platform::qt {

/// From now on a scroll area tells a screen reader nothing of a child that it no longer has. The toolkit's own looks up
/// whatever number it is asked for, and a scroll bar may have gone since the reader was told how many there are: the
/// program ended there.
void installScrollAreaAccessibility();

}  // namespace zelvo::platform::qt
