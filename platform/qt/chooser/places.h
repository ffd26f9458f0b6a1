/// Where people keep their films: the places that a chooser offers by name.
#pragma once

#include <QString>
#include <string>
#include <string_view>
#include <vector>

namespace zelvo::platform::qt {

struct Place {
  QString name;
  std::string folder;
  bool isDisk = false;
};

/// Home, the usual folders in it that exist, each disk or card that is attached, and the whole computer.
[[nodiscard]] std::vector<Place> places();

/// Mount points of `mountTable` (in the form of /proc/self/mounts) at which desktops attach disks and cards.
[[nodiscard]] std::vector<std::string> attachedDisks(std::string_view mountTable);

/// The user's folder for videos where there is one, else the home folder.
[[nodiscard]] std::string videosOrHome();

}  // namespace zelvo::platform::qt
