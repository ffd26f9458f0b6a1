/// What the window says of the deep repair by itself. What the flow says comes from there.
#pragma once

#include <QString>

namespace zelvo::platform::qt::texts {

inline QString deepRepair() { return QStringLiteral("Deep repair"); }

// ---- What leads to it ----
inline QString deepRepairTip() {
  return QStringLiteral("Looks at every byte of the film, for those that Repair cannot mend");
}
inline QString addFilms() { return QStringLiteral("Add films\u2026"); }
inline QString addFilmsTip() { return QStringLiteral("Deep repair of several films, one after the other"); }
inline QString tryDeepRepair() { return QStringLiteral("Try a deep repair"); }

// ---- A run ----
inline QString runHeadline() { return QStringLiteral("Deep repair of your film"); }
inline QString runExplanation() {
  return QStringLiteral("Every byte is looked at, so this takes longer than a repair. Your file is only read.");
}
inline QString starting() { return QStringLiteral("Starting\u2026"); }
inline QString doneOf(const QString& done, const QString& all) { return QStringLiteral("%1 of %2").arg(done, all); }
inline QString timeLeft(const QString& time) { return QStringLiteral("about %1 left").arg(time); }

// ---- A result ----
inline QString losses() { return QStringLiteral("What happened where"); }
inline QString lossesLeftOut(std::uint64_t count) {
  return QStringLiteral("%L1 more are told in the report.").arg(count);
}
inline QString filmPreview() { return QStringLiteral("The repaired film"); }
inline QString details() { return QStringLiteral("Details"); }
inline QString saveFilm() { return QStringLiteral("Save\u2026"); }
inline QString copyReport() { return QStringLiteral("Copy report"); }
inline QString compare() { return QStringLiteral("Compare"); }
inline QString compareTip() { return QStringLiteral("With what the normal repair keeps of the same film"); }
inline QString useDonor() { return QStringLiteral("Use a film of the same camera\u2026"); }
inline QString comparison() { return QStringLiteral("Normal and deep repair"); }
inline QString normalRepair() { return QStringLiteral("Normal repair"); }

// ---- Several films ----
inline QString severalFilms() { return QStringLiteral("Several films"); }
inline QString filmsHeadline() { return QStringLiteral("Deep repair of several films"); }
inline QString filmsExplanation() {
  return QStringLiteral("One is repaired after the other. Your files are only read.");
}
inline QString filmsTable() { return QStringLiteral("Films to be repaired"); }
inline QString noFilms() { return QStringLiteral("No films yet. Add some to repair them one after the other."); }
inline QString columnFilm() { return QStringLiteral("Film"); }
inline QString columnState() { return QStringLiteral("State"); }
inline QString columnResult() { return QStringLiteral("Result"); }
inline QString columnProgress() { return QStringLiteral("Progress"); }
inline QString waiting() { return QStringLiteral("Waiting"); }
inline QString working() { return QStringLiteral("Working"); }
inline QString done() { return QStringLiteral("Done"); }
inline QString failed() { return QStringLiteral("Failed"); }
inline QString stopped() { return QStringLiteral("Stopped"); }
inline QString verdictClean() { return QStringLiteral("Nothing was wrong"); }
inline QString verdictRepaired() { return QStringLiteral("Nothing is lost"); }
inline QString verdictPartial() { return QStringLiteral("Something is lost"); }
inline QString verdictHopeless() { return QStringLiteral("Nothing could be brought back"); }
inline QString showResult() { return QStringLiteral("Click to see the result"); }
inline QString takeOut() { return QStringLiteral("Take it out of the list"); }
inline QString savedInto() { return QStringLiteral("Saved into"); }
inline QString noFolderYet() { return QStringLiteral("No folder chosen yet"); }
inline QString changeFolder() { return QStringLiteral("Change\u2026"); }
inline QString start() { return QStringLiteral("Start"); }
inline QString percent(int percent) { return QStringLiteral("%1 %").arg(percent); }

// ---- The sheet of a save ----
inline QString savingFilmTitle() { return QStringLiteral("Saving your film"); }
inline QString savingFilmMessage() { return QStringLiteral("The repaired film is copied to where you want it."); }

// ---- Choosers ----
inline QString selectSeveral() { return QStringLiteral("Hold Ctrl or Shift to select several."); }
inline QString replaceFile(const QString& name) {
  return QStringLiteral("There is a file \u201c%1\u201d already. Replacing it deletes what it holds.").arg(name);
}
inline QString nameForFile() { return QStringLiteral("That is a folder. Now type a name for the file."); }
inline QString filmsChosen(int count) { return QStringLiteral("%L1 films chosen").arg(count); }

}  // namespace zelvo::platform::qt::texts
