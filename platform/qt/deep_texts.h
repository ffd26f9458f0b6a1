/// What the window says of the deep repair by itself. What the flow says comes from there.
#pragma once

#include <QString>

#include "platform/qt/language.h"

namespace zelvo::platform::qt::texts {

inline QString deepRepair() { return translated("Deep repair"); }

// ---- What leads to it ----
inline QString deepRepairTip() {
  return translated("Looks at every byte of the film, for those that Repair cannot mend");
}
inline QString addFilms() { return translated("Add films\u2026"); }
inline QString addFilmsTip() { return translated("Deep repair of several films, one after the other"); }
inline QString tryDeepRepair() { return translated("Try a deep repair"); }

// ---- A run ----
inline QString runHeadline() { return translated("Deep repair of your film"); }
inline QString runExplanation() {
  return translated("Every byte is looked at, so this takes longer than a repair. Your file is only read.");
}
inline QString starting() { return translated("Starting\u2026"); }
inline QString doneOf(const QString& done, const QString& all) { return translated("%1 of %2").arg(done, all); }
inline QString timeLeft(const QString& time) { return translated("about %1 left").arg(time); }

// ---- A result ----
inline QString losses() { return translated("What happened where"); }
inline QString lossesLeftOut(std::uint64_t count) { return counted("%n more are told in the report.", count); }
inline QString filmPreview() { return translated("The repaired film"); }
inline QString details() { return translated("Details"); }
inline QString saveFilm() { return translated("Save\u2026"); }
inline QString copyReport() { return translated("Copy report"); }
inline QString compare() { return translated("Compare"); }
inline QString compareTip() { return translated("With what the normal repair keeps of the same film"); }
inline QString useDonor() { return translated("Use a film of the same camera\u2026"); }
inline QString comparison() { return translated("Normal and deep repair"); }
inline QString normalRepair() { return translated("Normal repair"); }

// ---- Several films ----
inline QString severalFilms() { return translated("Several films"); }
inline QString filmsHeadline() { return translated("Deep repair of several films"); }
inline QString filmsExplanation() { return translated("One is repaired after the other. Your files are only read."); }
inline QString filmsTable() { return translated("Films to be repaired"); }
inline QString noFilms() { return translated("No films yet. Add some to repair them one after the other."); }
inline QString columnFilm() { return translated("Film"); }
inline QString columnState() { return translated("State"); }
inline QString columnResult() { return translated("Result"); }
inline QString columnProgress() { return translated("Progress"); }
inline QString waiting() { return translated("Waiting"); }
inline QString working() { return translated("Working"); }
inline QString done() { return translated("Done"); }
inline QString failed() { return translated("Failed"); }
inline QString stopped() { return translated("Stopped"); }
inline QString verdictClean() { return translated("Nothing was wrong"); }
inline QString verdictRepaired() { return translated("Nothing is lost"); }
inline QString verdictPartial() { return translated("Something is lost"); }
inline QString verdictHopeless() { return translated("Nothing could be brought back"); }
inline QString showResult() { return translated("Click to see the result"); }
inline QString takeOut() { return translated("Take it out of the list"); }
inline QString savedInto() { return translated("Saved into"); }
inline QString noFolderYet() { return translated("No folder chosen yet"); }
inline QString changeFolder() { return translated("Change\u2026"); }
inline QString start() { return translated("Start"); }
inline QString percent(int percent) { return translated("%1 %").arg(percent); }

// ---- The sheet of a save ----
inline QString savingFilmTitle() { return translated("Saving your film"); }
inline QString savingFilmMessage() { return translated("The repaired film is copied to where you want it."); }

// ---- Choosers ----
inline QString selectSeveral() { return translated("Hold Ctrl or Shift to select several."); }
inline QString replaceFile(const QString& name) {
  return translated("There is a file \u201c%1\u201d already. Replacing it deletes what it holds.").arg(name);
}
inline QString nameForFile() { return translated("That is a folder. Now type a name for the file."); }
inline QString filmsChosen(std::size_t count) { return counted("%n film(s) chosen", count); }

}  // namespace zelvo::platform::qt::texts
