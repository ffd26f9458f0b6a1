/// What the window says by itself: the texts of its pages and panels. What the logic says comes from there.
#pragma once

#include <QString>

namespace zelvo::platform::qt::texts {

inline QString productName() { return QStringLiteral("Zelvo AVI Repair"); }

// ---- Every page ----
inline QString home() { return QStringLiteral("Home"); }
inline QString help() { return QStringLiteral("Help"); }
inline QString update() { return QStringLiteral("Look for an update"); }
inline QString noUpdateAddress() {
  return QStringLiteral("This version does not know where to look. Updates come from where it was installed from.");
}
inline QString noUpdater() {
  return QStringLiteral("The updater is not installed. Updates come from where the program was installed from.");
}
inline QString stepName(int step) {
  if (step == 0) return QStringLiteral("Choose");
  return step == 1 ? QStringLiteral("Repair") : QStringLiteral("Result");
}
inline QString stepDescription(int step) {
  return QStringLiteral("Step %1 of 3: %2").arg(step + 1).arg(stepName(step));
}

// ---- Page 1 ----
inline QString chooseHeadline() { return QStringLiteral("Repair a film that no longer plays"); }
inline QString chooseExplanation() {
  return QStringLiteral("Choose an AVI file. It is only read: nothing is changed in your file.");
}
inline QString dropHere() { return QStringLiteral("Drop an AVI file here"); }
inline QString chooseFile() { return QStringLiteral("Choose a file\u2026"); }
inline QString chooseAnother() { return QStringLiteral("Choose another\u2026"); }
inline QString noFileYet() { return QStringLiteral("No file chosen yet"); }
inline QString lastChosen(const QString& path) {
  return path.isEmpty() ? QString() : QStringLiteral("Last chosen: ") + path;
}
inline QString repair() { return QStringLiteral("Repair"); }
inline QString changeWorkingFolder() { return QStringLiteral("Change\u2026"); }

// ---- Page 2 ----
inline QString repairHeadline() { return QStringLiteral("Repairing your film"); }
inline QString repairExplanation() {
  return QStringLiteral("This can take a few minutes for a long film. You can go on working meanwhile.");
}
inline QString stop() { return QStringLiteral("Stop"); }

// ---- Page 3 ----
inline QString video() { return QStringLiteral("Video"); }
inline QString audio() { return QStringLiteral("Audio"); }
inline QString pictures() { return QStringLiteral("Pictures"); }
inline QString sound() { return QStringLiteral("Sound"); }
inline QString kept() { return QStringLiteral("Kept"); }
inline QString lastSaved() { return QStringLiteral("Last saved"); }
inline QString nothing() { return QStringLiteral("\u2013"); }
/// A codec's own name; many files have none, or one that cannot be read.
inline QString codec(const QString& name) {
  QString shown;
  for (const QChar one : name) {
    if (one.isPrint()) shown += one;
  }
  shown = shown.trimmed();
  return shown.isEmpty() ? nothing() : shown;
}
inline QString mebibytes(const QString& number) {
  return number.isEmpty() || number == QLatin1String("0") ? nothing() : number;
}
/// Stands behind that number.
inline QString mebibytesUnit() { return QStringLiteral("MiB"); }
inline QString mebibytesTip() { return QStringLiteral("1 MiB is 1,048,576 bytes"); }
/// The window's title while something with a per cent goes on.
inline QString titleWithPercent(int percent) { return QStringLiteral("%1 % \u2013 ").arg(percent) + productName(); }
inline QString preview() { return QStringLiteral("Preview"); }
inline QString stopPreview() { return QStringLiteral("Stop preview"); }
inline QString save() { return QStringLiteral("Save\u2026"); }
inline QString tip() { return QStringLiteral("Tip:"); }
inline QString clickHere() { return QStringLiteral("click here"); }

// ---- Why something cannot be dropped ----
inline QString answerFirst() { return QStringLiteral("Please answer the message first."); }
inline QString stillRepairing() {
  return QStringLiteral("A film is being repaired. Another one can be dropped on the first page.");
}
inline QString homeFirst() { return QStringLiteral("Press Home first: a film is dropped on the first page."); }
inline QString oneAtATime() { return QStringLiteral("One film at a time, please."); }
inline QString onlyFiles() { return QStringLiteral("Only a file of this computer can be dropped here."); }

// ---- Panels ----
inline QString ok() { return QStringLiteral("OK"); }
inline QString noFilmTitle() { return QStringLiteral("No film chosen yet"); }
inline QString noFilmMessage() {
  return QStringLiteral("First choose the AVI file that you want to repair, or drop it on the window.");
}
inline QString stopRepairTitle() { return QStringLiteral("Stop the repair?"); }
inline QString stopRepairMessage() {
  return QStringLiteral("What was repaired so far is given up. Nothing was changed in your file.");
}
inline QString stopRepair() { return QStringLiteral("Stop the repair"); }
inline QString keepRepairing() { return QStringLiteral("Keep repairing"); }
inline QString invalidTitle() { return QStringLiteral("This is not an AVI film"); }
inline QString invalidMessage() {
  return QStringLiteral(
      "The beginning of the file has nothing of an AVI film, so there is nothing to repair. Nothing was changed in "
      "your "
      "file.");
}
inline QString notSupportedTitle() { return QStringLiteral("This film cannot be repaired"); }
inline QString seeResult() { return QStringLiteral("See the result"); }
inline QString savingTitle() { return QStringLiteral("Saving your film"); }
inline QString savingMessage() { return QStringLiteral("Please leave the disk connected until this is done."); }
inline QString stopSavingTitle() { return QStringLiteral("Stop saving?"); }
inline QString stopSavingMessage() {
  return QStringLiteral("What is in the folder by now stays there. You can save the film again at any time.");
}
inline QString stopSaving() { return QStringLiteral("Stop saving"); }
inline QString keepSaving() { return QStringLiteral("Keep saving"); }
inline QString savedTitle() { return QStringLiteral("Saving is done"); }
inline QString previewErrorTitle() { return QStringLiteral("This film cannot be shown here"); }
inline QString previewErrorMessage() {
  return QStringLiteral("Another player may show it. OK opens a web page where you can get one.");
}

}  // namespace zelvo::platform::qt::texts
