// The slots are walked in the order of the film, with the place in the file and in the original up to which all is
// told. What a slot without bytes covers is only known when the next one that has some comes.
#include "salvage/plan/plan_spans.h"

#include <algorithm>
#include <optional>

#include "avi/chunk_codes.h"
#include "salvage/plan/damage_marks.h"

namespace zelvo::salvage {

namespace {

/// Later ones are not told.
constexpr std::size_t kMaxSpans = 262'144;

/// Where forms began in the original: each behind the one before it, as long as that says it is. One whose size cannot
/// be true tells nothing.
std::vector<FormPlace> findForms(const Evidence& evidence) {
  constexpr std::uint64_t kSlack = std::uint64_t{1} << 20U;
  const CandidateList& candidates = evidence.scan.candidates;
  std::vector<FormPlace> forms;
  FormPlace last{0, 0, evidence.headers.formSize.value_or(0)};
  for (std::size_t i = 0; i + 1 < candidates.size(); ++i) {
    const Candidate& form = candidates[i];
    const Candidate& media = candidates[i + 1];
    const bool isForm = form.kind() == CandidateKind::form && form.head() == avi::kAvix.value &&
                        media.offset() == form.next() && media.head() == avi::kMovi.value;
    if (!isForm) continue;
    if (forms.size() >= kMaxSpans) break;
    const std::uint64_t found = form.offset() - last.file;
    const std::uint64_t told = avi::kChunkHeader + last.size + last.size % 2;
    const bool isTrue = told + kSlack >= found && told <= found + found / 2 + kSlack;
    last = {form.offset(), last.original + (isTrue ? told : found), form.size()};
    forms.push_back(last);
  }
  return forms;
}

std::vector<PlanSpan> foreignSpans(const Evidence& evidence, std::span<const std::uint8_t> isForeign) {
  std::vector<PlanSpan> spans;
  const CandidateList& candidates = evidence.scan.candidates;
  bool isOpen = false;
  for (std::size_t i = 0; i < isForeign.size(); ++i) {
    const Candidate& candidate = candidates[i];
    if (candidate.kind() != CandidateKind::data) continue;
    if (isForeign[i] == 0) {
      isOpen = false;
      continue;
    }
    if (!isOpen) {
      if (spans.size() >= kMaxSpans) return spans;
      PlanSpan span;
      span.begin = candidate.offset();
      span.cause = LossCause::foreign;
      spans.push_back(span);
      isOpen = true;
    }
    spans.back().end = std::min(candidate.payloadEnd(), evidence.scan.end);
  }
  return spans;
}

/// Whether the place of what was lost to it is still there, with something else in it.
bool liesInFile(LossCause cause) {
  return cause == LossCause::zeroed || cause == LossCause::overwritten || cause == LossCause::unreadable ||
         cause == LossCause::unrescued;
}

class Telling {
 public:
  Telling(const SpanEvidence& from, const FilmPlan& plan) : from_(from), plan_(plan) {}

  std::vector<PlanSpan> run();

 private:
  void tell(std::size_t number, const Slot& slot);
  void place(const Slot& slot);
  [[nodiscard]] std::optional<LossCause> causeOf(const Slot& slot) const;
  [[nodiscard]] std::optional<LossCause> causeBesideDisk(const Slot& slot) const;
  [[nodiscard]] bool isUnrescued(std::uint64_t begin, std::uint64_t end) const {
    return touches(from_.evidence.scan.unrescued, begin, end);
  }
  [[nodiscard]] LossCause causeInFile(std::uint64_t begin, std::uint64_t end) const;
  [[nodiscard]] std::optional<std::int64_t> turn(std::size_t entry) const;
  [[nodiscard]] std::uint64_t usualSize(const Slot& slot) const;
  void findMoves();
  void endOpen();
  void addTail();

