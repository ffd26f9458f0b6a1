/// What the window and its panels say by themselves. What the logic says comes from there.
#pragma once

#include <QString>
#include <QStringList>

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

// ---- The damage picture ----
inline QString damagePicture() { return QStringLiteral("Damage picture"); }
inline QString noDamage() { return QStringLiteral("Nothing is damaged."); }
inline QString pointAtDamage(std::size_t places) {
  return places == 1 ? QStringLiteral("1 damaged place. Point at it to see what happened there.")
                     : QStringLiteral("%L1 damaged places. Point at one to see what happened there.").arg(places);
}
inline QString moreHere(std::size_t losses) { return QStringLiteral("%L1 more here").arg(losses); }
inline QString andMoreHere(const QString& first, std::size_t losses) {
  return QStringLiteral("%1; %2").arg(first, moreHere(losses));
}
inline QString asItWasAt(const QString& time) { return QStringLiteral("%1: as it was").arg(time); }

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
/// Stands after that number.
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
      "The beginning of the file does not look like an AVI file, so there is nothing to repair. Nothing was changed in "
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

// ---- Every panel ----
inline QString cancel() { return QStringLiteral("Cancel"); }

// ---- The help inside the window ----
inline QString closeHelp() { return QStringLiteral("Close the help"); }
inline QString noBrowser() { return QStringLiteral("No web browser could be started, so the page is shown here."); }
inline QString addressIs(const QString& address) {
  return QStringLiteral("This page is not on this computer. Its address is:\n\n") + address;
}

// ---- Choosers ----
inline QString chooseFileHeading() { return QStringLiteral("Choose a film"); }
inline QString chooseFolderHeading() { return QStringLiteral("Choose a folder"); }
inline QString saveHeading() { return QStringLiteral("Where should it be saved?"); }
inline QString open() { return QStringLiteral("Open"); }
inline QString saveHere() { return QStringLiteral("Save"); }
inline QString fileName() { return QStringLiteral("File name:"); }
inline QString folderName() { return QStringLiteral("Folder name:"); }
inline QString savesTo(const QString& path) { return QStringLiteral("Saves to  ") + path; }
inline QString up() { return QStringLiteral("Up"); }
inline QString upTip() { return QStringLiteral("To the folder above (Backspace)"); }
inline QString newFolder() { return QStringLiteral("New folder\u2026"); }
inline QString places() { return QStringLiteral("Places"); }
inline QString placeHome() { return QStringLiteral("Home"); }
inline QString placeDesktop() { return QStringLiteral("Desktop"); }
inline QString placeDocuments() { return QStringLiteral("Documents"); }
inline QString placeDownloads() { return QStringLiteral("Downloads"); }
inline QString placeVideos() { return QStringLiteral("Videos"); }
inline QString placeComputer() { return QStringLiteral("Computer"); }
inline QString filesIn(const QString& folder) { return QStringLiteral("Content of ") + folder; }
inline QString columnName() { return QStringLiteral("Name"); }
inline QString columnSize() { return QStringLiteral("Size"); }
inline QString columnChanged() { return QStringLiteral("Changed"); }
inline QString asFolder(const QString& name) { return name + QStringLiteral(", folder"); }

// ---- What the list says instead of entries ----
inline QString readingFolder() { return QStringLiteral("Reading this folder\u2026"); }
inline QString nothingHere() { return QStringLiteral("There is nothing to choose in this folder."); }
inline QString noFoldersHere() { return QStringLiteral("There are no folders in here."); }
inline QString folderUnreadable(const QString& why) {
  return QStringLiteral("This folder cannot be read: ") + why + QStringLiteral(".");
}

// ---- Why a choice is not one ----
inline QString quoted(const QString& name) { return QStringLiteral("\u201c") + name + QStringLiteral("\u201d"); }
inline QString nothingChosen() { return QStringLiteral("Choose a file in the list, or type its name."); }
inline QString noSuchFile(const QString& name) {
  return QStringLiteral("There is no file ") + quoted(name) + QStringLiteral(".");
}
inline QString isFolder() { return QStringLiteral("That is a folder. Now choose a file in it."); }
inline QString isNoFolder(const QString& name) { return quoted(name) + QStringLiteral(" is not a folder."); }
inline QString wrongExtension(const QStringList& extensions) {
  const QString last = QStringLiteral(".") + extensions.back();
  const QStringList others = extensions.mid(0, extensions.size() - 1);
  const QString list = others.isEmpty()
                           ? last
                           : QStringLiteral(".") + others.join(QStringLiteral(", .")) + QStringLiteral(" or ") + last;
  return QStringLiteral("Only files whose names end in ") + list + QStringLiteral(" can be chosen.");
}
inline QString noOrdinaryFile() { return QStringLiteral("That is not an ordinary file. Please choose another."); }
inline QString doesNotAnswer() {
  return QStringLiteral(
      "The disk or server does not answer. Please try again when it is back, or choose another place.");
}
inline QString unreadableFile() {
  return QStringLiteral("You may not read that file. Please choose another, or ask its owner.");
}
inline QString nameMissing() { return QStringLiteral("Please type a name."); }
inline QString nameTooLong() { return QStringLiteral("That name is too long. Please choose a shorter one."); }
inline QString noSuchFolder(const QString& folder) {
  return QStringLiteral("There is no folder ") + quoted(folder) + QStringLiteral(".");
}
inline QString mayNotSave(const QString& folder) {
  return QStringLiteral("You may not save in ") + quoted(folder) + QStringLiteral(". Please choose another folder.");
}

// ---- What is there already ----
inline QString replaceTitle() { return QStringLiteral("Replace what is there?"); }
inline QString replace() { return QStringLiteral("Replace"); }

// ---- A new folder ----
inline QString newFolderHeading() { return QStringLiteral("New folder"); }
inline QString newFolderIn(const QString& folder) {
  return QStringLiteral("It is made in ") + folder + QStringLiteral(".");
}
inline QString newFolderName() { return QStringLiteral("Name of the new folder"); }
inline QString createFolder() { return QStringLiteral("Create"); }
inline QString nameWithSlash() { return QStringLiteral("A name cannot hold a slash (/)."); }
inline QString nameIsTaken() { return QStringLiteral("That name is taken already. Please choose another."); }
inline QString folderNotMade(const QString& why) {
  return QStringLiteral("The folder could not be made: ") + why + QStringLiteral(".");
}

}  // namespace zelvo::platform::qt::texts
