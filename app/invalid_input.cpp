// Why the input is invalid, as far as it is not its content: it is gone, it cannot be read, or the name is a link,
// whose own size counts. What the invalid-file sheet says follows from it. Thread: the repair worker.
#include "app/controller.h"
#include "app/texts.h"
#include "avi/input_file.h"

namespace zelvo::app {

namespace {

struct Explanation {
  std::string title;
  std::string text;
};

/// A link shorter than this is never looked into.
constexpr std::uint64_t kSmallestInput = avi::InputFile::kBlockSize;

}  // namespace

void Orlin_Repair_AVIAppDelegate::explainInvalidInput(const engine::Run& run) {
  const std::string input = run.path.value_or("");
  Explanation why = {translated(texts::kInvalidTitle), translated(texts::kInvalidMessage)};
  const auto attributes = services_.fileManager.attributes(input);
  const std::error_code opening = services_.files.openForReading(input).error;
  const auto& opened = repair1->inputfilehandle;
  const avi::ReadFailures failed = opened ? opened->failures() : avi::ReadFailures{};
  const bool isLink = attributes && attributes->kind == platform::FileAttributes::Kind::symbolicLink;
  if (isLink && (run.inputfilesize < kSmallestInput || opening)) {
    const auto target = services_.fileManager.linkTarget(input);
    const std::string text =
        target ? translated(texts::kLinkMessageWithTarget, {*target}) : translated(texts::kLinkMessage);
    why = {translated(texts::kLinkTitle), translated(texts::kNothingChanged, {text})};
  } else if (!attributes || opening == std::errc::no_such_file_or_directory) {
    why = {translated(texts::kGoneTitle), translated(texts::kNoSuchFilmMessage)};
  } else if (opening || failed.count > 0) {
    const std::string said = translated(texts::kSystemSays, {(opening ? opening : failed.firstCause).message()});
    why = {translated(texts::kUnreadableTitle), translated(texts::kNothingChanged, {said})};
  }
  outlets.own.invalidfilehead.setTitle(why.title);
  outlets.own.invalidfiletext.setStringValue(why.text);
}

}  // namespace zelvo::app
