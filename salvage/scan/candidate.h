/// Places of a film where a chunk may begin, packed: a large film has millions of them. Offsets and sizes are in bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "avi/fourcc.h"

namespace zelvo::salvage {

enum class CandidateKind : std::uint8_t {
  data,     ///< a stream's chunk
  list,     ///< "LIST" of type "movi" or "rec ": what it holds begins 12 bytes on
  form,     ///< "RIFF": the same
  index,    ///< a standard index, "ix00" and the like
  skipped,  ///< "JUNK", "idx1", any other list: stepped over as a whole
};

/// A possible chunk header: 16 bytes.
class Candidate {
 public:
  /// Offsets from here on cannot be kept: 1 TiB.
  static constexpr std::uint64_t kOffsetLimit = std::uint64_t{1} << 40U;

  Candidate() = default;
  /// `suffix`: of a stream's chunk, its number in StreamCodes. `head`: the first four bytes after the header.
  Candidate(std::uint64_t offset, CandidateKind kind, std::uint8_t stream, std::uint8_t suffix, std::uint32_t size,
            std::uint32_t head)
      : offsetLow_(static_cast<std::uint32_t>(offset & 0xffffffffU)),
        size_(size),
        head_(head),
        offsetHigh_(static_cast<std::uint8_t>(offset >> 32U & 0xffU)),
        stream_(stream),
        kind_(kind),
        suffix_(suffix) {}

  [[nodiscard]] std::uint64_t offset() const { return std::uint64_t{offsetHigh_} << 32U | offsetLow_; }
  /// ckSize, as it stands there.
  [[nodiscard]] std::uint32_t size() const { return size_; }
  /// The first four bytes after the header as a little-endian number: of a payload, or the type of a list or form.
  [[nodiscard]] std::uint32_t head() const { return head_; }
  /// The number in the code of a stream's chunk or of a standard index, 0 to 99.
  [[nodiscard]] std::uint8_t stream() const { return stream_; }
  [[nodiscard]] std::uint8_t suffix() const { return suffix_; }
  [[nodiscard]] CandidateKind kind() const { return kind_; }
  /// Whether what it holds are chunks, so that the next header is expected 12 bytes on.
  [[nodiscard]] bool isContainer() const { return kind_ == CandidateKind::list || kind_ == CandidateKind::form; }
  /// Where its payload ends, without a pad byte.
  [[nodiscard]] std::uint64_t payloadEnd() const { return offset() + 8 + size_; }
  /// Where the next header is expected: after the payload and the pad byte of an odd one.
  [[nodiscard]] std::uint64_t next() const { return isContainer() ? offset() + 12 : payloadEnd() + (size_ & 1U); }

 private:
  std::uint32_t offsetLow_ = 0;
  std::uint32_t size_ = 0;
  std::uint32_t head_ = 0;
  std::uint8_t offsetHigh_ = 0;
  std::uint8_t stream_ = 0;
  CandidateKind kind_ = CandidateKind::data;
  std::uint8_t suffix_ = 0;
};
static_assert(sizeof(Candidate) == 16);

/// Candidates in rising order of their offsets.
/// Thread: one; several may read.
class CandidateList {
 public:
  [[nodiscard]] std::size_t size() const { return candidates_.size(); }
  [[nodiscard]] bool empty() const { return candidates_.empty(); }
  /// `number` below `size()`.
  [[nodiscard]] const Candidate& operator[](std::size_t number) const { return candidates_[number]; }
  [[nodiscard]] const Candidate& back() const { return candidates_.back(); }

  /// Makes room for so many at once, so that growing never holds two copies. What is not used takes no memory.
  void reserve(std::size_t count) { candidates_.reserve(count); }
  /// `candidate` lies after all others.
  void add(const Candidate& candidate) {
    candidates_.push_back(candidate);
    directory_.clear();
  }
  /// Takes away those from `offset` on.
  void dropFrom(std::uint64_t offset) {
    directory_.clear();
    while (!empty() && back().offset() >= offset) candidates_.pop_back();
  }
  /// Of those from number `from` on, keeps those of whose number `keeps` says so, in their order.
  template <class Keeps>
  void thin(const Keeps& keeps, std::size_t from = 0) {
    directory_.clear();
    std::size_t kept = from;
    for (std::size_t i = from; i < size(); ++i) {
      if (keeps(i)) candidates_[kept++] = candidates_[i];
    }
    candidates_.resize(kept);
  }
  /// Makes the directory by which far ones are found in a few looks; it goes when the list changes. Takes a byte of
  /// memory a candidate.
  void makeDirectory();
  /// The first one from number `from` on whose offset is `offset` or more; `size()` without one. The search widens step
  /// by step, so a near one is found at once. `looks` grows by the number of candidates looked at.
  [[nodiscard]] std::size_t firstAtOrAfter(std::uint64_t offset, std::size_t from, std::uint64_t& looks) const;

 private:
  /// Narrows `low` and `high`, between which the answer for `offset` lies, by the directory.
  void narrow(std::uint64_t offset, std::size_t& low, std::size_t& high) const;

  std::vector<Candidate> candidates_;
  /// Offsets are cut into ranges of 2 to the `directoryShift_`: the first candidate of each, and their number at the
  /// end.
  std::vector<std::uint32_t> directory_;
  unsigned directoryShift_ = 0;
};

}  // namespace zelvo::salvage
