/// The entries of an AVI file's indexes, one by one, each held against what lies where it points: the old index (idx1),
/// the super index (indx) and the standard indexes (ix00, ix01, ...). Offsets and sizes are in bytes.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>

#include "avi/file_view.h"

namespace zelvo::avi {

/// What lies where an index entry points.
enum class EntryTarget {
  matches,           ///< what the entry names
  entryUnreadable,   ///< the entry itself could not be read, so nothing is known
  unreadable,        ///< could not be read
  beyondEnd,         ///< the file has ended before it
  otherCode,         ///< a chunk of another code
  otherSize,         ///< a chunk of that code and another size
  noStandardIndex,   ///< of a super index: something else than a standard index
  shorterThanIndex,  ///< of a super index: an index that is shorter than the entry says
};

/// An entry of an index as the file has it, and what was found where it points.
struct IndexEntry {
  std::uint64_t number = 0;             ///< counted from 1
  FourCC id = {};                       ///< of the chunk it points at; that of the data in a super index
  std::uint64_t offset = 0;             ///< of that chunk's header, from the beginning of the file
  std::uint64_t size = 0;               ///< of its payload; of the whole chunk in a super index
  std::optional<bool> isKeyFrame = {};  ///< nothing in a super index
  EntryTarget target = EntryTarget::matches;
  ChunkHeader found = {};  ///< there, where the file holds it and it could be read

  /// False where reads failed.
  [[nodiscard]] bool isChecked() const {
    return target != EntryTarget::entryUnreadable && target != EntryTarget::unreadable;
  }
};

/// What there is to say of an index as a whole.
enum class IndexRemark {
  none,
  countsFromFile,              ///< an old index whose offsets count from the beginning of the file
  countsFromFileForNoMovi,     ///< the same, since no "movi" list lies before it
  countsFromMovi,              ///< an old index whose offsets count from the type of the "movi" list
  tooShort,                    ///< for the fields before the entries
  unreadable,                  ///< these fields could not be read
  cutByEnd,                    ///< the file ends within them
  unknownEntries,              ///< their size is none that the format knows
  claimsMoreThanItHasRoomFor,  ///< `entries` is what there is room for
};

/// What a look at every entry found.
struct IndexReport {
  std::uint64_t entries = 0;               ///< that the index holds, or says it holds
  std::uint64_t checked = 0;               ///< of these
  std::uint64_t matching = 0;              ///< of those checked: what they name lies where they say
  std::uint64_t unreadable = 0;            ///< not checked, since they or what they point at could not be read
  std::optional<std::uint64_t> keyFrames;  ///< of those that could be read: marked as such
  std::optional<IndexEntry> firstWrong;    ///< the first that was checked and does not match
  IndexRemark remark = IndexRemark::none;
};

/// Reads indexes one after the other. However large an index claims to be, no more than `kMaxEntries` entries of all
/// indexes together are looked at.
/// Thread: one.
class IndexReader {
 public:
  static constexpr std::uint64_t kMaxEntries = 4U << 20U;
  using TakeEntry = std::function<void(const IndexEntry&)>;

  /// `takeEntry`, when given, is handed every entry in turn. Of one that could not be read only `number` is known.
  IndexReader(platform::ReadableFile& file, const std::function<bool()>& isEnding, TakeEntry takeEntry = {})
      : entries_(file, 65536), targets_(file, 512), isEnding_(isEnding), takeEntry_(std::move(takeEntry)) {}

  /// `payload` and `size`: where the index's payload lies and how much of it is there. `moviType`: where the type of
  /// the first "movi" list lies, from which offsets are usually counted.
  [[nodiscard]] IndexReport oldIndex(std::uint64_t payload, std::uint64_t size, std::optional<std::uint64_t> moviType);

  /// A super index or a standard index, as its bIndexType says.
  [[nodiscard]] IndexReport openDmlIndex(std::uint64_t payload, std::uint64_t size);

  /// Reads that failed, of the entries and of what they point at.
  [[nodiscard]] ReadFailures failures() const;

 private:
  [[nodiscard]] bool mayGoOn() const { return lookedAtInAll_ < kMaxEntries && !isEnding_(); }
  void count(IndexReport& report, IndexEntry entry);
  void countUnreadable(IndexReport& report);
  /// The entry's bytes; none when they could not be read, nothing when the file ends before them. Valid until the next
  /// call.
  [[nodiscard]] std::optional<std::span<const std::byte>> entryAt(std::uint64_t start, std::size_t size);
  /// Why there is no header where an entry points.
  [[nodiscard]] EntryTarget missing() const;
  void judge(IndexEntry& entry);
  void judgeSuper(IndexEntry& entry);
  /// Where the offsets of an old index count from.
  [[nodiscard]] IndexRemark originOfOldIndex(std::uint64_t payload, std::uint64_t size,
                                             std::optional<std::uint64_t> moviType);
  void superEntries(IndexReport& report, std::uint64_t payload, FourCC id);
  void standardEntries(IndexReport& report, std::uint64_t payload, FourCC id, std::uint64_t base);

  FileView entries_;
  FileView targets_;
  const std::function<bool()> isEnding_;
  const TakeEntry takeEntry_;
  std::uint64_t lookedAtInAll_ = 0;
  std::uint64_t unreadableUntil_ = 0;  ///< entries of the index at hand that begin before this are not tried again
};

}  // namespace zelvo::avi
