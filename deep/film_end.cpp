#include "deep/film_end.h"

#include <string_view>

#include "deep/texts.h"
#include "platform/ran_out.h"

namespace zelvo::deep {

namespace {

constexpr int kDone = 0;
constexpr int kHopeless = 1;
constexpr int kStopped = 130;
constexpr std::string_view kProgramName = "zelvo-avi: ";
constexpr std::string_view kError = "error: ";

/// The last line that a program complained with, without its name.
std::string lastComplaint(std::string_view complaints) {
  while (complaints.ends_with('\n')) complaints.remove_suffix(1);
  const std::size_t before = complaints.rfind('\n');
  if (before != std::string_view::npos) complaints.remove_prefix(before + 1);
  if (complaints.starts_with(kProgramName)) complaints.remove_prefix(kProgramName.size());
  if (complaints.starts_with(kError)) complaints.remove_prefix(kError.size());
  return std::string(complaints);
}

/// What the command line advises to whoever wrote it: the window has no options.
std::string withoutAdvice(std::string reason) {
  for (const std::string_view advice : {"; use --", "; name another one with -"}) {
    const std::size_t at = reason.find(advice);
    if (at != std::string::npos) reason.replace(at, std::string::npos, ".");
  }
  return reason;
}

}  // namespace

FilmEnd filmEnd(const salvage::FilmResult& result, bool isStopped) {
  using Kind = FilmEnd::Kind;
  FilmEnd end{.printed = result.printed};
  if (!result.end) {
    end.kind = isStopped ? Kind::stopped : Kind::notStarted;
    end.error = result.error;
    return end;
  }
  // A program that was killed after it had told its end has come to it all the same.
  const bool isTold = result.line && result.isLast;
  const int exit = result.end->signal != 0 && isTold ? result.line->exit : result.end->exit;
  end.signal = result.end->signal;
  if (isTold) end.reason = withoutAdvice(result.line->reason);
  if (exit == kStopped || (isStopped && exit != kDone)) {
    end.kind = Kind::stopped;
  } else if (isTold && exit == kDone) {
    end.kind = Kind::done;
  } else if (isTold && exit == kHopeless) {
    end.kind = Kind::hopeless;
  } else if (isTold || (end.signal == 0 && exit > kHopeless)) {
    end.kind = Kind::failed;
    if (end.reason.empty()) end.reason = lastComplaint(result.complaints);
  } else {
    end.kind = Kind::died;
  }
  return end;
}

std::string failureWords(const FilmEnd& end, const std::string& name, const platform::Translator& translator) {
  using Kind = FilmEnd::Kind;
  const std::string unchanged = " " + translator.translated(texts::kNothingChanged);
  const auto said = [&](std::string_view text, const std::string& value) {
    return platform::filled(translator.translated(text), {value}) + unchanged;
  };
  switch (end.kind) {
    case Kind::stopped:
      return translator.translated(texts::kWasStopped) + unchanged;
    case Kind::notStarted:
      if (end.error == std::errc::no_such_file_or_directory) {
        return translator.translated(texts::kProgramMissing) + unchanged;
      }
      if (end.error == std::errc::not_enough_memory) return translator.translated(texts::kNoMemory) + unchanged;
      if (platform::isShortage(end.error)) return translator.translated(texts::kNoThread) + unchanged;
      return said(texts::kNotStarted, end.error.message());
    case Kind::died:
      return said(end.signal != 0 ? texts::kDiedOfSignal : texts::kDied, std::to_string(end.signal));
    case Kind::failed:
      if (!end.reason.empty()) return end.reason + unchanged;
      break;
    case Kind::done:
    case Kind::hopeless:
      break;
  }
  return said(texts::kFailedWithoutReason, name);
}

}  // namespace zelvo::deep
