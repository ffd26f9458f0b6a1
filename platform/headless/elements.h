/// Elements that remember instead of drawing: each keeps its state and, when it was given a list of events, writes down
/// every change as "name.operation(value)".
/// Thread: any.
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "platform/elements.h"
#include "platform/headless/events.h"
#include "platform/movies.h"
#include "platform/sheet_head.h"

namespace zelvo::platform::headless {

/// The name under which an element writes down its events.
class Named {
 public:
  Named(std::string name, Events* events) : name_(std::move(name)), events_(events) {}
  [[nodiscard]] const std::string& name() const { return name_; }

 protected:
  [[nodiscard]] bool isNoted() const { return events_ != nullptr; }
  void note(const std::string& what) const {
    if (events_ != nullptr) events_->add(name_ + "." + what);
  }
  mutable std::mutex mutex_;

 private:
  std::string name_;
  Events* events_;
};

class HeadlessTextField final : public TextField, public Named {
 public:
  using Named::Named;
  void setStringValue(std::string_view text) override;
  void setIntegerValue(std::int64_t number) override;
  [[nodiscard]] std::string stringValue() const;
  /// Told every text, on the thread that sets it. Set before there are other threads.
  std::function<void(std::string_view)> onText;

 private:
  std::string text_;
};

class HeadlessButton final : public Button, public Named {
 public:
  using Named::Named;
  void setEnabled(bool enabled) override;
  void setHidden(bool hidden) override;
  void setState(State state) override;
  [[nodiscard]] State state() const override;
  void setImage(std::string_view name) override;
  [[nodiscard]] bool isEnabled() const;
  [[nodiscard]] bool isHidden() const;
  [[nodiscard]] std::string image() const;
  /// A click changes the state of a two-state button.
  void setTwoState(bool twoState);
  /// What a click does before the action.
  void clicked();

 private:
  bool twoState_ = false;
  bool enabled_ = true;
  bool hidden_ = false;
  State state_ = State::off;
  std::string image_;
};

class HeadlessProgressBar final : public ProgressBar, public Named {
 public:
  using Named::Named;
  void setDoubleValue(double percent) override;
  void setUsesThreadedAnimation(bool threaded) override;
  [[nodiscard]] double doubleValue() const;
  [[nodiscard]] bool usesThreadedAnimation() const;

 private:
  double percent_ = 0;
  bool threaded_ = false;
};

class HeadlessTabView final : public TabView, public Named {
 public:
  HeadlessTabView(std::string name, Events* events, int pages = 3) : Named(std::move(name), events), pages_(pages) {}
  void selectFirstTabViewItem() override;
  void selectNextTabViewItem() override;
  void selectPreviousTabViewItem() override;
  /// Selected page, counted from 1.
  [[nodiscard]] int page() const;
  void selectPage(int page);

 private:
  int pages_;
  int page_ = 1;
};

class HeadlessWindow final : public Window, public Named {
 public:
  using Named::Named;
  void orderOut() override;
  void makeKeyAndOrderFront() override;
  void setVisible(bool visible);
  [[nodiscard]] bool isVisible() const;

 private:
  bool visible_ = false;
};

class HeadlessSheetHead final : public SheetHead, public Named {
 public:
  using Named::Named;
  void setTitle(std::string_view title) override;
  void setSign(SheetSign sign) override;
  [[nodiscard]] std::string title() const;
  [[nodiscard]] SheetSign sign() const;

 private:
  std::string title_;
  SheetSign sign_ = SheetSign::done;
};

/// A movie that notes what it is told to do.
class HeadlessMovie final : public Movie, public Named {
 public:
  using Named::Named;
  void play() override;
  void stop() override;
  void gotoBeginning() override;
  void gotoTime(double seconds) override;
  [[nodiscard]] bool isPlaying() const;

 private:
  bool playing_ = false;
};

class HeadlessMovieView final : public MovieView, public Named {
 public:
  using Named::Named;
  void setMovie(std::shared_ptr<Movie> movie) override;
  [[nodiscard]] std::shared_ptr<Movie> movie() const;

 private:
  std::shared_ptr<Movie> movie_;
};

/// Makes a movie of any path; a path named to `fail` gives an error instead.
class HeadlessMovieLoader final : public MovieLoader {
 public:
  explicit HeadlessMovieLoader(Events* events = nullptr) : events_(events) {}
  [[nodiscard]] LoadedMovie movieWithFile(const std::string& path) override;
  void fail(std::string path, std::string error);

 private:
  std::mutex mutex_;
  Events* events_;
  std::string failingPath_;
  std::string error_;
};

}  // namespace zelvo::platform::headless
