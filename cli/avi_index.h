/// The entries of an AVI file's indexes, checked against what they point at: the old index (idx1), the super index
/// (indx) and the standard indexes (ix00, ix01, ...). Offsets and sizes are in bytes.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>

#include "avi/file_view.h"

namespace zelvo::cli {

/// What a look at every entry found.
struct IndexReport {
  std::uint64_t entries = 0;                ///< that the index holds, or says it holds
  std::uint64_t checked = 0;                ///< of these
  std::uint64_t matching = 0;               ///< of those checked: what they name lies where they say
  std::uint64_t unreadable = 0;             ///< not checked, since they or what they point at could not be read
  std::optional<std::uint64_t> keyFrames;   ///< of those checked: marked as such
  std::optional<std::uint64_t> firstWrong;  ///< the first entry, counted from 1, that does not match
  std::string whatIsWrong;                  ///< a sentence about that one
  std::string note;                         ///< how offsets are counted, say; may be empty
};

/// Checks indexes one after the other. However large an index claims to be, no more than `kMostEntries` entries of all
/// indexes together are looked at.
/// Thread: one.
class IndexCheck {
 public:
  static constexpr std::uint64_t kMostEntries = 4U << 20U;

  IndexCheck(platform::ReadableFile& file, const std::function<bool()>& isEnding)
      : entries_(file, 65536), targets_(file, 512), isEnding_(isEnding) {}

  /// `payload` and `size`: where the index's payload lies and how much of it is there. `moviType`: where the type of the
  /// first "movi" list lies, from which offsets are usually counted.
  [[nodiscard]] IndexReport oldIndex(std::uint64_t payload, std::uint64_t size, std::optional<std::uint64_t> moviType);

  /// A super index or a standard index, as its bIndexType says.
  [[nodiscard]] IndexReport openDmlIndex(std::uint64_t payload, std::uint64_t size);

  /// Reads that failed, of the entries and of what they point at.
  [[nodiscard]] avi::ReadFailures failures() const;

 private:
  enum class Verdict { matches, wrong, unreadable };
  struct Judged {
    Verdict verdict = Verdict::matches;
    std::string whatIsWrong = {};
  };

  [[nodiscard]] bool mayGoOn() const { return lookedAtInAll_ < kMostEntries && !isEnding_(); }
  void count(IndexReport& report, Judged judged);
  /// The entry's bytes; none when they could not be read, nothing when the file ends before them. Valid until the next
  /// call.
  [[nodiscard]] std::optional<std::span<const std::byte>> entryAt(std::uint64_t start, std::size_t size);
  [[nodiscard]] Judged missing(std::uint64_t offset) const;
  [[nodiscard]] Judged judge(std::uint64_t headerOffset, avi::FourCC id, std::uint32_t size);
  [[nodiscard]] std::uint64_t baseOfOldIndex(std::uint64_t payload, std::uint64_t size,
                                             std::optional<std::uint64_t> moviType, std::string& note);
  void superEntries(IndexReport& report, std::uint64_t payload);
  void standardEntries(IndexReport& report, std::uint64_t payload, avi::FourCC id, std::uint64_t base);
  [[nodiscard]] Judged judgeSuper(std::uint64_t offset, std::uint64_t length);

  avi::FileView entries_;
  avi::FileView targets_;
  const std::function<bool()> isEnding_;
  std::uint64_t lookedAtInAll_ = 0;
  std::uint64_t unreadableUntil_ = 0;  ///< entries of the index at hand that begin before this are not tried again
};

}  // namespace zelvo::cli
