/// What both choosers hold: a folder's content, a field for a name, and a line that says why a name cannot be.
/// Thread: main.
#pragma once

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>
#include <QWidget>
#include <memory>
#include <string>

#include "platform/qt/chooser/folder_browser.h"
#include "platform/qt/panels/panel_stack.h"

namespace zelvo::platform::qt {

class FileChooser final : public QWidget {
 public:
  FileChooser(PanelStack& stack, std::shared_ptr<ChooserFiles> files, const FileFilter& filter,
              const QString& nameLabel);

  [[nodiscard]] FolderBrowser& browser() const { return *browser_; }
  [[nodiscard]] QLineEdit& nameField() const { return *name_; }
  /// Says a sentence until something is changed.
  void say(const QString& sentence);
  /// The sentence that is said; empty when none is.
  [[nodiscard]] QString said() const { return sentence_->text(); }
  /// A box to tick below the field; there is one at the most.
  void addTickBox(const QString& text, bool isTicked);
  [[nodiscard]] QCheckBox* tickBox() const { return tickBox_; }
  /// A quieter line, while nothing is said.
  void setNote(const QString& note);
  /// From now on, nobody is told of what happens in it; may be called by who is being told.
  void fallSilent();

  /// The path that the field's text stands for: below the folder that is shown, below the home folder ("~/"), or from
  /// the root. Nothing typed is an empty path.
  [[nodiscard]] std::string typedPath() const;

 protected:
  /// The ring round the part that has the keyboard.
  void paintEvent(QPaintEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  class Warning;

  FolderBrowser* browser_;
  QLineEdit* name_;
  QCheckBox* tickBox_ = nullptr;
  Warning* warning_;
  QLabel* sentence_;
  ElidedLabel* note_;
  QVBoxLayout* rows_;
};

}  // namespace zelvo::platform::qt