  const SpanEvidence& from_;
  const FilmPlan& plan_;
  std::vector<PlanSpan> spans_;
  std::optional<PlanSpan> open_;        ///< not ended yet
  std::size_t entry_ = 0;               ///< of the next slot that is indexed
  std::vector<bool> liesBetweenMoves_;  ///< of each entry
  std::size_t missing_ = 0;             ///< the next of `from_.missing`
  std::size_t form_ = 0;                ///< the next of `from_.marks.forms`
  std::uint64_t refilled_ = 0;          ///< about how long the chunks are that were filled in since the last slot
  std::int64_t shift_ = 0;              ///< offsets in the original less those in the file, where no index tells
  std::uint64_t fileEnd_ = 0;           ///< what is told so far
  std::uint64_t originalEnd_ = 0;
  // Of the slot at hand: its chunk with its header.
  bool hasPlace_ = false;  ///< in the file
  std::uint64_t fileBegin_ = 0;
  std::uint64_t fileStop_ = 0;
  bool hasOriginal_ = false;
  std::uint64_t originalBegin_ = 0;
  std::uint64_t originalStop_ = 0;
};

/// How much further the next entry moved than this one; nothing for the last.
std::optional<std::int64_t> Telling::turn(std::size_t entry) const {
  if (entry + 1 >= from_.entries.size()) return std::nullopt;
  const auto& values = from_.places.displacements;
  return values[from_.places.places[entry + 1].displacement] - values[from_.places.places[entry].displacement];
}

LossCause Telling::causeInFile(std::uint64_t begin, std::uint64_t end) const {
  if (isUnrescued(begin, end)) return LossCause::unrescued;
  if (touches(from_.evidence.scan.unreadable, begin, end)) return LossCause::unreadable;
  return touches(from_.evidence.scan.zeroed, begin, end) ? LossCause::zeroed : LossCause::overwritten;
}

/// Notes the entries between two whose headers stand in the file and that moved differently.
void Telling::findMoves() {
  const auto& places = from_.places.places;
  liesBetweenMoves_ = std::vector<bool>(from_.entries.size());
  std::optional<std::size_t> before;
  for (std::size_t i = 0; i < from_.entries.size(); ++i) {
    if (places[i].support == Support::none) continue;
    if (before && places[*before].displacement != places[i].displacement)
      std::fill(liesBetweenMoves_.begin() + static_cast<std::ptrdiff_t>(*before + 1),
                liesBetweenMoves_.begin() + static_cast<std::ptrdiff_t>(i), true);
    before = i;
  }
}

/// Finds where the slot's chunk lies, in the file and in the original.
void Telling::place(const Slot& slot) {
  hasPlace_ = slot.hasSource() || (slot.size == 0 && slot.source != 0);
  hasOriginal_ = slot.isIndexed || hasPlace_;
  if (hasPlace_) {
    fileBegin_ = slot.source - std::min(slot.source, avi::kChunkHeader);
    const Piece first = slot.pieces == Slot::kOnePiece ? Piece{slot.source, slot.size} : plan_.pieces[slot.pieces];
    // Where the front is lost, the rest is there.
    fileStop_ = slot.source + (first.offset == Piece::kSilence ? slot.size - first.size : first.size);
  }
  if (slot.isIndexed) {
    const TemplateEntry& entry = from_.entries[entry_];
    originalBegin_ = entry.offset;
    originalStop_ = entry.end() + entry.size % 2;
    if (hasPlace_) shift_ = static_cast<std::int64_t>(originalBegin_) - static_cast<std::int64_t>(fileBegin_);
  } else if (hasPlace_) {
    while (missing_ < from_.missing.size() && from_.missing[missing_].offset <= fileBegin_)
      shift_ += static_cast<std::int64_t>(from_.missing[missing_++].bytes);
    // Chunks that only clocks tell of, and that the file has not half the room for, are missing from it.
    const std::uint64_t room = fileBegin_ - std::min(fileBegin_, fileEnd_);
    if (room * 2 < refilled_) shift_ += static_cast<std::int64_t>(refilled_ - room);
    const auto& forms = from_.marks.forms;
    for (; form_ < forms.size() && forms[form_].file <= fileBegin_; ++form_)
      shift_ = static_cast<std::int64_t>(forms[form_].original) - static_cast<std::int64_t>(forms[form_].file);
    const auto moved = [&](std::uint64_t offset) {
      return static_cast<std::uint64_t>(std::max<std::int64_t>(0, static_cast<std::int64_t>(offset) + shift_));
    };
    originalBegin_ = moved(fileBegin_);
    originalStop_ = moved(fileStop_ + fileStop_ % 2);
  }
}

/// A chunk of which something is lost lost it to the disk when it, or the file's end that cuts it, was not rescued.
std::optional<LossCause> Telling::causeOf(const Slot& slot) const {
  const bool isHurt = slot.state == SlotState::torn || slot.state == SlotState::cut;
  if (isHurt && isUnrescued(fileBegin_, fileStop_ + 1)) return LossCause::unrescued;
  return causeBesideDisk(slot);
}

std::optional<LossCause> Telling::causeBesideDisk(const Slot& slot) const {
  switch (slot.state) {
    case SlotState::whole:
      if (slot.pieces == Slot::kOnePiece) return std::nullopt;
      return LossCause::moved;
    case SlotState::sizeMended:
      return LossCause::sizeField;
    case SlotState::codeMended:
      return LossCause::code;
    case SlotState::damaged:
      return causeInFile(fileBegin_, fileStop_);
    case SlotState::rejoined:
      return LossCause::inserted;
    case SlotState::cut:
      return LossCause::cut;
    case SlotState::torn:
      return slot.isIndexed && turn(entry_).value_or(0) > 0 ? LossCause::inserted : LossCause::missing;
    case SlotState::refilled:
      return LossCause::missing;
    case SlotState::lost:
      break;
  }
  if (!slot.isIndexed) return LossCause::missing;
  const std::int64_t place = from_.places.headerOf(entry_, from_.entries);
  if (place < 0) return LossCause::cut;
  const auto begin = static_cast<std::uint64_t>(place);
  const std::uint64_t end = begin + avi::kChunkHeader + from_.entries[entry_].size;
  if (begin >= from_.evidence.scan.end) return isUnrescued(begin, end) ? LossCause::unrescued : LossCause::cut;
  const LossCause inPlace = causeInFile(begin, end);
  return liesBetweenMoves_[entry_] && inPlace == LossCause::overwritten ? LossCause::missing : inPlace;
}

std::uint64_t Telling::usualSize(const Slot& slot) const {
  const auto& facts = from_.evidence.facts;
  const std::uint8_t number = from_.streams.numberOf(slot.stream);
  return slot.size == 0 && number < facts.size() ? facts[number].mean : slot.size;
}

/// The open span reaches up to the slot at hand.
void Telling::endOpen() {
  if (!open_) return;
  if (hasPlace_ && open_->end <= open_->begin) open_->end = std::max(open_->begin, fileBegin_);
  if (hasOriginal_ && open_->originalEnd < originalBegin_ && open_->originalEnd == open_->originalBegin)
    open_->originalEnd = originalBegin_;
  const std::uint64_t next = hasPlace_ ? fileBegin_ : open_->end;
  if (open_->cause == LossCause::missing && isUnrescued(open_->begin, next)) {
    open_->cause = LossCause::unrescued;
    open_->end = std::max(open_->end, next);
  }
  if (spans_.size() < kMaxSpans) spans_.push_back(*open_);
  open_.reset();
}

void Telling::tell(std::size_t number, const Slot& slot) {
  place(slot);
  const auto cause = causeOf(slot);
  if (open_ && open_->cause != cause) endOpen();
  if (cause) {
    if (!open_) {
      PlanSpan span;
      span.begin = hasPlace_ ? fileBegin_ : fileEnd_;
      span.end = span.begin;
      span.originalBegin = hasOriginal_ ? originalBegin_ : originalEnd_;
      span.originalEnd = span.originalBegin;
      span.firstSlot = static_cast<std::uint32_t>(number);
      span.cause = *cause;
      open_ = span;
    }
    if (hasPlace_) open_->end = std::max(open_->end, fileStop_);
    if (liesInFile(*cause) && !hasPlace_ && slot.isIndexed) {
      const std::int64_t place = std::max<std::int64_t>(0, from_.places.headerOf(entry_, from_.entries));
      const std::uint32_t size = from_.entries[entry_].size;
      const std::uint64_t end = static_cast<std::uint64_t>(place) + avi::kChunkHeader + size + size % 2;
      const std::uint64_t most = *cause == LossCause::unrescued ? end : from_.evidence.scan.end;
      open_->end = std::max(open_->end, std::min(end, most));
    }
    if (hasOriginal_) open_->originalEnd = std::max(*open_->originalEnd, originalStop_);
    ++open_->slots;
  }
  if (hasPlace_) fileEnd_ = fileStop_;
  if (hasOriginal_) originalEnd_ = originalStop_;
  if (hasPlace_) refilled_ = 0;
  if (slot.state == SlotState::refilled) refilled_ += avi::kChunkHeader + usualSize(slot);
  if (slot.isIndexed) ++entry_;
}

/// What the headers say was after the last chunk.
void Telling::addTail() {
  const SurvivingHeaders& headers = from_.evidence.headers;
  std::uint64_t end = headers.media ? headers.media->offset + avi::kChunkHeader + headers.media->size : 0;
  for (const SurvivingStream& stream : headers.streams) {
    if (!stream.superIndex) continue;
    for (const SuperIndexEntry& entry : stream.superIndex->entries)
      end = std::max(end, std::min(entry.offset, Candidate::kOffsetLimit));
  }
  const auto& forms = from_.marks.forms;
  if (!forms.empty()) end = std::max(end, forms.back().original + avi::kChunkHeader + forms.back().size);
  const std::uint64_t fileSize = from_.evidence.scan.end;
  const auto inFile = static_cast<std::int64_t>(end) - shift_;
  if (originalEnd_ >= end || inFile <= static_cast<std::int64_t>(fileSize)) return;
  PlanSpan span;
  span.begin = std::min(fileEnd_, fileSize);
  span.end = fileSize;
  span.originalBegin = originalEnd_;
  span.originalEnd = end;
  span.firstSlot = static_cast<std::uint32_t>(plan_.slots.size());
  span.cause = isUnrescued(span.begin, static_cast<std::uint64_t>(inFile)) ? LossCause::unrescued : LossCause::cut;
  spans_.push_back(span);
}

std::vector<PlanSpan> Telling::run() {
  fileEnd_ = originalEnd_ = from_.evidence.headers.mediaBegin();
  findMoves();
  for (std::size_t i = 0; i < plan_.slots.size(); ++i) tell(i, plan_.slots[i]);
  hasPlace_ = hasOriginal_ = false;
  endOpen();
  addTail();
  const auto& foreign = from_.marks.foreign;
  const std::size_t room = kMaxSpans - std::min(kMaxSpans, spans_.size());
  spans_.insert(spans_.end(), foreign.begin(),
                foreign.begin() + static_cast<std::ptrdiff_t>(std::min(room, foreign.size())));
  std::ranges::stable_sort(spans_, {}, &PlanSpan::begin);
  return std::move(spans_);
}

}  // namespace

FileMarks fileMarks(const Evidence& evidence, std::span<const std::uint8_t> isForeign) {
  return {findForms(evidence), foreignSpans(evidence, isForeign)};
}

std::vector<PlanSpan> planSpans(const SpanEvidence& from, const FilmPlan& plan) { return Telling(from, plan).run(); }

}  // namespace zelvo::salvage
