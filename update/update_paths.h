/// Constant names, paths and texts of the update check. Spelling included, the updater and installed files rely on
/// them.
#pragma once

#include <array>
#include <string_view>

#include "platform/path_mapper.h"

namespace zelvo::update::paths {

// ---- Keys of property lists ----
/// Of the application's own list: where the published one is.
inline constexpr std::string_view kCloudPlistUrlKey = "cloudPlistUrl";
/// Of both lists.
inline constexpr std::string_view kVersionKey = "CFBundleShortVersionString";

// ---- Below the bundle path ----
inline constexpr std::string_view kOwnList = "/Contents/Info.plist";
inline constexpr std::string_view kCarriedUpdater = "/Contents/MacOS/.autoUpd.app";

// ---- Fixed paths ----
/// Launched when an update was found and the user agreed.
inline constexpr platform::FixedPath kUpdater =
    "/Applications/Zelvo AVI Repair/.autoUpd.app/Contents/MacOS/Auto Updator.app";
/// Launched when the user asked and no update was found.
inline constexpr platform::FixedPath kUpdaterForNoUpdate = "/Applications/.autoUpd.app";
/// Left after by the updater.
inline constexpr platform::FixedPath kUpdatedMarker = "/Applications/Zelvo AVI Repair/.updated.txt";

// ---- Beside and above the bundle ----
/// In the folder that holds the bundle.
inline constexpr std::string_view kUpdaterCopy = "/.autoUpd.app";
/// Deliberate: four components up from the bundle, where `update` looks and the leftovers are removed; another place
/// than that of the other updater paths.
inline constexpr int kLevelsUp = 4;
inline constexpr std::string_view kUpdaterAbove = "/.autoUpd.app/Contents/MacOS/Auto Updator.app";
/// In the order of their removal.
inline constexpr std::array<std::string_view, 5> kLeftovers = {"/Orlin Salvage Auto Updater.app", "/Orlin Salvage.zip",
                                                               "/SoftwareOrlin", "/location.dat", "/URLs.dat"};

// ---- The question ----
inline constexpr const char* kTitle = "A newer version of Zelvo AVI Repair is available";
inline constexpr const char* kMessage = "Do you want to update";
inline constexpr const char* kYes = "YES";
inline constexpr const char* kNo = "NO";
/// Deliberate: a third title that is there and empty.
inline constexpr const char* kThird = "";

}  // namespace zelvo::update::paths
