/// What the deep repair's flow says. Each text is shown through a translator, and named by itself. "%1", "%2" stand for
/// names, sizes and sentences, "%n" for a number.
#pragma once

#include <string_view>

namespace zelvo::deep::texts {

// ---- Offers ----
inline constexpr std::string_view kRefusedOffer = "A deep repair may still bring %1 back.";
inline constexpr std::string_view kPartlyOffer = "A deep repair may bring back more of this film.";

// ---- Buttons of panels ----
inline constexpr std::string_view kOk = "OK";
inline constexpr std::string_view kCancel = "Cancel";
inline constexpr std::string_view kClose = "Close";
inline constexpr std::string_view kStay = "Stay here";
inline constexpr std::string_view kStopAndLeave = "Stop and leave";
inline constexpr std::string_view kLeave = "Leave";
inline constexpr std::string_view kSaveFirst = "Save\u2026";
inline constexpr std::string_view kDoNotSave = "Do not save";
inline constexpr std::string_view kPlay = "Play";
inline constexpr std::string_view kOpenFolder = "Open folder";
inline constexpr std::string_view kNotNow = "Not now";
inline constexpr std::string_view kChooseDonor = "Choose a film\u2026";

// ---- Why nothing came of a film ----
inline constexpr std::string_view kFailedTitle = "The deep repair did not come to its end";
inline constexpr std::string_view kNothingChanged = "Nothing was changed in your file.";
inline constexpr std::string_view kWasStopped = "It was stopped.";
inline constexpr std::string_view kProgramMissing =
    "The program zelvo-avi, which does the deep repair and lies beside this one, is missing. Installing Zelvo AVI "
    "Repair again brings it back.";
inline constexpr std::string_view kNotStarted = "The deep repair could not be started. The system says: %1.";
inline constexpr std::string_view kNoMemory = "There is not enough memory. Closing other programs helps.";
inline constexpr std::string_view kNoThread =
    "The system has no room for more work at once. Closing other programs helps.";
inline constexpr std::string_view kDied = "The program that worked on it ended without a word.";
inline constexpr std::string_view kDiedOfSignal =
    "The program that worked on it was ended before it was done (signal %1).";
inline constexpr std::string_view kFailed = "%1";
inline constexpr std::string_view kFailedWithoutReason = "%1 could not be read or written.";
inline constexpr std::string_view kResultGone = "What it wrote is no longer there.";
inline constexpr std::string_view kNoScratchTitle = "There is no place for the repaired film";
inline constexpr std::string_view kNoScratch =
    "A repaired film lies in a working folder until you save it, and none can be used. The last one tried was %1. The "
    "system says: %2.";
inline constexpr std::string_view kNotAnsweringTitle = "The film does not answer";
inline constexpr std::string_view kNotAnswering =
    "The disk or server does not answer. Nothing was changed. Please try again when it is back, or choose another "
    "place.";

// ---- Leaving ----
inline constexpr std::string_view kAtWorkTitle = "The deep repair is still at work";
inline constexpr std::string_view kAtWork = "When you leave, it is stopped, and nothing comes of it.";
inline constexpr std::string_view kUnsavedTitle = "The repaired film is not saved";
inline constexpr std::string_view kUnsaved = "When you leave without saving it, it is gone. Your damaged film stays.";
inline constexpr std::string_view kUndoneTitle = "Not all films are done";
inline constexpr std::string_view kUndone =
    "When you leave, those that are not done yet are left out. Films that are done stay where they were saved.";

// ---- Another film of the same camera ----
inline constexpr std::string_view kDonorTitle = "The header of this film is lost";
inline constexpr std::string_view kDonorQuestion =
    "The header says how pictures and sound are to be shown. Another film from the same camera, one that plays, has "
    "the same one and can lend it. It is not changed. Have you got such a film?";
inline constexpr std::string_view kDonorChooser = "Choose another film from the same camera";
inline constexpr std::string_view kDonorPrompt = "Use this film";

// ---- The result ----
inline constexpr std::string_view kPictures = "Pictures";
inline constexpr std::string_view kSound = "Sound";
inline constexpr std::string_view kText = "Text";
inline constexpr std::string_view kData = "Data";
inline constexpr std::string_view kHeader = "Header";
inline constexpr std::string_view kOwnHeader = "the film's own";
inline constexpr std::string_view kMainHeaderMade = "partly lost, and made again";
inline constexpr std::string_view kHeadersMade = "%1 are the film's own, %2 another film's, %3 made again";
inline constexpr std::string_view kChosen = "Chosen";
inline constexpr std::string_view kChosenField = "%1 %2; it might also be %3";
inline constexpr std::string_view kOtherFilm = "Other film";
inline constexpr std::string_view kDonorUseless = "its header cannot be that of this film, and was not used";
inline constexpr std::string_view kLeftOut = "Left out";
inline constexpr std::string_view kStreamsLeftOut = "%n stream(s) whose header is lost: nothing tells what they hold";
inline constexpr std::string_view kTransfer = "Transfer";
inline constexpr std::string_view kUnreadable = "Unreadable";
inline constexpr std::string_view kZerosThere = "%n byte(s) could not be read; zeros stand in their place";
inline constexpr std::string_view kDecoder = "Decoding";
inline constexpr std::string_view kDecoderMissing =
    "the program zelvo-avi-decoder, which could have found more, is missing or did not last";
inline constexpr std::string_view kWhy = "Why";
inline constexpr std::string_view kDamage = "Damage:";
inline constexpr std::string_view kMorePlaces = "and %n place(s) more";

// ---- The comparison ----
inline constexpr std::string_view kKeptPictures = "%n picture(s)";
inline constexpr std::string_view kKeptPieces = "%n piece(s)";
inline constexpr std::string_view kNothingKept = "nothing";
inline constexpr std::string_view kNotCompared = "What the normal repair would keep could not be found out.";
inline constexpr std::string_view kNormalRefuses = "The normal repair does not take this film.";
inline constexpr std::string_view kDeepKeepsMore = "The deep repair keeps more than the normal one.";
inline constexpr std::string_view kNormalKeepsMore =
    "The normal repair keeps more; it also takes what only looks like a part of the film.";
inline constexpr std::string_view kBothKeepAsMuch = "Both repairs keep the same.";

// ---- Saving ----
inline constexpr std::string_view kSaveTitle = "Save the repaired film";
inline constexpr std::string_view kSavePrompt = "Save";
inline constexpr std::string_view kSaveReport = "Save the report beside it";
inline constexpr std::string_view kWouldReplaceDamaged =
    "That would overwrite the damaged film itself. Please choose another name or folder.";
inline constexpr std::string_view kWouldReplaceFolder =
    "A folder of that name is there already. Please choose another name.";
inline constexpr std::string_view kNotSavedTitle = "The film was not saved";
inline constexpr std::string_view kCopied = "%1 of %2 copied";
inline constexpr std::string_view kTakingTheLastBytes = "The disk is taking in the last bytes\u2026";
inline constexpr std::string_view kNoRoom = "There is not enough room: the film takes %1, and %2 are free in %3.";
inline constexpr std::string_view kSourceGone = "The repaired film is no longer there, or not whole any more.";
inline constexpr std::string_view kRepairAgain = "Please go back with Home and repair the film again.";
inline constexpr std::string_view kSourceUnreadable = "The repaired film could not be read: %1.";
inline constexpr std::string_view kNameTaken = "Something of that name has come to be there.";
inline constexpr std::string_view kWriteFailed = "Writing failed: %1.";
inline constexpr std::string_view kSaveElsewhere =
    "Nothing was left behind, and the repaired film is still here: you can save it to another place.";
inline constexpr std::string_view kSavedTitle = "The film is saved";
inline constexpr std::string_view kSavedAs = "It was saved as %1.";
inline constexpr std::string_view kReportSavedAs = "The report lies beside it: %1.";
inline constexpr std::string_view kReportNotSaved = "The report could not be saved beside it: %1.";

// ---- Several films ----
inline constexpr std::string_view kFilmsTitle = "Choose films";
inline constexpr std::string_view kFilmsPrompt = "Add";
inline constexpr std::string_view kFolderTitle = "Choose the folder for the repaired films";
inline constexpr std::string_view kFolderPrompt = "Use this folder";
inline constexpr std::string_view kFolderRefusedTitle = "This folder cannot be used";
inline constexpr std::string_view kNoFolder = "%1 is not a folder that can be written to.";
inline constexpr std::string_view kAllDoneTitle = "All films are done";
inline constexpr std::string_view kFilmsRepaired = "%n film(s) repaired, in %1.";
inline constexpr std::string_view kFilmsNotRepaired = "Nothing could be made of %n film(s).";

}  // namespace zelvo::deep::texts
