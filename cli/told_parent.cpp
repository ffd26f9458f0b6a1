#include "cli/told_parent.h"

#include <utility>

#include "cli/shown_text.h"

namespace zelvo::cli {

namespace {

constexpr std::size_t kChecksumPiece = std::size_t{1} << 20U;

void takeChecksums(Environment& environment, Outcome& outcome, const std::string& outputPath) {
  if (!environment.parent->wantsChecksums()) return;
  std::string& input = outcome.facts.inputSha256;
  std::string& output = outcome.facts.outputSha256;
  if (input.empty() && outcome.inputSize) input = checksumOf(environment, outcome.inputPath);
  if (output.empty() && !outputPath.empty()) output = checksumOf(environment, outputPath);
}

/// `path` is where the output lies now.
salvage::BatchLine lineOf(Environment& environment, const Outcome& outcome, const std::string& path) {
  salvage::BatchLine line;
  line.command = outcome.command;
  line.input = outcome.inputPath;
  line.inputSize = outcome.inputSize.value_or(0);
  line.inputSha256 = outcome.facts.inputSha256;
  if (const auto file = environment.fileManager.attributes(path); file && outcome.outputPath) {
    line.output = salvage::BatchOutput{.path = *outcome.outputPath,
                                       .size = file->size,
                                       .device = file->device,
                                       .inode = file->identity,
                                       .modified = file->modified,
                                       .sha256 = outcome.facts.outputSha256};
  }
  line.outcome = nameOf(outcome.verdict);
  line.verdict = outcome.facts.verdict;
  line.reason = outcome.reason;
  line.exit = static_cast<int>(exitOf(outcome));
  line.figures = outcome.facts.figures;
  line.picture = outcome.facts.picture;
  line.seconds = outcome.seconds;
  return line;
}

}  // namespace

std::string checksumOf(Environment& environment, const std::string& path) {
  const auto running = environment.checksums == nullptr ? nullptr : environment.checksums->startSha256();
  const auto opened = environment.files.openForReading(path);
  if (!running || !opened.file) return {};
  std::vector<std::byte> piece(kChecksumPiece);
  for (std::uint64_t offset = 0;;) {
    if (environment.stopRequested) return {};
    const platform::IoResult got = opened.file->readAt(offset, piece);
    if (got.error) return {};
    running->add(std::span(piece).first(got.count));
    offset += got.count;
    if (got.count < piece.size()) break;
  }
  const auto checksum = running->finish();
  return checksum ? platform::hexOf(*checksum) : std::string();
}

std::optional<std::string> askForName(Environment& environment, Outcome& outcome, const std::string& hiddenPath) {
  if (environment.parent == nullptr) return std::nullopt;
  takeChecksums(environment, outcome, hiddenPath);
  const salvage::BatchLine line = lineOf(environment, outcome, hiddenPath);
  if (environment.parent->ask(salvage::filmMessage({salvage::FilmMessage::Kind::naming, {}, line}))) {
    return std::nullopt;
  }
  return printable(outcome.inputPath) + " was left undone: its batch ended, or could not write its journal.";
}

void tellProgress(platform::FilmParent& parent, std::string_view line, const salvage::FilmStep& step) {
  parent.tell(salvage::filmMessage({salvage::FilmMessage::Kind::progress, std::string(line), {}, step}));
}

void tellEnd(Environment& environment, Outcome outcome) {
  if (environment.parent == nullptr) return;
  const std::string output = outcome.outputPath.value_or("");
  takeChecksums(environment, outcome, output);
  const salvage::BatchLine line = lineOf(environment, outcome, output);
  environment.parent->tell(salvage::filmMessage({salvage::FilmMessage::Kind::end, {}, line}));
}

}  // namespace zelvo::cli
