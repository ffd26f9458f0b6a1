/// The self-drawn parts of the window's pages: which of its elements wait for a client, by what they are for. The
/// window makes the elements, the application has clients carried by them.
#pragma once

#include <vector>

#include "platform/panel_controls.h"
#include "platform/view.h"

namespace zelvo::platform {

struct HostedViews {
  ViewHost& content;  ///< lies under everything on the pages
  ViewHost& result;   ///< the framed area round the movie
  ViewHost& movie;
  std::vector<HostedButton> pageButtons;
};

}  // namespace zelvo::platform
