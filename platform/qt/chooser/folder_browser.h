/// One folder's content, the ways to others, and a list of places to start from.
/// Thread: main.
#pragma once

#include <QLabel>
#include <QListWidget>
#include <QTreeView>
#include <QWidget>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/main_queue.h"
#include "platform/qt/chooser/folder_model.h"
#include "platform/qt/chooser/folder_reader.h"
#include "platform/qt/chooser/places.h"
#include "platform/qt/drawing/button.h"
#include "platform/qt/drawing/elements.h"
#include "platform/qt/drawing/pictures.h"

namespace zelvo::platform::qt {

class FolderBrowser final : public QWidget {
 public:
  FolderBrowser(MainQueue& queue, Pictures& pictures, std::shared_ptr<ChooserFiles> files, FileFilter filter);

  /// Shows `folder`; its content follows as soon as it is read.
  void enter(const std::string& folder);
  void enterFolderAbove();
  /// Reads the folder again.
  void refresh();
  [[nodiscard]] const std::string& folder() const { return folder_; }

  /// More than one entry can be selected at a time.
  void selectSeveral();
  /// What is selected in the list, the first of several; null when nothing is.
  [[nodiscard]] const FolderEntry* selected() const;
  /// All that is selected, from the list's top to its end.
  [[nodiscard]] std::vector<const FolderEntry*> allSelected() const;
  /// The entry that is shown under this name. A name that is no text is told apart from its look.
  [[nodiscard]] const FolderEntry* entryShownAs(const QString& name) const;
  [[nodiscard]] bool isRead() const { return isRead_; }

  /// A file was opened in the list: by a double click or by Enter.
  void setFileOpened(std::function<void()> opened) { fileOpened_ = std::move(opened); }
  void setSelectionChanged(std::function<void()> changed) { selectionChanged_ = std::move(changed); }
  /// Another folder is shown.
  void setFolderChanged(std::function<void()> changed) { folderChanged_ = std::move(changed); }
  /// From now on, none of these is told of anything; it may be called by one of them.
  void fallSilent() { isSilent_ = true; }
  /// The button is there only with an action.
  void setNewFolderAction(const std::function<void()>& action);

  [[nodiscard]] QTreeView& list() const;
  [[nodiscard]] QListWidget& placeList() const { return *placeList_; }
  [[nodiscard]] QtButton& upButton() const { return *up_; }
  [[nodiscard]] QtButton& newFolderButton() const { return *newFolder_; }

 private:
  class List;

  bool eventFilter(QObject* watched, QEvent* event) override;
  void fillPlaces();
  void showListing(FolderListing listing);
  void openEntry(const QModelIndex& index);
  void markPlace();
  void tell(const std::function<void()>& observer) const;

  FileFilter filter_;
  std::string folder_;
  std::string selectNext_;  ///< name of the entry to be selected once the folder is read
  bool isRead_ = false;
  bool isSilent_ = false;
  std::vector<Place> places_;
  ElidedLabel* path_;
  QtButton* up_;
  QtButton* newFolder_;
  QListWidget* placeList_;
  List* list_;
  FolderModel* model_;
  std::function<void()> fileOpened_;
  std::function<void()> selectionChanged_;
  std::function<void()> folderChanged_;
  FolderReader reader_;
};

}  // namespace zelvo::platform::qt
