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

// ---- Alerts, in English whoever reads them ----
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

// ---- What the application says on its own, in the language of whoever reads it ----
inline constexpr std::string_view kCannotBeChosenTitle = "This cannot be chosen";
inline constexpr std::string_view kNotAFilmMessage =
    "Only films whose names end in .avi, .divx or .xvid can be repaired here. Nothing was changed in your file.";
inline constexpr std::string_view kNoSuchFilmMessage =
    "There is no such film. It may have been moved, renamed or removed.";
inline constexpr std::string_view kInvalidTitle = "This is not an AVI film";
inline constexpr std::string_view kInvalidMessage =
    "The beginning of the file does not look like an AVI file, so there is nothing to repair. Nothing was changed in "
    "your file.";
inline constexpr std::string_view kGoneTitle = "This film is no longer there";
inline constexpr std::string_view kLinkTitle = "This is only a link to a film";
inline constexpr std::string_view kLinkMessage = "Please choose the film itself.";
inline constexpr std::string_view kLinkMessageWithTarget = "Please choose the film itself. It leads to %1.";
inline constexpr std::string_view kUnreadableTitle = "This film cannot be read";
inline constexpr std::string_view kSystemSays = "The system says: %1.";
/// After what else is said.
inline constexpr std::string_view kNothingChanged = "%1 Nothing was changed in your file.";
inline constexpr std::string_view kWaitsForOtherRun =
    "Waiting until the repair before this one has ended. Its last step cannot be cut short.";
inline constexpr std::string_view kWorkingFolder = "Working folder: %1 (%2)";
inline constexpr std::string_view kNoWorkingFolder = "There is no working folder that can be used.";
inline constexpr std::string_view kNoWorkingFolderTitle = "The working folder cannot be used";
/// The folder, what the system says of it, and one of the next two.
inline constexpr std::string_view kNoWorkingFolderMessage =
    "A repaired film lies in a working folder until you save it, and none can be used. The last one tried was %1. The "
    "system says: %2. To repair this film, %3. Nothing was started, and nothing was changed in your file.";
inline constexpr std::string_view kRoom = "%1 are free, about %2 are needed";
inline constexpr std::string_view kUnknownRoom = "about %1 are needed";
inline constexpr std::string_view kChooseAnotherFolder = "Choose another\u2026";
inline constexpr std::string_view kUseFolder = "Use this folder";
inline constexpr std::string_view kFolderRefusedTitle = "This folder cannot be used";
inline constexpr std::string_view kFolderRefusedMessage =
    "%1 cannot hold a repaired film until you save it, so nothing was changed. The system says: %2.";
inline constexpr std::string_view kCannotSaveThereTitle = "The film cannot be saved there";
inline constexpr std::string_view kNotAnsweringMessage =
    "The disk or server does not answer. Nothing was changed. Please try again when it is back, or choose another "
    "place.";
inline constexpr std::string_view kFinishingTitle = "Finishing the repaired file";
inline constexpr std::string_view kFinishingMessage = "The last part is still being written. This takes only a moment.";
inline constexpr std::string_view kCancel = "Cancel";
inline constexpr std::string_view kWriteFailedTitle = "The repaired file could not be written";
inline constexpr std::string_view kNoMemory = "There is not enough memory. Closing other programs helps.";
inline constexpr std::string_view kNoThread =
    "The system has no room for more work at once. Closing other programs helps.";
/// The cause, how much is free where, and how much the file takes.
inline constexpr std::string_view kRoomThere = "%1. %2 are free in %3.";
inline constexpr std::string_view kRoomThereAndNeeded = "%1. %2 are free in %3, and the repaired file takes %4.";
inline constexpr std::string_view kRepairNotWritten =
    "%1 Nothing was changed in your file, and it is still chosen: you can press Repair again.";
inline constexpr std::string_view kSaveNotBegun =
    "%1 Nothing was saved, and the repaired file is still there: you can press Save again.";
inline constexpr std::string_view kSaveComplete = "The repaired file was saved as %1.";
inline constexpr std::string_view kSaveIncomplete = "The copy is incomplete: %1";
inline constexpr std::string_view kSaveElsewhere = "%1 Please save again, to another place.";
inline constexpr std::string_view kProgramEnds = "the program was asked to end.";
inline constexpr std::string_view kRepairAgain = "%1 Please go back with Home and repair the film again.";
inline constexpr std::string_view kSavedTitle = "Saving is done";
inline constexpr std::string_view kSaveIncompleteTitle = "The film was not saved whole";
inline constexpr std::string_view kLastSaved = "Last saved";
inline constexpr std::string_view kLastNotSaved = "Not whole";
inline constexpr std::string_view kRebuiltFileGone = "the repaired file is no longer there.";
inline constexpr std::string_view kRebuiltFileUnreadable = "%1 of the repaired file could not be read: %2.";
inline constexpr std::string_view kRebuiltFileShort = "%1 of the repaired file are no longer there.";
inline constexpr std::string_view kCopied = "%1 of %2 copied";
inline constexpr std::string_view kTakingTheLastBytes = "The disk is taking in the last bytes\u2026";
inline constexpr std::string_view kWouldReplaceInput =
    "That would overwrite the damaged file itself. Please choose another name or folder.";
inline constexpr std::string_view kNameIsAFile = "A file of that name is there already. Please choose another name.";
inline constexpr std::string_view kReplaceSaved = "That folder already holds a file repaired.avi. Replace it?";

}  // namespace zelvo::app::texts
