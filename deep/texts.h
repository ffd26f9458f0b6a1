/// What the deep repair's flow says. Each text is shown through a translator, and named by itself. "%1", "%2" stand for
/// names, sizes and sentences, "%n" for a number.
#pragma once

#include <array>
#include <string_view>

#include "platform/translator.h"

namespace zelvo::deep::texts {

// ---- Offers ----
inline constexpr std::string_view kRefusedOffer = platform::translatable("A deep repair may still bring %1 back.");
inline constexpr std::string_view kPartlyOffer =
    platform::translatable("A deep repair may bring back more of this film.");

// ---- Buttons of panels ----
inline constexpr std::string_view kOk = platform::translatable("OK");
inline constexpr std::string_view kCancel = platform::translatable("Cancel");
inline constexpr std::string_view kClose = platform::translatable("Close");
inline constexpr std::string_view kStay = platform::translatable("Stay here");
inline constexpr std::string_view kStopAndLeave = platform::translatable("Stop and leave");
inline constexpr std::string_view kLeave = platform::translatable("Leave");
inline constexpr std::string_view kSaveFirst = platform::translatable("Save\u2026");
inline constexpr std::string_view kDoNotSave = platform::translatable("Do not save");
inline constexpr std::string_view kPlay = platform::translatable("Play");
inline constexpr std::string_view kOpenFolder = platform::translatable("Open folder");
inline constexpr std::string_view kNotNow = platform::translatable("Not now");
inline constexpr std::string_view kChooseDonor = platform::translatable("Choose a film\u2026");

// ---- Why nothing came of a film ----
inline constexpr std::string_view kFailedTitle = platform::translatable("The deep repair did not come to its end");
inline constexpr std::string_view kNothingChanged = platform::translatable("Nothing was changed in your file.");
inline constexpr std::string_view kWasStopped = platform::translatable("It was stopped.");
inline constexpr std::string_view kProgramMissing = platform::translatable(
    "The program zelvo-avi, which does the deep repair and lies beside this one, is missing. Installing Zelvo AVI "
    "Repair again brings it back.");
inline constexpr std::string_view kNotStarted =
    platform::translatable("The deep repair could not be started. The system says: %1.");
inline constexpr std::string_view kNoMemory =
    platform::translatable("There is not enough memory. Closing other programs helps.");
inline constexpr std::string_view kNoThread =
    platform::translatable("The system has no room for more work at once. Closing other programs helps.");
inline constexpr std::string_view kDied = platform::translatable("The program that worked on it ended without a word.");
inline constexpr std::string_view kDiedOfSignal =
    platform::translatable("The program that worked on it was ended before it was done (signal %1).");
inline constexpr std::string_view kFailedWithoutReason = platform::translatable("%1 could not be read or written.");
inline constexpr std::string_view kReason = platform::translatable("The reason: %1");
inline constexpr std::string_view kFilmGone = platform::translatable("%1 is not there any more.");
inline constexpr std::string_view kResultGone =
    platform::translatable("What it wrote is not there, or cannot be read.");
inline constexpr std::string_view kNoScratchTitle = platform::translatable("There is no place for the repaired film");
inline constexpr std::string_view kNoScratch = platform::translatable(
    "A repaired film lies in a working folder until you save it, and none can be used. The last one tried was %1. The "
    "system says: %2.");
inline constexpr std::string_view kNotAnsweringTitle = platform::translatable("The film does not answer");
inline constexpr std::string_view kNotAnswering = platform::translatable(
    "The disk or server does not answer. Nothing was changed. Please try again when it is back, or choose another "
    "place.");

// ---- At work: what the program calls its stages ----
inline constexpr std::array kStages = {
    platform::translatable("opening"),   platform::translatable("reading headers"),
    platform::translatable("searching"), platform::translatable("weighing what was found"),
    platform::translatable("writing"),   platform::translatable("waiting for the disk"),
};

// ---- Leaving ----
inline constexpr std::string_view kAtWorkTitle = platform::translatable("The deep repair is still at work");
inline constexpr std::string_view kAtWork =
    platform::translatable("When you leave, it is stopped, and nothing comes of it.");
inline constexpr std::string_view kUnsavedTitle = platform::translatable("The repaired film is not saved");
inline constexpr std::string_view kUnsaved =
    platform::translatable("When you leave without saving it, it is gone. Your damaged film stays.");
inline constexpr std::string_view kUndoneTitle = platform::translatable("Not all films are done");
inline constexpr std::string_view kUndone = platform::translatable(
    "When you leave, those that are not done yet are left out. Films that are done stay where they were saved.");

// ---- Another film of the same camera ----
inline constexpr std::string_view kDonorTitle = platform::translatable("The header of this film is lost");
inline constexpr std::string_view kDonorQuestion = platform::translatable(
    "The header says how pictures and sound are to be shown. Another film from the same camera, one that plays, has "
    "the same one and can lend it. It is not changed. Have you got such a film?");
inline constexpr std::string_view kDonorChooser = platform::translatable("Choose another film from the same camera");
inline constexpr std::string_view kDonorPrompt = platform::translatable("Use this film");

// ---- The result ----
inline constexpr std::string_view kPictures = platform::translatable("Pictures");
inline constexpr std::string_view kSound = platform::translatable("Sound");
inline constexpr std::string_view kText = platform::translatable("Text");
inline constexpr std::string_view kData = platform::translatable("Data");
inline constexpr std::string_view kHeader = platform::translatable("Header");
inline constexpr std::string_view kOwnHeader = platform::translatable("the film's own");
inline constexpr std::string_view kMainHeaderMade = platform::translatable("partly lost, and made again");
/// Joined by semicolons: of how many streams the header is what.
inline constexpr std::string_view kHeadersOwn = platform::translatable("the film's own: %1");
inline constexpr std::string_view kHeadersGiven = platform::translatable("another film's: %1");
inline constexpr std::string_view kHeadersMade = platform::translatable("made again: %1");
inline constexpr std::string_view kChosen = platform::translatable("Chosen");
inline constexpr std::string_view kChosenField = platform::translatable("%1 %2; it might also be %3");
/// What a header tells, and had to be found.
inline constexpr std::array kFields = {
    platform::translatable("codec"),       platform::translatable("size"),     platform::translatable("frame rate"),
    platform::translatable("sample rate"), platform::translatable("channels"), platform::translatable("bits"),
};
inline constexpr std::string_view kOtherFilm = platform::translatable("Other film");
inline constexpr std::string_view kDonorUseless =
    platform::translatable("its header cannot be that of this film, and was not used");
inline constexpr std::string_view kLeftOut = platform::translatable("Left out");
inline constexpr std::string_view kStreamsLeftOut =
    platform::translatable("%n stream(s) whose header is lost: nothing tells what they hold");
inline constexpr std::string_view kChunksLeftOut =
    platform::translatable("%n chunk(s) more than are kept of a film of this size");
inline constexpr std::string_view kTransfer = platform::translatable("Transfer");
inline constexpr std::string_view kReturnsLeftOut =
    platform::translatable("sent as if it were text, which put %n byte(s) in; they are left out");
inline constexpr std::string_view kUnreadable = platform::translatable("Unreadable");
inline constexpr std::string_view kZerosThere =
    platform::translatable("%n byte(s) could not be read; zeros stand in their place");
inline constexpr std::string_view kDecoder = platform::translatable("Decoding");
inline constexpr std::string_view kDecoderMissing =
    platform::translatable("the program zelvo-avi-decoder, which could have found more, is missing or did not last");
inline constexpr std::string_view kWhy = platform::translatable("Why");
inline constexpr std::string_view kDamage = platform::translatable("Damage:");
inline constexpr std::string_view kMorePlaces = platform::translatable("and %n place(s) more");

// ---- The comparison ----
inline constexpr std::string_view kKeptPictures = platform::translatable("%n picture(s)");
inline constexpr std::string_view kKeptPieces = platform::translatable("%n piece(s)");
inline constexpr std::string_view kNothingKept = platform::translatable("nothing");
inline constexpr std::string_view kNotCompared =
    platform::translatable("What the normal repair would keep could not be found out.");
inline constexpr std::string_view kNormalRefuses = platform::translatable("The normal repair does not take this film.");
inline constexpr std::string_view kDeepKeepsMore =
    platform::translatable("The deep repair keeps more than the normal one.");
inline constexpr std::string_view kNormalKeepsMore =
    platform::translatable("The normal repair keeps more; it also takes what only looks like a part of the film.");
inline constexpr std::string_view kBothKeepAsMuch = platform::translatable("Both repairs keep the same.");

// ---- Saving ----
inline constexpr std::string_view kSaveTitle = platform::translatable("Save the repaired film");
inline constexpr std::string_view kSavePrompt = platform::translatable("Save");
inline constexpr std::string_view kSaveReport = platform::translatable("Save the report beside it");
inline constexpr std::string_view kWouldReplaceDamaged =
    platform::translatable("That would overwrite the damaged film itself. Please choose another name or folder.");
inline constexpr std::string_view kWouldReplaceFolder =
    platform::translatable("A folder of that name is there already. Please choose another name.");
inline constexpr std::string_view kNotSavedTitle = platform::translatable("The film was not saved");
inline constexpr std::string_view kCopied = platform::translatable("%1 of %2 copied");
inline constexpr std::string_view kTakingTheLastBytes =
    platform::translatable("The disk is taking in the last bytes\u2026");
inline constexpr std::string_view kNoRoom =
    platform::translatable("There is not enough room: the film takes %1, and %2 are free in %3.");
inline constexpr std::string_view kSourceGone =
    platform::translatable("The repaired film is no longer there, or not whole any more.");
inline constexpr std::string_view kRepairAgain =
    platform::translatable("Please go back with Home and repair the film again.");
inline constexpr std::string_view kSourceUnreadable =
    platform::translatable("The repaired film could not be read: %1.");
inline constexpr std::string_view kNameTaken = platform::translatable("Something of that name has come to be there.");
inline constexpr std::string_view kWriteFailed = platform::translatable("Writing failed: %1.");
inline constexpr std::string_view kSaveElsewhere = platform::translatable(
    "Nothing was left behind, and the repaired film is still here: you can save it to another place.");
inline constexpr std::string_view kSavedTitle = platform::translatable("The film is saved");
inline constexpr std::string_view kSavedAs = platform::translatable("It was saved as %1.");
inline constexpr std::string_view kReportSavedAs = platform::translatable("The report lies beside it: %1.");
inline constexpr std::string_view kReportNotSaved =
    platform::translatable("The report could not be saved beside it: %1.");

// ---- Several films ----
inline constexpr std::string_view kFilmsTitle = platform::translatable("Choose films");
inline constexpr std::string_view kFilmsPrompt = platform::translatable("Add");
inline constexpr std::string_view kFolderTitle = platform::translatable("Choose the folder for the repaired films");
inline constexpr std::string_view kFolderPrompt = platform::translatable("Use this folder");
inline constexpr std::string_view kFolderRefusedTitle = platform::translatable("This folder cannot be used");
inline constexpr std::string_view kNoFolder = platform::translatable("%1 is not a folder that can be written to.");
inline constexpr std::string_view kAllDoneTitle = platform::translatable("All films are done");
inline constexpr std::string_view kFilmsRepaired = platform::translatable("%n film(s) repaired, in %1.");
inline constexpr std::string_view kFilmsNotRepaired = platform::translatable("Nothing could be made of %n film(s).");

}  // namespace zelvo::deep::texts
