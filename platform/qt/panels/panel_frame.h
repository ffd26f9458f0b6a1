/// A panel that is shown inside the window: a picture, a title, a text, whatever else it holds, and a row of buttons.
/// To a screen reader it is a modal dialog named after its title. Sizes are logical pixels.
/// Thread: main, but for the functions of platform::Window, which any thread may call.
#pragma once

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>
#include <QWidget>
#include <memory>
#include <string>
#include <vector>

#include "platform/elements.h"
#include "platform/main_queue.h"
#include "platform/panel_controls.h"
#include "platform/qt/drawing/button.h"
#include "platform/qt/drawing/hosted_widget.h"
#include "platform/qt/drawing/pictures.h"
#include "platform/qt/panels/panel_owner.h"

namespace zelvo::platform::qt {

class PictureWidget;

/// What every panel says.
struct PanelText {
  QString picture;  ///< name of a picture; none when empty
  QString title;    ///< no line when empty
  QString message;  ///< no line when empty
};

class PanelFrame final : public QWidget, public Window {
 public:
  /// Waits, hidden, until `owner` shows it. Belongs to the owner's content.
  PanelFrame(PanelOwner& owner, const PanelText& text);
  ~PanelFrame() override;

  // ---- platform::Window ----
  void orderOut() override;
  void makeKeyAndOrderFront() override;

  enum class Role { plain, byDefault, cancels, defaultAndCancels };
  /// Adds a button to the row, from left to right. Enter presses the default button, Esc the one that cancels.
  QtButton& addButton(const QString& title, Role role = Role::plain);
  /// Says something else at its top. `picture` is the name of one; a panel made without a picture gets none.
  void setHead(const QString& picture, const QString& title);
  /// Between the text and the buttons.
  void addContent(QWidget* widget);
  /// Makes the panel as large as `size`, or as the window where that is smaller. `content`, which was added, gets what
  /// the rest leaves.
  void setRoom(const QSize& size, QWidget& content);
  /// Sheets that begin while it is shown lie below it: for a question that somebody waits for.
  void setStaysOnTop() { staysOnTop_ = true; }
  [[nodiscard]] bool staysOnTop() const { return staysOnTop_; }
  /// The place of the help page that tells about this panel. By default it is made of what the panel says.
  void setHelpTopic(const QString& topic) {
    helpTopic_ = topic;
    topicTitle_ = titleText_;
  }
  [[nodiscard]] QString helpTopic() const;
  /// The focus goes to `widget` first, rather than to a button.
  void setFirstFocus(QWidget& widget) { firstFocus_ = &widget; }

  [[nodiscard]] QLabel& message() const { return *message_; }
  [[nodiscard]] QString title() const { return titleText_; }
  [[nodiscard]] QString pictureName() const;
  [[nodiscard]] std::vector<ViewHost*> buttonHosts() const;
  /// Where the focus goes when the panel is shown; the panel itself when nothing in it takes the keyboard.
  [[nodiscard]] QWidget& firstFocus();
  /// The room that the panel wants within `available`.
  [[nodiscard]] QSize wantedSize(const QSize& available);
  /// Esc: presses the button that cancels. False when there is none that can be pressed.
  bool cancel();

  /// The last overlay that lay below the panel stays with it. For the owner.
  void keepOverlay(std::unique_ptr<HostedWidget> overlay) { overlay_ = std::move(overlay); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool focusNextPrevChild(bool next) override;

 private:
  PanelOwner& owner_;
  QString titleText_;
  QLabel* titleLabel_;
  PictureWidget* picture_ = nullptr;
  QVBoxLayout* column_;
  QVBoxLayout* content_;
  QHBoxLayout* buttonRow_;
  QLabel* message_;
  std::vector<QtButton*> buttons_;
  QtButton* defaultButton_ = nullptr;
  QtButton* cancelButton_ = nullptr;
  QWidget* firstFocus_ = nullptr;
  QString helpTopic_;
  QString topicTitle_;  ///< the title that it belongs to
  bool staysOnTop_ = false;
  QSize room_;
  std::unique_ptr<HostedWidget> overlay_;
};

/// Makes panels known to screen readers as modal dialogs. Once, after the application object.
void installPanelAccessibility();

}  // namespace zelvo::platform::qt
