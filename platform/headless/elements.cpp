#include "platform/headless/elements.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace zelvo::platform::headless {

namespace {

std::string percentText(double percent) {
  std::array<char, 40> text{};
  const int length = std::snprintf(text.data(), text.size(), "%.6g", percent);
  return {text.data(), static_cast<std::size_t>(length)};
}

}  // namespace

void HeadlessTextField::setStringValue(std::string_view text) {
  {
    const std::lock_guard lock(mutex_);
    text_ = text;
    note("setStringValue(" + text_ + ")");
  }
  if (onText) onText(text);
}
void HeadlessTextField::setIntegerValue(std::int64_t number) {
  const std::lock_guard lock(mutex_);
  text_ = std::to_string(number);
  note("setIntegerValue(" + text_ + ")");
}
std::string HeadlessTextField::stringValue() const {
  const std::lock_guard lock(mutex_);
  return text_;
}

void HeadlessButton::setEnabled(bool enabled) {
  const std::lock_guard lock(mutex_);
  enabled_ = enabled;
  // A repair says so millions of times.
  if (isNoted()) note(std::string("setEnabled(") + yesOrNo(enabled) + ")");
}
void HeadlessButton::setHidden(bool hidden) {
  const std::lock_guard lock(mutex_);
  hidden_ = hidden;
  note(std::string("setHidden(") + yesOrNo(hidden) + ")");
}
void HeadlessButton::setState(State state) {
  const std::lock_guard lock(mutex_);
  state_ = state;
  note(std::string("setState(") + (state == State::on ? "on" : "off") + ")");
}
Button::State HeadlessButton::state() const {
  const std::lock_guard lock(mutex_);
  return state_;
}
void HeadlessButton::setImage(std::string_view name) {
  const std::lock_guard lock(mutex_);
  image_ = name;
  note("setImage(" + image_ + ")");
}
bool HeadlessButton::isEnabled() const {
  const std::lock_guard lock(mutex_);
  return enabled_;
}
bool HeadlessButton::isHidden() const {
  const std::lock_guard lock(mutex_);
  return hidden_;
}
std::string HeadlessButton::image() const {
  const std::lock_guard lock(mutex_);
  return image_;
}

void HeadlessButton::setTwoState(bool twoState) {
  const std::lock_guard lock(mutex_);
  twoState_ = twoState;
}
void HeadlessButton::clicked() {
  const std::lock_guard lock(mutex_);
  if (twoState_) state_ = state_ == State::on ? State::off : State::on;
}

void HeadlessProgressBar::setDoubleValue(double percent) {
  const std::lock_guard lock(mutex_);
  percent_ = percent;
  note("setDoubleValue(" + percentText(percent) + ")");
}
void HeadlessProgressBar::setUsesThreadedAnimation(bool threaded) {
  const std::lock_guard lock(mutex_);
  threaded_ = threaded;
  note(std::string("setUsesThreadedAnimation(") + yesOrNo(threaded) + ")");
}
double HeadlessProgressBar::doubleValue() const {
  const std::lock_guard lock(mutex_);
  return percent_;
}
bool HeadlessProgressBar::usesThreadedAnimation() const {
  const std::lock_guard lock(mutex_);
  return threaded_;
}

void HeadlessTabView::selectFirstTabViewItem() {
  const std::lock_guard lock(mutex_);
  page_ = 1;
  note("selectFirstTabViewItem()");
}
void HeadlessTabView::selectNextTabViewItem() {
  const std::lock_guard lock(mutex_);
  page_ = std::min(page_ + 1, pages_);
  note("selectNextTabViewItem()");
}
void HeadlessTabView::selectPreviousTabViewItem() {
  const std::lock_guard lock(mutex_);
  page_ = std::max(page_ - 1, 1);
  note("selectPreviousTabViewItem()");
}
int HeadlessTabView::page() const {
  const std::lock_guard lock(mutex_);
  return page_;
}
void HeadlessTabView::selectPage(int page) {
  const std::lock_guard lock(mutex_);
  page_ = page;
}

void HeadlessWindow::orderOut() {
  const std::lock_guard lock(mutex_);
  visible_ = false;
  note("orderOut()");
}
void HeadlessWindow::makeKeyAndOrderFront() {
  const std::lock_guard lock(mutex_);
  visible_ = true;
  note("makeKeyAndOrderFront()");
}
void HeadlessWindow::setVisible(bool visible) {
  const std::lock_guard lock(mutex_);
  visible_ = visible;
}
bool HeadlessWindow::isVisible() const {
  const std::lock_guard lock(mutex_);
  return visible_;
}

void HeadlessSheetHead::setTitle(std::string_view title) {
  note("setTitle(" + std::string(title) + ")");
  const std::lock_guard lock(mutex_);
  title_ = title;
}

void HeadlessSheetHead::setSign(SheetSign sign) {
  note("setSign(" + std::to_string(static_cast<int>(sign)) + ")");
  const std::lock_guard lock(mutex_);
  sign_ = sign;
}

std::string HeadlessSheetHead::title() const {
  const std::lock_guard lock(mutex_);
  return title_;
}

SheetSign HeadlessSheetHead::sign() const {
  const std::lock_guard lock(mutex_);
  return sign_;
}

void HeadlessMovie::play() {
  const std::lock_guard lock(mutex_);
  playing_ = true;
  note("play()");
}
void HeadlessMovie::stop() {
  const std::lock_guard lock(mutex_);
  playing_ = false;
  note("stop()");
}
void HeadlessMovie::gotoBeginning() {
  const std::lock_guard lock(mutex_);
  note("gotoBeginning()");
}
void HeadlessMovie::gotoTime(double seconds) {
  const std::lock_guard lock(mutex_);
  note("gotoTime(" + std::to_string(seconds) + ")");
}
bool HeadlessMovie::isPlaying() const {
  const std::lock_guard lock(mutex_);
  return playing_;
}

void HeadlessMovieView::setMovie(std::shared_ptr<Movie> movie) {
  const std::lock_guard lock(mutex_);
  movie_ = std::move(movie);
  note(movie_ ? "setMovie(movie)" : "setMovie(nothing)");
}
std::shared_ptr<Movie> HeadlessMovieView::movie() const {
  const std::lock_guard lock(mutex_);
  return movie_;
}

LoadedMovie HeadlessMovieLoader::movieWithFile(const std::string& path) {
  const std::lock_guard lock(mutex_);
  if (events_ != nullptr) events_->add("movieWithFile(" + path + ")");
  if (!error_.empty() && path == failingPath_) return {nullptr, error_};
  return {std::make_shared<HeadlessMovie>("movie(" + path + ")", events_), std::nullopt};
}
void HeadlessMovieLoader::fail(std::string path, std::string error) {
  const std::lock_guard lock(mutex_);
  failingPath_ = std::move(path);
  error_ = std::move(error);
}

}  // namespace zelvo::platform::headless
