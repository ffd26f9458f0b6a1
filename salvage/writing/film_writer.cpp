// 1. The headers, whose every number the layout gives.
// 2. Form by form: the chunks in their order, read through a window that slides over the input; then the standard
//    indexes; after the first form's list its "idx1".
// Which pictures are keys is seen while they are copied, so it is there when the indexes are written.
#include "salvage/writing/film_writer.h"

#include <algorithm>
#include <span>
#include <vector>

#include "avi/chunk_codes.h"
#include "platform/page_bytes.h"
#include "salvage/payloads/codec.h"
#include "salvage/payloads/key_picture.h"
#include "salvage/payloads/silence.h"
#include "salvage/writing/film_output.h"
#include "salvage/writing/header_writer.h"

namespace zelvo::salvage {

namespace {

constexpr std::size_t kWindow = std::size_t{1} << 20U;
constexpr std::size_t kSmallestRead = std::size_t{1} << 12U;
/// What cannot be read is stepped over in pages.
constexpr std::uint64_t kFilePage = 4096;
/// Silence is made in parts of at most this size.
constexpr std::uint32_t kMaxSilence = std::uint32_t{1} << 20U;

/// The bytes of the input, through one window. Thread: one.
class Window {
 public:
  explicit Window(avi::InputFile& input) : input_(input), size_(input.size()) {}

  /// The bytes from `offset` on, at most `size`; fewer where the window or the input ends or cannot be read. Valid
  /// until the next call.
  [[nodiscard]] std::span<const std::byte> at(std::uint64_t offset, std::size_t size) {
    if (offset >= size_) return {};
    const bool holdsAll = offset >= begin_ && offset - begin_ + size <= held_;
    if (!holdsAll && !(offset >= begin_ && offset < begin_ + held_ && size > kKeyHead)) fill(offset);
    const auto from = static_cast<std::size_t>(offset - begin_);
    return std::span<const std::byte>(bytes_).subspan(from, std::min(size, held_ - from));
  }
  [[nodiscard]] bool isBehindEnd(std::uint64_t offset) const { return offset >= size_; }

 private:
  /// More and more is read while one place follows on the other, and little where the plan jumps to and fro.
  void fill(std::uint64_t offset) {
    const bool followsOn = offset >= begin_ && offset - begin_ <= held_ + kSmallestRead;
    wanted_ = followsOn ? std::min(2 * wanted_, kWindow) : kSmallestRead;
    begin_ = offset;
    held_ = 0;
    held_ = input_.read(offset, std::span(bytes_).first(wanted_));
  }

  avi::InputFile& input_;
  const std::uint64_t size_;
  platform::PageBytes bytes_{kWindow};
  std::uint64_t begin_ = 0;
  std::size_t held_ = 0;
  std::size_t wanted_ = kSmallestRead;
};

class Writer {
 public:
  explicit Writer(const FilmWriting& writing)
      : writing_(writing), window_(writing.input), out_(writing.out, writing.workers), isKey_(writing.layout.slots) {
    for (const FilmStream& stream : writing.header.streams) {
      streams_.push_back({codecOf(stream.header), stream.header.type == avi::kVids, Silence(stream.header)});
    }
  }

  WrittenFilm write() {
    // A file system that knows the size ahead has less to do. One that has no room for it would only fail later; one
    // that cannot do it writes all the same.
    if (const std::error_code error = writing_.out.reserve(writing_.layout.size()); platform::isNoRoom(error)) {
      written_.failure = avi::WriteFailure{0, error};
      return written_;
    }
    out_.append(headerBytes(writing_.header, writing_.layout));
    for (const FormLayout& form : writing_.layout.forms) {
      if (!writeForm(form)) break;
    }
    written_.failure = out_.finish();
    return written_;
  }

 private:
  struct Stream {
    Codec codec;
    bool isVideo;
    Silence silence;
    bool hasBegun = false;  ///< a picture of it was written
  };

  /// An entry of a standard index.
  struct IndexedChunk {
    std::uint32_t place = 0;  ///< of the payload, from the index's base on
    std::uint32_t size = 0;   ///< bit 31: not a key
  };

  [[nodiscard]] std::uint32_t sizeOf(std::size_t slot) const {
    return payloadSize(writing_.plan.slots[slot], writing_.header);
  }
  [[nodiscard]] bool mayGoOn() const { return !out_.failed() && !writing_.isEnding(); }

