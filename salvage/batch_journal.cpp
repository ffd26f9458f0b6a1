#include "salvage/batch_journal.h"

#include <span>
#include <string_view>
#include <utility>

namespace zelvo::salvage {

namespace {

/// How every line begins, so that one that was torn at its very beginning is known from a text of another kind.
constexpr std::string_view kLineBeginning = R"({"version":1,"state":")";

std::string keyOf(const BatchLine& line) { return line.command + '\0' + line.input; }

bool isTornLine(std::string_view text) {
  return text.size() <= kMaxJournalLine && (text.starts_with(kLineBeginning) || kLineBeginning.starts_with(text));
}

}  // namespace

JournalReading readJournal(const JournalReader& read, const std::function<void(BatchLine)>& take) {
  JournalReading result;
  std::vector<char> piece(std::size_t{1} << 18U);
  std::string open;  // a line whose end is not read yet
  std::uint64_t offset = 0;
  for (;;) {
    const platform::IoResult got = read(offset, std::as_writable_bytes(std::span(piece)));
    offset += got.count;
    std::string_view text(piece.data(), got.count);
    for (std::size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
      open += text.substr(0, end);
      text.remove_prefix(end + 1);
      auto line = readJournalLine(open);
      if (!line) {
        result.foreignLine = result.lines + 1;
        return result;
      }
      ++result.lines;
      result.end += open.size() + 1;
      open.clear();
      take(std::move(*line));
    }
    open += text;
    if (got.error) result.error = got.error;
    const bool isOver = got.count < piece.size();
    if (open.size() > kMaxJournalLine || (isOver && !isTornLine(open))) result.foreignLine = result.lines + 1;
    if (isOver || result.foreignLine > 0) break;
  }
  result.tornBytes = open.size();
  return result;
}

std::variant<std::unique_ptr<BatchJournal>, JournalRefusal> BatchJournal::open(platform::LockedFiles& files,
                                                                               const std::string& path,
                                                                               std::chrono::milliseconds most,
                                                                               const std::function<bool()>& goesOn) {
  auto opened = files.openText(path, most, goesOn);
  if (!opened.text) return JournalRefusal{.error = opened.error};
  auto journal = std::unique_ptr<BatchJournal>(new BatchJournal(std::move(opened.text)));
  const JournalReading reading =
      readJournal([&](std::uint64_t offset, std::span<std::byte> into) { return journal->text_->readAt(offset, into); },
                  [&](BatchLine line) { journal->note(std::move(line)); });
  if (reading.error) return JournalRefusal{.error = reading.error};
  if (reading.foreignLine > 0) return JournalRefusal{.error = {}, .foreignLine = reading.foreignLine};
  // Nobody else writes: the torn line is of a run that is no more.
  if (reading.tornBytes > 0) {
    if (const std::error_code error = journal->text_->cutTo(reading.end)) return JournalRefusal{.error = error};
  }
  return journal;
}

void BatchJournal::note(BatchLine line) {
  if (line.state != LineState::naming) {
    // A million films must not cost a million pictures.
    line.figures = {};
    line.picture = {};
    line.reason = {};
  }
  std::string key = keyOf(line);
  last_.insert_or_assign(std::move(key), std::move(line));
}

std::error_code BatchJournal::append(const BatchLine& line) {
  const std::string text = journalLine(line);
  if (text.size() > kMaxJournalLine) return std::make_error_code(std::errc::message_size);
  if (const std::error_code error = text_->append(text)) return error;
  note(line);
  return {};
}

ResumeStep BatchJournal::stepFor(const BatchLine& film, platform::FileManager& fileManager,
                                 const std::function<std::string()>& checksum) const {
  const auto found = last_.find(keyOf(film));
  if (found == last_.end()) return ResumeStep::work;
  const BatchLine& line = found->second;
  if (line.state == LineState::failed || line.options != film.options || line.inputSize != film.inputSize) {
    return ResumeStep::work;
  }
  if (line.inputModified != film.inputModified && (line.inputSha256.empty() || line.inputSha256 != checksum())) {
    return ResumeStep::work;
  }
  if (line.state == LineState::naming) {
    return isInPlace(*line.output, fileManager) ? ResumeStep::adopt : ResumeStep::work;
  }
  if (!line.output) return ResumeStep::skip;
  // A collection may have been moved since, so only a file of that size is asked for.
  const auto there = fileManager.attributes(line.output->path);
  return there && there->kind == platform::FileAttributes::Kind::regularFile && there->size == line.output->size
             ? ResumeStep::skip
             : ResumeStep::work;
}

const BatchLine& BatchJournal::lineOf(const BatchLine& film) const { return last_.at(keyOf(film)); }

bool isInPlace(const BatchOutput& output, platform::FileManager& fileManager) {
  const auto there = fileManager.attributes(output.path);
  return there && there->kind == platform::FileAttributes::Kind::regularFile && there->device == output.device &&
         there->identity == output.inode && there->size == output.size && there->modified == output.modified;
}

}  // namespace zelvo::salvage
