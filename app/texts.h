/// The application's constant texts, names, paths and addresses. Spelling included, they are what users, players and
/// installed files rely on.
#pragma once

#include <string_view>

#include "platform/path_mapper.h"

namespace zelvo::app::texts {

inline constexpr std::string_view kBundleIdentifier = "com.Zelvo.ZelvoAVIRepairI";

// ---- Keys of the bundle's property list ----
inline constexpr std::string_view kPlayerDownloadUrlKey = "playerDownloadUrl";

// ---- Fixed paths and addresses ----
inline constexpr platform::FixedPath kApplications = "/Applications";
inline constexpr platform::FixedPath kPlayerInApplications = "/Applications/MPlayerX.app";
inline constexpr std::string_view kPlayerInDownloads = "/Downloads/MPlayerX.app";  // after the home folder
inline constexpr std::string_view kPlayer = "MPlayerX.app";
/// Deliberate: three slashes after "http:". It is the address of a link's text and is never opened.
inline constexpr std::string_view kTipsLink =
    "http:///Applications/Zelvo%20AVI%20Repair.app/Contents/MacOS/Manual/Zelvo%20AVI%20Repair/HTML/"
    "tips_for_previewing.html";
/// Deliberate: ends in ".htm", unlike the link.
inline constexpr platform::FixedUrl kTipsPage =
    "file:///Applications/Zelvo%20AVI%20Repair/Zelvo%20AVI%20Repair.app/Contents/MacOS/Manual/Zelvo%20AVI%20Repair/"
    "HTML/tips_for_previewing.htm";
inline constexpr platform::FixedUrl kHelpPage1 =
    "file:///Applications/Zelvo%20AVI%20Repair/Zelvo%20AVI%20Repair.app/Contents/MacOS/Manual/Zelvo%20AVI%20Repair/"
    "HTML/index.html";
/// Deliberate: pages 2 and 3 look for the application directly below "/Applications".
inline constexpr platform::FixedUrl kHelpPage2 =
    "file:///Applications/Zelvo%20AVI%20Repair.app/Contents/MacOS/Manual/Zelvo%20AVI%20Repair/HTML/index.html";

// ---- Preview hint ----
inline constexpr std::string_view kClickHere = "click here";
inline constexpr std::string_view kLinkFont = "Lucida Grande";
inline constexpr std::string_view kHint1 = "If you are unable to hear the audio or see the video clearly, ";
inline constexpr std::string_view kHint2 = "please";
inline constexpr std::string_view kHint3 = "for more";
inline constexpr std::string_view kHint4 = "information.";

// ---- Pictures ----
inline constexpr std::string_view kRepairNormal = "repair_button_normal";
inline constexpr std::string_view kRepairHover = "repair_button_hover";
inline constexpr std::string_view kHomeNormal = "home-1";
inline constexpr std::string_view kHomeHover = "home-2";
inline constexpr std::string_view kHelpNormal = "help-1";
inline constexpr std::string_view kHelpHover = "help-2";
inline constexpr std::string_view kUpdateNormal = "update-1";
inline constexpr std::string_view kUpdateHover = "update-2";

// ---- Saving ----
inline constexpr std::string_view kSavePrompt = "Save";
inline constexpr std::string_view kProposedName = "Repaired";
inline constexpr std::string_view kSavedFile = "/repaired.avi";
inline constexpr std::string_view kOtherSavedFile = "/repaired.mov";

// ---- Alerts ----
inline constexpr const char* kOk = "OK";
inline constexpr const char* kQuitTitle = " ";
inline constexpr const char* kQuitMessage = "Do you want to quit application?";
inline constexpr const char* kQuitCancel = "Cancel";
inline constexpr const char* kQuitYes = "Yes";
inline constexpr const char* kNoSpaceTitle = "! Not enough free disk space";
inline constexpr const char* kNoSpaceMessage =
    "The volume you have chosen to save data does not have enough free space to save the repaired file.";
inline constexpr const char* kInformationTitle = "Information";
inline constexpr const char* kSameVolumeMessage =
    "Please ensure that you are not saving recovered data to the same volume from which you are recovering. Saving the "
    "recovered data to the same hard drive/ volume would result in permanent data loss. Do you want to continue?";
inline constexpr const char* kYes = "Yes";
inline constexpr const char* kNo = "No";

// ---- What the application says on its own ----
inline constexpr const char* kCannotBeChosenTitle = "This cannot be chosen";
inline constexpr const char* kNotAFilmMessage =
    "Only films whose names end in .avi, .divx or .xvid can be repaired here. Nothing was changed in your file.";
inline constexpr const char* kNoSuchFilmMessage = "There is no such film. It may have been moved, renamed or removed.";
inline constexpr std::string_view kInvalidTitle = "This is not an AVI film";
inline constexpr std::string_view kInvalidMessage =
    "The beginning of the file does not look like an AVI file, so there is nothing to repair. Nothing was changed in "
    "your "
    "file.";
inline constexpr std::string_view kGoneTitle = "This film is no longer there";
inline constexpr std::string_view kLinkTitle = "This is only a link to a film";
inline constexpr std::string_view kLinkMessage = "Please choose the film itself.";
inline constexpr std::string_view kUnreadableTitle = "This film cannot be read";
inline constexpr std::string_view kUnreadableMessage = "The system says: ";
inline constexpr std::string_view kNothingChanged = " Nothing was changed in your file.";
inline constexpr std::string_view kWaitsForOtherRun =
    "Waiting until the repair before this one has ended. Its last step cannot be cut short.";
inline constexpr std::string_view kWorkingFolder = "Working folder: ";
inline constexpr std::string_view kNoWorkingFolder = "There is no working folder that can be used.";
inline constexpr const char* kNoWorkingFolderTitle = "The working folder cannot be used";
inline constexpr std::string_view kNoWorkingFolderMessage =
    "A repaired film lies in a working folder until you save it, and none can be used. The last one tried was ";
inline constexpr const char* kSystemSays = "The system says: ";
inline constexpr std::string_view kNothingStarted = " Nothing was started, and nothing was changed in your file.";
inline constexpr const char* kChooseAnotherFolder = "Choose another\u2026";
inline constexpr const char* kUseFolder = "Use this folder";
inline constexpr const char* kFolderRefusedTitle = "This folder cannot be used";
inline constexpr const char* kFolderRefusedMessage =
    " cannot hold a repaired film until you save it, so nothing was changed. The system says: ";
inline constexpr const char* kCannotSaveThereTitle = "The film cannot be saved there";
inline constexpr const char* kNotAnsweringMessage =
    "The disk or server does not answer. Nothing was changed. Please try again when it is back, or choose another "
    "place.";
inline constexpr const char* kFinishingTitle = "Finishing the repaired file";
inline constexpr const char* kFinishingMessage = "The last part is still being written. This takes only a moment.";
inline constexpr const char* kFinishingCancel = "Cancel";
inline constexpr const char* kWriteFailedTitle = "The repaired file could not be written";
inline constexpr const char* kNoMemory = "There is not enough memory. Closing other programs helps.";
inline constexpr const char* kNoThread = "The system has no room for more work at once. Closing other programs helps.";
inline constexpr const char* kSaveNotBegun =
    " Nothing was saved, and the repaired file is still there: you can press Save again.";
inline constexpr std::string_view kSaveComplete = "The repaired file was saved as ";
inline constexpr std::string_view kSaveIncomplete = "The copy is incomplete: ";
inline constexpr std::string_view kSaveElsewhere = " Please save again, to another place.";
inline constexpr std::string_view kRepairAgain = " Please go back with Home and repair the film again.";
inline constexpr std::string_view kSavedTitle = "Saving is done";
inline constexpr std::string_view kSaveIncompleteTitle = "The film was not saved whole";
inline constexpr std::string_view kLastSaved = "Last saved";
inline constexpr std::string_view kLastNotSaved = "Not whole";
inline constexpr std::string_view kRebuiltFileGone = "the repaired file is no longer there.";
inline constexpr std::string_view kRebuiltFileUnreadable = " of the repaired file could not be read";
inline constexpr std::string_view kRebuiltFileShort = " of the repaired file are no longer there.";
inline constexpr std::string_view kTakingTheLastBytes = "The disk is taking in the last bytes\u2026";
inline constexpr const char* kWouldReplaceInput =
    "That would overwrite the damaged file itself. Please choose another name or folder.";

}  // namespace zelvo::app::texts
