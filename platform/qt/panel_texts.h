/// What alerts, notices and choosers say by themselves.
#pragma once

#include <QString>
#include <QStringList>

#include "platform/qt/window_texts.h"

namespace zelvo::platform::qt::texts {

inline QString cancel() { return QStringLiteral("Cancel"); }

// ---- The help inside the window ----
inline QString closeHelp() { return QStringLiteral("Close the help"); }
inline QString noBrowser() { return QStringLiteral("No web browser could be started, so the page is shown here."); }
inline QString addressIs(const QString& address) {
  return QStringLiteral("This page is not on this computer. Its address is:\n\n") + address;
}

// ---- Choosers ----
inline QString chooseFileTitle() { return QStringLiteral("Choose a film"); }
inline QString chooseFolderTitle() { return QStringLiteral("Choose a folder"); }
inline QString saveTitle() { return QStringLiteral("Where should it be saved?"); }
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
inline QString newFolderTitle() { return QStringLiteral("New folder"); }
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