  bool writeForm(const FormLayout& form) {
    const bool isFirst = form.begin == 0;
    if (!isFirst) {
      out_.code(avi::kRiff);
      out_.number32(static_cast<std::uint32_t>(form.end - form.begin - 8));
      out_.code(avi::kAvix);
    }
    std::uint64_t mediaEnd = form.end;
    if (isFirst) mediaEnd -= 8 + 16 * std::uint64_t{form.written};
    out_.code(avi::kList);
    out_.number32(static_cast<std::uint32_t>(mediaEnd - form.media - 8));
    out_.code(avi::kMovi);
    for (std::size_t slot = form.firstSlot; slot < form.endSlot; ++slot) {
      if (slot % 64 == 0 && !mayGoOn()) return false;
      if (isWritten(writing_.plan.slots[slot])) writeChunk(slot);
    }
    writeStandardIndexes(form);
    if (isFirst) writeTable(form);
    return mayGoOn();
  }

  void writeChunk(std::size_t number) {
    const Slot& slot = writing_.plan.slots[number];
    const std::uint32_t size = sizeOf(number);
    Stream& stream = streams_[slot.stream];
    out_.code(chunkCode(writing_.header, slot));
    out_.number32(size);
    if (slot.isPalette) {
      copyPayload(slot, size, stream.silence);
    } else if (!slot.hasSource()) {
      isKey_[number] = !stream.isVideo;
      if (size > 0) writeSilence(stream.silence, size);
    } else {
      const Piece first = firstPiece(slot);
      const auto head = window_.at(first.offset, std::min<std::size_t>(first.size, kKeyHead));
      isKey_[number] = isKey(stream, slot, head);
      if (slot.state == SlotState::whole) stream.silence.learn(head);
      copyPayload(slot, size, stream.silence);
    }
    if (isKey_[number] && stream.isVideo) ++written_.keyPictures;
    if (size % 2 != 0) out_.zeros(1);
  }

  [[nodiscard]] static bool isKey(Stream& stream, const Slot& slot, std::span<const std::byte> head) {
    if (!stream.isVideo) return true;
    const bool isFirst = !stream.hasBegun;
    stream.hasBegun = true;
    if (slot.state == SlotState::torn || slot.state == SlotState::cut || slot.state == SlotState::damaged) return false;
    const auto told = isKeyPicture(stream.codec, head);
    if (told && (*told || !hasOtherKeys(stream.codec))) return *told;
    return slot.isIndexed ? slot.hasKeyFlag : !told && isFirst;
  }

  [[nodiscard]] Piece firstPiece(const Slot& slot) const {
    if (slot.pieces == Slot::kOnePiece) return {slot.source, slot.size};
    return slot.pieces < writing_.plan.pieces.size() ? writing_.plan.pieces[slot.pieces] : Piece{};
  }

  /// `size` bytes, whatever the pieces come to: what they lack is zero.
  void copyPayload(const Slot& slot, std::uint32_t size, const Silence& silence) {
    if (slot.pieces == Slot::kOnePiece) {
      copy(slot.source, size);
      return;
    }
    std::uint32_t left = size;
    for (std::size_t i = slot.pieces; left > 0 && i < writing_.plan.pieces.size(); ++i) {
      const Piece& piece = writing_.plan.pieces[i];
      const std::uint32_t part = std::min(left, piece.size);
      if (piece.offset == Piece::kSilence) {
        writeSilence(silence, part);
      } else {
        copy(piece.offset, part);
      }
      left -= part;
    }
    out_.zeros(left);
  }

  void copy(std::uint64_t offset, std::uint32_t size) {
    while (size > 0 && mayGoOn()) {
      const auto bytes = window_.at(offset, size);
      out_.append(bytes);
      size -= static_cast<std::uint32_t>(bytes.size());
      offset += bytes.size();
      if (!bytes.empty()) continue;
      const std::uint64_t page = window_.isBehindEnd(offset) ? size : kFilePage - offset % kFilePage;
      const auto missing = static_cast<std::uint32_t>(std::min<std::uint64_t>(size, page));
      out_.zeros(missing);
      written_.unreadable += missing;
      size -= missing;
      offset += missing;
    }
  }

