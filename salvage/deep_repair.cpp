// The run:
// 1. Headers, as far as they survive.
// 2. One pass over the input for everything that may be a chunk or an index.
// 3. What the streams have in common, what the indexes say, and from all of it the plan. Then the evidence is let go.
// 4. The film is laid out, judged by its size, and written.
#include "salvage/deep_repair.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

#include "avi/input_file.h"
#include "salvage/headers/header_donor.h"
#include "salvage/plan/evidence.h"
#include "salvage/plan/plan_choices.h"
#include "salvage/plan/tried_keys.h"
#include "salvage/scan/late_information.h"
#include "salvage/scan/recent_reads.h"
#include "salvage/scan/rescued_file.h"
#include "salvage/scan/retried_reads.h"
#include "salvage/scan/stoppable_reads.h"
#include "salvage/scan/text_transfer.h"
#include "salvage/writing/film_writer.h"

namespace zelvo::salvage {

namespace {

/// Counts how much was read, whoever reads.
class WatchedFile final : public platform::ReadableFile {
 public:
  WatchedFile(platform::ReadableFile& file, SalvageObserver& observer) : file_(file), observer_(observer) {}
  platform::IoResult readAt(std::uint64_t offset, std::span<std::byte> into) override {
    const platform::IoResult result = file_.readAt(offset, into);
    read_.add(result.count);
    return result;
  }
  /// Tells the observer of what was read since. Thread: the one that repairs.
  void tell() {
    const std::uint64_t read = read_;
    if (read != told_) observer_.read(read - told_);
    told_ = read;
  }
  std::uint64_t size() override { return file_.size(); }

 private:
  platform::ReadableFile& file_;
  SalvageObserver& observer_;
  platform::Relaxed<std::uint64_t> read_;
  std::uint64_t told_ = 0;
};

/// A decoder that has nothing to say any more once the run is stopped.
class StoppableDecoder final : public platform::TrialDecoder {
 public:
  StoppableDecoder(platform::TrialDecoder& decoder, const platform::CancelMark& cancel)
      : decoder_(decoder), cancel_(cancel) {}
  [[nodiscard]] bool open(const platform::TrialStream& stream) override {
    return !cancel_.abandoned() && decoder_.open(stream);
  }
  [[nodiscard]] std::optional<platform::TrialAnswer> decode(std::span<const std::byte> payload,
                                                            platform::WantedPlanes wanted) override {
    return cancel_.abandoned() ? std::nullopt : decoder_.decode(payload, wanted);
  }
  [[nodiscard]] std::optional<platform::TrialAnswer> finish(platform::WantedPlanes wanted) override {
    return cancel_.abandoned() ? std::nullopt : decoder_.finish(wanted);
  }
  [[nodiscard]] platform::Bytes usualExtra(const platform::TrialStream& stream) override {
    return cancel_.abandoned() ? platform::Bytes() : decoder_.usualExtra(stream);
  }
  [[nodiscard]] bool isThere() override { return decoder_.isThere(); }

 private:
  platform::TrialDecoder& decoder_;
  const platform::CancelMark& cancel_;
};

/// How large the output may be: an output that is much larger than its input is a fault or an attack.
std::uint64_t largestOutput(std::uint64_t inputSize) {
  constexpr std::uint64_t kRoom = std::uint64_t{16} << 20U;
  return inputSize + inputSize / 20 + kRoom;
}

/// Where more candidates and entries of indexes than this are weighed, nothing is decoded: what they take and what a
/// decoder may take would come to too much together. A film of eleven hours has as many.
constexpr std::size_t kCrowded = 2'000'000;

class Work {
 public:
  explicit Work(const SalvageRun& run)
      : run_(run),
        stoppable_(stoppable(run, run.sharedInput)),
        stoppableDonor_(stoppable(run, run.sharedDonor)),
        retried_(stoppable_ ? static_cast<platform::ReadableFile&>(*stoppable_) : run.input),
        rescued_(retried_, run.rescue != nullptr ? run.rescue->lost : kNothing),
        file_(rescued_, run.observer),
        text_(TextTransfer::find(file_, [&run] { return run.cancel.abandoned(); })),
        recent_(text_ ? static_cast<platform::ReadableFile&>(*text_) : file_),
        input_(recent_) {
    if (run.decoder != nullptr) decoder_.emplace(*run.decoder, run.cancel);
    report_.inputSize = run.inputSize;
    if (run.rescue != nullptr) unrescued_ = run.rescue->lost;
    if (text_) text_->moveToOriginal(unrescued_);
    if (text_) report_.returnsLeftOut = run.inputSize - std::min(run.inputSize, text_->size());
    report_.outputLimit = largestOutput(run.inputSize);
  }

