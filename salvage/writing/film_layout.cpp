// 1. The slots are shared out among forms; how many forms there are settles how long the headers are.
// 2. Then everything gets its place.
#include "salvage/writing/film_layout.h"

#include <algorithm>
#include <limits>

#include "avi/chunk_codes.h"
#include "salvage/writing/header_writer.h"

namespace zelvo::salvage {

namespace {

constexpr std::uint64_t kListOfFilm = 12;
constexpr std::uint64_t kTableEntry = 16;
constexpr std::uint64_t kStandardEntry = 8;

bool isGone(const Slot& slot) { return slot.state == SlotState::lost || slot.state == SlotState::refilled; }

std::uint64_t chunkSize(std::uint32_t payload) { return avi::kChunkHeader + payload + (payload & 1U); }

void count(ChunkSum& sum, std::uint32_t payload) {
  ++sum.chunks;
  sum.bytes += payload;
  sum.largest = std::max(sum.largest, payload);
}

/// Shares the first `layout.slots` slots out among forms. False when there are too many.
bool shareOut(const FilmPlan& plan, const FilmHeader& header, std::uint64_t formSize, FilmLayout& layout) {
  const auto begin = [&](std::size_t slot) {
    layout.forms.push_back({.firstSlot = slot, .endSlot = slot, .chunks = {}});
    layout.forms.back().chunks.resize(header.streams.size());
  };
  begin(0);
  std::uint64_t used = 0;
  for (std::size_t i = 0; i < layout.slots; ++i) {
    const Slot& slot = plan.slots[i];
    if (!isWritten(slot)) {
      layout.forms.back().endSlot = i + 1;
      continue;
    }
    const std::uint32_t payload = payloadSize(slot, header);
    const std::uint64_t needed = chunkSize(payload) + kStandardEntry + kTableEntry;
    if (used > 0 && used + needed > formSize) {
      if (layout.forms.size() == kMaxForms) return false;
      begin(i);
      used = 0;
    }
    used += needed;
    FormLayout& form = layout.forms.back();
    form.endSlot = i + 1;
    form.mediaEnd += chunkSize(payload);  // a length so far
    ++form.written;
    if (slot.isPalette) continue;
    count(form.chunks[slot.stream], payload);
    count(layout.chunks[slot.stream], payload);
  }
  return true;
}

void place(FilmLayout& layout) {
  std::uint64_t at = 0;
  for (FormLayout& form : layout.forms) {
    const bool isFirst = &form == &layout.forms.front();
    form.begin = at;
    form.media = at + (isFirst ? layout.headerSize : kListOfFilm);
    form.mediaEnd += form.media + kListOfFilm;
    at = form.mediaEnd;
    for (const ChunkSum& sum : form.chunks) {
      if (sum.chunks > 0) at += standardIndexSize(sum.chunks);
    }
    if (isFirst) at += avi::kChunkHeader + kTableEntry * form.written;
    form.end = at;
  }
}

}  // namespace

bool isWritten(const Slot& slot) {
  return !slot.isPalette || slot.state == SlotState::whole || slot.state == SlotState::sizeMended ||
         slot.state == SlotState::codeMended;
}

std::uint32_t payloadSize(const Slot& slot, const FilmHeader& header) {
  if (isGone(slot) && header.streams[slot.stream].header.type != avi::kAuds) return 0;
  return std::min(slot.size, kMaxPayload);
}

std::uint64_t roughSize(const FilmPlan& plan, const FilmHeader& header) {
  std::uint64_t size = 0;
  for (const Slot& slot : plan.slots) {
    if (isWritten(slot)) size += chunkSize(payloadSize(slot, header)) + kStandardEntry;
  }
  return size;
}

std::optional<FilmLayout> layOut(const FilmPlan& plan, const FilmHeader& header, std::uint64_t formSize) {
  FilmLayout layout;
  layout.slots = plan.slots.size();
  while (layout.slots > 0 && isGone(plan.slots[layout.slots - 1])) --layout.slots;
  layout.chunks.resize(header.streams.size());
  if (!shareOut(plan, header, formSize, layout)) return std::nullopt;
  layout.headerSize = headerBytes(header, layout).size();
  place(layout);
  return layout;
}

}  // namespace zelvo::salvage