  void writeSilence(const Silence& silence, std::uint32_t size) {
    for (; size > 0 && mayGoOn(); size -= std::min(size, kMaxSilence)) {
      still_.resize(std::min(size, kMaxSilence));
      silence.fill(still_);
      out_.append(still_);
    }
  }

  /// All streams' in one walk over the chunks: there may be a hundred.
  void writeStandardIndexes(const FormLayout& form) {
    constexpr std::uint32_t kNoKey = 0x80000000U;
    const std::uint64_t base = form.media + 8;
    std::vector<std::size_t> ends;  // of each stream's entries, while they are put in
    std::size_t all = 0;
    for (const ChunkSum& sum : form.chunks) {
      ends.push_back(all);
      all += static_cast<std::size_t>(sum.chunks);
    }
    std::vector<IndexedChunk> entries(all);
    eachChunk(form, [&](std::size_t slot, std::uint64_t offset, std::uint32_t size) {
      const Slot& indexed = writing_.plan.slots[slot];
      if (indexed.isPalette) return;
      entries[ends[indexed.stream]++] = {static_cast<std::uint32_t>(offset + 8 - base),
                                         size | (isKey_[slot] ? 0 : kNoKey)};
    });
    std::size_t begin = 0;
    for (std::size_t stream = 0; stream < ends.size(); begin = ends[stream++]) {
      if (ends[stream] > begin)
        writeStandardIndex(stream, base, std::span(entries).subspan(begin, ends[stream] - begin));
    }
  }

  void writeStandardIndex(std::size_t stream, std::uint64_t base, std::span<const IndexedChunk> entries) {
    const avi::FourCC chunkId = chunkCode(writing_.header, stream);
    avi::FourCC code;
    code.value = (avi::kIx00.value & 0xffffU) | (chunkId.value & 0xffffU) << 16U;
    out_.code(code);
    out_.number32(static_cast<std::uint32_t>(standardIndexSize(entries.size()) - 8));
    out_.append(std::array{std::byte{2}, std::byte{0}, std::byte{0}, std::byte{1}});  // AVI_INDEX_OF_CHUNKS
    out_.number32(static_cast<std::uint32_t>(entries.size()));
    out_.code(chunkId);
    out_.number64(base);
    out_.number32(0);  // dwReserved
    for (const IndexedChunk& entry : entries) {
      out_.number32(entry.place);
      out_.number32(entry.size);
    }
  }

  void writeTable(const FormLayout& form) {
    constexpr std::uint32_t kKeyFlag = 0x10;  // AVIIF_KEYFRAME
    constexpr std::uint32_t kNoTime = 0x100;  // AVIIF_NO_TIME
    out_.code(avi::kIdx1);
    out_.number32(static_cast<std::uint32_t>(16 * form.written));
    eachChunk(form, [&](std::size_t slot, std::uint64_t offset, std::uint32_t size) {
      out_.code(chunkCode(writing_.header, writing_.plan.slots[slot]));
      const std::uint32_t flags = writing_.plan.slots[slot].isPalette ? kNoTime : 0;
      out_.number32(isKey_[slot] ? kKeyFlag : flags);
      out_.number32(static_cast<std::uint32_t>(offset - form.media - 8));
      out_.number32(size);
    });
  }

  /// Calls `visit` with each of a form's slots that is written, the offset of its chunk in the output and the size of
  /// its payload.
  template <class Visit>
  void eachChunk(const FormLayout& form, const Visit& visit) const {
    std::uint64_t offset = form.media + 12;
    for (std::size_t slot = form.firstSlot; slot < form.endSlot; ++slot) {
      if (!isWritten(writing_.plan.slots[slot])) continue;
      const std::uint32_t size = sizeOf(slot);
      visit(slot, offset, size);
      offset += 8 + std::uint64_t{size} + size % 2;
    }
  }

  const FilmWriting& writing_;
  Window window_;
  FilmOutput out_;
  std::vector<bool> isKey_;  ///< by slot
  std::vector<Stream> streams_;
  platform::Bytes still_;
  WrittenFilm written_;
};

}  // namespace

WrittenFilm writeFilm(const FilmWriting& writing) { return Writer(writing).write(); }

}  // namespace zelvo::salvage