  SalvageReport perform() {
    report_.end = makePlan();
    if (run_.rescue != nullptr && report_.end != SalvageEnd::stopped) weigh();
    if (report_.end == SalvageEnd::planned) report_.end = makeFilm();
    if (run_.cancel.abandoned()) report_.end = SalvageEnd::stopped;
    report_.readFailures = input_.failures();
    return std::move(report_);
  }

 private:
  [[nodiscard]] bool isEnding() const { return run_.cancel.abandoned(); }

  static std::unique_ptr<StoppableReads> stoppable(const SalvageRun& run,
                                                   std::shared_ptr<platform::ReadableFile> file) {
    return file ? std::make_unique<StoppableReads>(std::move(file), run.cancel, run.workers) : nullptr;
  }

  SalvageEnd makePlan() {
    run_.observer.stage(SalvageStage::readingHeaders);
    const SurvivingHeaders headers = survivingHeaders(input_, unrescued_);
    mediaBegin_ = headers.mediaBegin();
    report_.hasMainHeader = headers.main.has_value();
    if (headers.main || !headers.streams.empty()) report_.headerEnd = headers.mediaBegin();
    report_.headersClaimed = headers.main ? headers.main->streams : 0;
    if (isEnding()) return SalvageEnd::stopped;
    const StreamCodes codes(headers);
    file_.tell();
    run_.observer.stage(SalvageStage::searching);
    const auto isEndingAfterTelling = [this] {
      file_.tell();
      return isEnding();
    };
    MediaScan scan = scanMedia(input_, headers.mediaBegin(), codes, isEndingAfterTelling, {}, &run_.workers);
    file_.tell();
    if (isEnding()) return SalvageEnd::stopped;
    report_.chunksLeftOut = scan.leftOut;

    run_.observer.stage(SalvageStage::weighing);
    leaveOutUnrescued(scan, unrescued_);
    ChunkChain chain = linkChunks(scan.candidates, scan.chunkEnds(), scan.end);
    const std::vector<SeenStream> seen = seenStreams(scan.candidates, chain, codes);
    IndexTemplate index = indexTemplate(input_, headers, codes, scan);
    isCrowded_ = scan.candidates.size() + index.entries.size() > kCrowded;
    header_ = filmHeader(headers, seen);
    if (header_.information.empty()) header_.information = informationAfterMedia(input_, scan.candidates);
    findLostHeaders(scan, chain, seen, index);
    const auto isSound = [](const FilmStream& stream) { return stream.header.type == avi::kAuds; };
    if (run_.choices.rates.samples && std::ranges::count_if(header_.streams, isSound) > 1)
      return SalvageEnd::manySounds;
    applyKnownRates(header_, run_.choices.rates);
    if (header_.streams.empty()) return seen.empty() ? SalvageEnd::noMedia : SalvageEnd::noHeader;
    const std::vector<StreamFacts> facts = learnStreams(scan.candidates, chain);
    report_.indexes = index.tables;
    report_.indexes.insert(report_.indexes.end(), index.standard.begin(), index.standard.end());
    if (isEnding()) return SalvageEnd::stopped;
    SpentEvidence spent{scan, chain, index};
    plan_ = planFilm({input_, headers, header_, codes, scan, chain, facts, index, decoder()}, &spent);
    if (decoder() != nullptr) flagKeysByDecoding(*decoder(), input_, header_, TrialBudget(), plan_);
    report_.lacksDecoder = (plan_.cutsOpen > 0 || report_.streamsWithoutHeader > 0) && !canDecode();
    describePlan(report_, plan_, header_, run_.choices.closesGaps);
    if (run_.choices.emptiesDamaged) emptyDamagedPictures(plan_, header_);
    if (run_.choices.closesGaps) closeGaps(plan_);
    const bool hasMedia = std::ranges::any_of(plan_.slots, [](const Slot& slot) { return slot.hasSource(); });
    if (hasMedia) return SalvageEnd::planned;
    report_.verdict = SalvageVerdict::hopeless;
    return SalvageEnd::noMedia;
  }

