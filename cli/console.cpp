#include "cli/console.h"

#include <cerrno>
#include <cstdio>
#include <utility>

#include "platform/printable_text.h"

namespace zelvo::cli {

namespace {

constexpr std::string_view kEraseLine = "\r\033[K";
constexpr std::string_view kEraseLineAbove = "\033[A\033[K";
constexpr std::string_view kNoWrapping = "\033[?7l";
constexpr std::string_view kWrapping = "\033[?7h";

void write(std::FILE* stream, std::string_view text) { std::fwrite(text.data(), 1, text.size(), stream); }

}  // namespace

bool Console::result(std::string_view text) {
  if (resultError_) return false;
  const std::lock_guard lock(mutex_);
  const bool givesWay = resultIsTerminal_ && !progressLine_.empty();
  if (givesWay) write(stderr, erasure());
  errno = 0;
  if (std::fwrite(text.data(), 1, text.size(), stdout) < text.size()) {
    resultError_ = {errno == 0 ? EIO : errno, std::generic_category()};
  }
  if (resultIsTerminal_ && !text.empty()) resultLineIsOpen_ = text.back() != '\n';
  if (givesWay) {
    if (std::fflush(stdout) != 0) resultError_ = {errno == 0 ? EIO : errno, std::generic_category()};
    if (resultLineIsOpen_) {
      progressLine_.clear();
    } else {
      write(stderr, progressLine_);
    }
  }
  return !resultError_;
}

bool Console::flushResult() {
  if (resultError_) return false;
  errno = 0;
  if (std::fflush(stdout) != 0) resultError_ = {errno == 0 ? EIO : errno, std::generic_category()};
  return !resultError_;
}

void Console::error(std::string_view sentence) { writeError("zelvo-avi: " + std::string(sentence)); }

void Console::warning(std::string_view sentence) {
  if (!quiet_) writeError("zelvo-avi: warning: " + std::string(sentence));
}

void Console::note(std::string_view line) {
  if (!quiet_) writeError(line);
}

void Console::logLine(std::string_view line) { writeError(line); }

void Console::writeError(std::string_view line) {
  const std::lock_guard lock(mutex_);
  std::string whole;
  if (!progressLine_.empty()) whole += erasure();
  whole += platform::printableText(line);
  whole += '\n';
  whole += progressLine_;
  write(stderr, whole);
}

std::string Console::erasure() const {
  std::string text(kEraseLine);
  for (const char one : progressLine_) {
    if (one == '\n') text += kEraseLineAbove;
  }
  return text;
}

void Console::progressLines(const std::vector<std::string>& lines) {
  if (!showsProgress()) return;
  std::string all;
  for (const std::string& line : lines) all += (all.empty() ? "" : "\n") + platform::printableText(line);
  // A line that went on in the next row could not be taken away again.
  if (!all.empty()) all = std::string(kNoWrapping) + all + std::string(kWrapping);
  const std::lock_guard lock(mutex_);
  if (all == progressLine_ || resultLineIsOpen_) return;
  const std::string erasing = erasure();
  progressLine_ = std::move(all);
  write(stderr, erasing + progressLine_);
}

void Console::progress(std::string_view line, const salvage::FilmStep& step) {
  if (!showsProgress()) return;
  if (progressTo_) {
    progressTo_(line, step);
    return;
  }
  std::string printable = platform::printableText(line);
  const std::lock_guard lock(mutex_);
  if (printable == progressLine_ || resultLineIsOpen_) return;
  progressLine_ = std::move(printable);
  write(stderr, std::string(kEraseLine) + progressLine_);
}

void ConsoleLog::line(std::string_view text) {
  if (verbosity_ > 0) console_.logLine(text);
}

}  // namespace zelvo::cli
