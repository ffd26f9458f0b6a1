/// What the window and its panels say by themselves, in the window's language. What the logic says comes from there.
#pragma once

#include <QString>
#include <QStringList>

#include "platform/qt/language.h"

namespace zelvo::platform::qt::texts {

/// A name, which no language changes.
inline QString productName() { return QStringLiteral("Zelvo AVI Repair"); }

// ---- Every page ----
inline QString home() { return translated("Home"); }
inline QString help() { return translated("Help"); }
inline QString update() { return translated("Look for an update"); }
inline QString noUpdateAddress() {
  return translated("This version does not know where to look. Updates come from where it was installed from.");
}
inline QString noUpdater() {
  return translated("The updater is not installed. Updates come from where the program was installed from.");
}
inline QString stepName(int step) {
  if (step == 0) return translated("Choose");
  return step == 1 ? translated("Repair") : translated("Result");
}
inline QString stepDescription(int step) {
  return translated("Step %1 of 3: %2").arg(QString::number(step + 1), stepName(step));
}

// ---- Page 1 ----
inline QString chooseHeadline() { return translated("Repair a film that no longer plays"); }
inline QString chooseExplanation() {
  return translated("Choose an AVI file. It is only read: nothing is changed in your file.");
}
inline QString dropHere() { return translated("Drop an AVI file here"); }
inline QString chooseFile() { return translated("Choose a file\u2026"); }
inline QString chooseAnother() { return translated("Choose another\u2026"); }
inline QString noFileYet() { return translated("No file chosen yet"); }
inline QString lastChosen(const QString& path) {
  return path.isEmpty() ? QString() : translated("Last chosen: %1").arg(path);
}
inline QString repair() { return translated("Repair"); }
inline QString changeWorkingFolder() { return translated("Change\u2026"); }

// ---- Page 2 ----
inline QString repairHeadline() { return translated("Repairing your film"); }
inline QString repairExplanation() {
  return translated("This can take a few minutes for a long film. You can go on working meanwhile.");
}
inline QString stop() { return translated("Stop"); }

// ---- The damage picture ----
inline QString damagePicture() { return translated("Damage picture"); }
inline QString noDamage() { return translated("No picture and no sound is lost."); }
inline QString pointAtDamage(std::size_t places) {
  return places == 1 ? translated("1 damaged place. Point at it to see what happened there.")
                     : counted("%n damaged place(s). Point at one to see what happened there.", places);
}
inline QString moreHere(std::size_t losses) { return counted("%n more here", losses); }
inline QString andMoreHere(const QString& first, std::size_t losses) {
  return translated("%1; %2").arg(first, moreHere(losses));
}
inline QString asItWasAt(const QString& time) { return translated("%1: as it was").arg(time); }

// ---- Page 3 ----
inline QString video() { return translated("Video"); }
inline QString audio() { return translated("Audio"); }
inline QString pictures() { return translated("Pictures"); }
inline QString sound() { return translated("Sound"); }
inline QString kept() { return translated("Kept"); }
inline QString lastSaved() { return translated("Last saved"); }
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
/// Stands after that number.
inline QString mebibytesUnit() { return translated("MiB"); }
inline QString mebibytesTip() { return translated("1 MiB is 1,048,576 bytes"); }
/// The window's title while something with a per cent goes on.
inline QString titleWithPercent(int percent) {
  return translated("%1 % \u2013 %2").arg(QString::number(percent), productName());
}
inline QString preview() { return translated("Preview"); }
inline QString stopPreview() { return translated("Stop preview"); }
inline QString save() { return translated("Save\u2026"); }
inline QString tip() { return translated("Tip:"); }
/// Part of a sentence that the logic says, in its language.
inline QString clickHere() { return QStringLiteral("click here"); }

// ---- Why something cannot be dropped ----
inline QString answerFirst() { return translated("Please answer the message first."); }
inline QString stillRepairing() {
  return translated("A film is being repaired. Another one can be dropped on the first page.");
}
inline QString homeFirst() { return translated("Press Home first: a film is dropped on the first page."); }
inline QString oneAtATime() { return translated("One film at a time, please."); }
inline QString onlyFiles() { return translated("Only a file of this computer can be dropped here."); }

// ---- Panels ----
inline QString ok() { return translated("OK"); }
inline QString noFilmTitle() { return translated("No film chosen yet"); }
inline QString noFilmMessage() {
  return translated("First choose the AVI file that you want to repair, or drop it on the window.");
}
inline QString stopRepairTitle() { return translated("Stop the repair?"); }
inline QString stopRepairMessage() {
  return translated("What was repaired so far is given up. Nothing was changed in your file.");
}
inline QString stopRepair() { return translated("Stop the repair"); }
inline QString keepRepairing() { return translated("Keep repairing"); }
inline QString invalidTitle() { return translated("This is not an AVI film"); }
inline QString invalidMessage() {
  return translated(
      "The beginning of the file does not look like an AVI file, so there is nothing to repair. Nothing was changed in "
      "your "
      "file.");
}
inline QString notSupportedTitle() { return translated("This film cannot be repaired"); }
inline QString seeResult() { return translated("See the result"); }
inline QString savingTitle() { return translated("Saving your film"); }
inline QString savingMessage() { return translated("Please leave the disk connected until this is done."); }
inline QString stopSavingTitle() { return translated("Stop saving?"); }
inline QString stopSavingMessage() {
  return translated("What is in the folder by now stays there. You can save the film again at any time.");
}
inline QString stopSaving() { return translated("Stop saving"); }
inline QString keepSaving() { return translated("Keep saving"); }
inline QString savedTitle() { return translated("Saving is done"); }
inline QString previewErrorTitle() { return translated("This film cannot be shown here"); }
inline QString previewErrorMessage() {
  return translated("Another player may show it. OK opens a web page where you can get one.");
}

// ---- Every panel ----
inline QString cancel() { return translated("Cancel"); }

// ---- The help inside the window ----
inline QString closeHelp() { return translated("Close the help"); }
inline QString noBrowser() { return translated("No web browser could be started, so the page is shown here."); }
inline QString addressIs(const QString& address) {
  return translated("This page is not on this computer. Its address is:\n\n%1").arg(address);
}

// ---- About ----
inline QString about() { return translated("About %1").arg(productName()); }
inline QString aboutVersion(const QString& version) { return translated("Version %1").arg(version); }
inline QString aboutWhat() {
  return translated("Repairs damaged AVI films on this computer. Your films are only read.");
}
inline QString aboutLicences() { return translated("Licences"); }
inline QString aboutLicence() {
  return translated(
      "This is free software: you may use it, pass it on and change it under the terms of the GNU General Public "
      "License, version 3 or any later version. It comes without any warranty.");
}
inline QString aboutLicenceIsIn(const QString& file) {
  return translated("The text of that licence is in %1.").arg(file);
}
inline QString aboutLibraries() { return translated("It stands on these libraries, each under a licence of its own:"); }
inline QString close() { return translated("Close"); }

// ---- Choosers ----
inline QString chooseFileHeading() { return translated("Choose a film"); }
inline QString chooseFolderHeading() { return translated("Choose a folder"); }
inline QString saveHeading() { return translated("Where should it be saved?"); }
inline QString open() { return translated("Open"); }
inline QString saveHere() { return translated("Save"); }
inline QString fileName() { return translated("File name:"); }
inline QString folderName() { return translated("Folder name:"); }
inline QString savesTo(const QString& path) { return translated("Saves to  %1").arg(path); }
inline QString up() { return translated("Up"); }
inline QString upTip() { return translated("To the folder above (Backspace)"); }
inline QString newFolder() { return translated("New folder\u2026"); }
inline QString places() { return translated("Places"); }
inline QString placeHome() { return translated("Home folder"); }
inline QString placeDesktop() { return translated("Desktop"); }
inline QString placeDocuments() { return translated("Documents"); }
inline QString placeDownloads() { return translated("Downloads"); }
inline QString placeVideos() { return translated("Videos"); }
inline QString placeComputer() { return translated("Computer"); }
inline QString filesIn(const QString& folder) { return translated("Content of %1").arg(folder); }
inline QString columnName() { return translated("Name"); }
inline QString columnSize() { return translated("Size"); }
inline QString columnChanged() { return translated("Changed"); }
inline QString asFolder(const QString& name) { return translated("%1, folder").arg(name); }

// ---- What the list says instead of entries ----
inline QString readingFolder() { return translated("Reading this folder\u2026"); }
inline QString nothingHere() { return translated("There is nothing to choose in this folder."); }
inline QString noFoldersHere() { return translated("There are no folders in here."); }
inline QString folderUnreadable(const QString& why) { return translated("This folder cannot be read: %1.").arg(why); }

// ---- Why a choice is not one ----
inline QString quoted(const QString& name) { return translated("\u201c%1\u201d").arg(name); }
inline QString nothingChosen() { return translated("Choose a file in the list, or type its name."); }
inline QString noSuchFile(const QString& name) { return translated("There is no file %1.").arg(quoted(name)); }
inline QString isFolder() { return translated("That is a folder. Now choose a file in it."); }
inline QString isNoFolder(const QString& name) { return translated("%1 is not a folder.").arg(quoted(name)); }
inline QString wrongExtension(const QStringList& extensions) {
  QStringList all;
  for (const QString& one : extensions) all += QLatin1Char('.') + one;
  const QString last = all.takeLast();
  const QString list = all.isEmpty() ? last : translated("%1 or %2").arg(all.join(QStringLiteral(", ")), last);
  return translated("Only files whose names end in %1 can be chosen.").arg(list);
}
inline QString noOrdinaryFile() { return translated("That is not an ordinary file. Please choose another."); }
inline QString doesNotAnswer() {
  return translated("The disk or server does not answer. Please try again when it is back, or choose another place.");
}
inline QString unreadableFile() {
  return translated("You may not read that file. Please choose another, or ask its owner.");
}
inline QString nameMissing() { return translated("Please type a name."); }
inline QString nameTooLong() { return translated("That name is too long. Please choose a shorter one."); }
inline QString noSuchFolder(const QString& folder) { return translated("There is no folder %1.").arg(quoted(folder)); }
inline QString mayNotSave(const QString& folder) {
  return translated("You may not save in %1. Please choose another folder.").arg(quoted(folder));
}

// ---- What is there already ----
inline QString replaceTitle() { return translated("Replace what is there?"); }
inline QString replace() { return translated("Replace"); }

// ---- A new folder ----
inline QString newFolderHeading() { return translated("New folder"); }
inline QString newFolderIn(const QString& folder) { return translated("It is made in %1.").arg(folder); }
inline QString newFolderName() { return translated("Name of the new folder"); }
inline QString createFolder() { return translated("Create"); }
inline QString nameWithSlash() { return translated("A name cannot hold a slash (/)."); }
inline QString nameIsTaken() { return translated("That name is taken already. Please choose another."); }
inline QString folderNotMade(const QString& why) { return translated("The folder could not be made: %1.").arg(why); }

}  // namespace zelvo::platform::qt::texts
