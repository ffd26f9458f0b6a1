#include "salvage/playing/container_check.h"

#include <algorithm>
#include <map>
#include <optional>
#include <variant>

#include "avi/chunk_codes.h"

namespace zelvo::salvage {

namespace {

std::uint64_t fewOf(std::uint64_t count) { return std::max(ContainerCheck::kFew, count / 100); }

std::optional<std::uint32_t> streamOf(avi::FourCC code) {
  const auto digit = [&](std::size_t at) { return std::to_integer<std::uint32_t>(code.bytes()[at]) - '0'; };
  if (!avi::isStreamData(code)) return std::nullopt;
  return digit(0) * 10 + digit(1);
}

/// Also with its sound beside it.
bool isPicture(avi::FourCC code) { return code.bytes()[2] == std::byte{'d'} || code.bytes()[2] == std::byte{'_'}; }

/// Gathers what an outline tells.
class Findings final : public avi::OutlineSink {
 public:
  void beginList(const avi::OutlineItem& list) override {
    if (list.depth == 0) hasForm_ = true;
  }
  void endList(const avi::OutlineItem& /*list*/, const avi::DataSums& sums) override { add(sums); }
  void endFile(const avi::DataSums& sums) override { add(sums); }
  void chunk(const avi::OutlineItem& chunk, const std::vector<avi::Field>& fields,
             const std::optional<avi::IndexReport>& index) override {
    if (index) addIndex(chunk.id, index->entries);
    if (chunk.id == avi::kStrh) addHeader(chunk.offset, fields);
    addData(chunk.id, 1);
  }
  void problem(const avi::Problem& problem, std::size_t depth) override {
    const bool isStray =
        problem.kind == avi::ProblemKind::skippedBytes || problem.kind == avi::ProblemKind::skippedZeros;
    if (problem.kind == avi::ProblemKind::stopped) return;
    if (depth == 0 && hasForm_ && isStray) {
      check.harmless += problem.claimed;
      return;
    }
    ++check.problemCount;
    if (check.problems.size() < ContainerCheck::kMaxProblems) check.problems.push_back(problem);
  }

  void finish() {
    check.indexed = std::max(oldEntries_, standardEntries_);
    for (const auto& [stream, header] : headers_) {
      const auto found = pictures_.find(stream);
      const std::uint64_t held = found == pictures_.end() ? 0 : found->second;
      if (header.promised > held + fewOf(header.promised))
        check.shortStreams.push_back({stream, header.promised, held, header.offset});
    }
  }

  ContainerCheck check;

 private:
  struct Header {
    std::uint64_t promised = 0;
    std::uint64_t offset = 0;
  };

  void add(const avi::DataSums& sums) {
    for (const auto& [code, sum] : sums) {
      avi::FourCC id;
      id.value = code;
      if (sum.index) addIndex(id, sum.index->entries);
      addData(id, sum.chunks);
    }
  }
  void addIndex(avi::FourCC id, std::uint64_t entries) {
    if (id == avi::kIdx1) oldEntries_ += entries;
    if (avi::isStandardIndex(id)) standardEntries_ += entries;
  }
  void addData(avi::FourCC id, std::uint64_t chunks) {
    const auto stream = streamOf(id);
    if (!stream) return;
    check.chunks += chunks;
    if (isPicture(id)) pictures_[*stream] += chunks;
  }
  void addHeader(std::uint64_t offset, const std::vector<avi::Field>& fields) {
    constexpr std::uint32_t kMaxStreams = 100;
    const std::uint32_t stream = streams_++;
    const auto field = [&](std::string_view name) -> const avi::Field* {
      const auto found = std::ranges::find(fields, name, &avi::Field::name);
      return found == fields.end() ? nullptr : &*found;
    };
    const avi::Field* const type = field("fccType");
    const avi::Field* const length = field("dwLength");
    if (type == nullptr || length == nullptr || stream >= kMaxStreams) return;
    const auto* const code = std::get_if<avi::FourCC>(&type->value);
    const auto* const number = std::get_if<std::uint64_t>(&length->value);
    if (code != nullptr && number != nullptr && *code == avi::kVids) headers_[stream] = {*number, offset};
  }

  bool hasForm_ = false;
  std::uint32_t streams_ = 0;
  std::map<std::uint32_t, Header> headers_;          ///< of pictures, by stream
  std::map<std::uint32_t, std::uint64_t> pictures_;  ///< chunks, by stream
  std::uint64_t oldEntries_ = 0;
  std::uint64_t standardEntries_ = 0;
};

}  // namespace

void ContainerCheck::metPictures(std::uint32_t stream, std::uint64_t pictures) {
  std::erase_if(shortStreams, [&](ShortStream& one) {
    if (one.stream != stream) return false;
    one.found = std::max(one.found, pictures);
    return one.promised <= one.found + fewOf(one.promised);
  });
}

bool ContainerCheck::hasShortIndex() const { return !lacksIndex() && indexed + fewOf(chunks) < chunks; }

ContainerCheck checkContainer(platform::ReadableFile& file, const std::function<bool()>& isEnding) {
  Findings findings;
  avi::Outline outline(file, findings, isEnding, false);
  outline.walk();
  findings.finish();
  findings.check.isAvi = outline.isAvi();
  findings.check.readFailures = outline.failures();
  return std::move(findings.check);
}

}  // namespace zelvo::salvage
