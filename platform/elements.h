/// The elements of the window that logic reads and changes. Every function may be called from any thread: the window
/// takes a call from a worker over to its main thread, in the order in which the calls were made.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zelvo::platform {

class TextField {
 public:
  virtual ~TextField() = default;
  /// Shows a text (UTF-8).
  virtual void setStringValue(std::string_view text) = 0;
  /// Shows a whole number.
  virtual void setIntegerValue(std::int64_t number) = 0;
};

class Button {
 public:
  enum class State { off = 0, on = 1 };
  virtual ~Button() = default;
  virtual void setEnabled(bool enabled) = 0;
  virtual void setHidden(bool hidden) = 0;
  virtual void setState(State state) = 0;
  [[nodiscard]] virtual State state() const = 0;
  /// Shows one of the application's named pictures.
  virtual void setImage(std::string_view name) = 0;
};

class ProgressBar {
 public:
  virtual ~ProgressBar() = default;
  /// Percent, 0 to 100.
  virtual void setDoubleValue(double percent) = 0;
  virtual void setUsesThreadedAnimation(bool threaded) = 0;
};

/// The pages of the main window. Selecting beyond the first or the last page changes nothing.
class TabView {
 public:
  virtual ~TabView() = default;
  virtual void selectFirstTabViewItem() = 0;
  virtual void selectNextTabViewItem() = 0;
  virtual void selectPreviousTabViewItem() = 0;
};

/// A window, or a sheet that is shown over one (see sheets.h).
class Window {
 public:
  virtual ~Window() = default;
  /// Takes the window off the screen.
  virtual void orderOut() = 0;
  /// Brings it before the other windows and gives it the keyboard.
  virtual void makeKeyAndOrderFront() = 0;
};

}  // namespace zelvo::platform