  void weigh() {
    std::vector<ByteSpan> places;
    for (const ByteSpan& span : run_.rescue->lost)
      places.push_back({span.begin + run_.rescue->offset, span.end + run_.rescue->offset});
    const auto isMadeAgain = [](const FilmStream& stream) { return stream.origin != HeaderOrigin::own; };
    const bool areHeadersHurt =
        !report_.hasMainHeader || report_.streamsWithoutHeader > 0 || std::ranges::any_of(header_.streams, isMadeAgain);
    report_.rescue = weighRescue({input_, plan_, header_, unrescued_, places, mediaBegin_, areHeadersHurt});
  }

  /// Null when nothing can be tried.
  [[nodiscard]] platform::TrialDecoder* decoder() { return decoder_ && !isCrowded_ ? &*decoder_ : nullptr; }
  [[nodiscard]] bool canDecode() { return decoder_ && decoder_->isThere(); }

  /// Gives streams a header that have none: a donor's, else one that is put together.
  void findLostHeaders(const MediaScan& scan, const ChunkChain& chain, const std::vector<SeenStream>& seen,
                       const IndexTemplate& index) {
    const auto sample = [&] {
      return sampleStreams(input_, scan.candidates, chain, streamsWithoutHeader(header_, seen));
    };
    std::vector<StreamSample> lost = sample();
    if (!lost.empty() && run_.donor != nullptr) {
      avi::InputFile donor(stoppableDonor_ ? static_cast<platform::ReadableFile&>(*stoppableDonor_) : *run_.donor);
      report_.isDonorUseless = takeFromDonor(header_, survivingHeaders(donor), lost) == 0;
      lost = sample();
    }
    if (!lost.empty())
      report_.fields =
          synthesiseHeaders(header_, {lost, index, scan.candidates, chain, run_.choices.rates, &input_, decoder()});
    report_.streamsWithoutHeader = streamsWithoutHeader(header_, seen).size();
  }

  SalvageEnd makeFilm() {
    report_.outputSize = roughSize(plan_, header_);
    if (report_.outputSize > report_.outputLimit && !run_.choices.allowsGrowth) return SalvageEnd::tooLarge;
    const auto layout = layOut(plan_, header_);
    if (!layout) return SalvageEnd::tooLarge;
    report_.outputSize = layout->size();
    if (report_.outputSize > report_.outputLimit && !run_.choices.allowsGrowth) return SalvageEnd::tooLarge;
    if (!run_.makeOutput || isEnding()) return SalvageEnd::planned;
    platform::WritableFile* const out = run_.makeOutput(report_.outputSize);
    if (out == nullptr) return SalvageEnd::noOutput;
    run_.observer.stage(SalvageStage::writing);
    const WrittenFilm written =
        writeFilm({input_, *out, run_.workers, plan_, header_, *layout, [this] { return isEnding(); }});
    report_.unreadable = written.unreadable;
    report_.writeFailure = written.failure;
    return SalvageEnd::written;
  }

  static inline const std::vector<ByteSpan> kNothing;

  const SalvageRun& run_;
  const std::unique_ptr<StoppableReads> stoppable_;  ///< null where reads are waited for, as the next
  const std::unique_ptr<StoppableReads> stoppableDonor_;
  RetriedReads retried_;
  RescuedFile rescued_;
  WatchedFile file_;
  const std::unique_ptr<TextTransfer> text_;  ///< the input as it was before it was taken for text
  RecentReads recent_;
  avi::InputFile input_;
  std::optional<StoppableDecoder> decoder_;  ///< none when the run has none
  std::vector<ByteSpan> unrescued_;          ///< in offsets of the input as it was before it was taken for text
  std::uint64_t mediaBegin_ = 0;
  bool isCrowded_ = false;  ///< too much is weighed for a decoder beside it
  FilmHeader header_;
  FilmPlan plan_;
  SalvageReport report_;
};

}  // namespace

SalvageReport salvage(const SalvageRun& run) { return Work(run).perform(); }

}  // namespace zelvo::salvage
