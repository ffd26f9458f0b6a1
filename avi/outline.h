/// The structure of an AVI file, told in file order: lists, chunks, header fields, indexes, and what is wrong with
/// them. Any bytes may be given: nothing is recursive, memory and the number of items told are bounded, and the time is
/// linear in the file's size. Offsets and sizes are in bytes.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <vector>

#include "avi/file_view.h"
#include "avi/header_fields.h"
#include "avi/index_reader.h"

namespace zelvo::avi {

/// A chunk, list or form as it lies in the file.
struct OutlineItem {
  FourCC id;
  std::optional<FourCC> type;  ///< of a list or form
  std::uint64_t offset = 0;    ///< of the item's header
  std::uint64_t size = 0;      ///< as its size field says, of what follows the header
  std::size_t depth = 0;       ///< 0 for what lies in no list
};

/// What looks at all entries of several indexes found together.
struct IndexSum {
  std::uint64_t entries = 0;
  std::uint64_t checked = 0;
  std::uint64_t matching = 0;
  std::uint64_t unreadable = 0;
};

/// Chunks of one code that were not listed one by one. A list counts with the bytes of its type, since what it holds is
/// counted by itself.
struct DataSum {
  std::uint64_t chunks = 0;
  std::uint64_t bytes = 0;             ///< payloads
  std::optional<IndexSum> index = {};  ///< of indexes
};
using DataSums = std::map<std::uint32_t, DataSum>;  ///< by FourCC::value

enum class ProblemKind {
  beginningUnreadable,      ///< the first 12 bytes cannot be read
  noAviBeginning,           ///< the file does not begin as an AVI file does
  chunkLongerThanFile,      ///< `id` claims `claimed` bytes, the file has `held` for it
  chunkLongerThanList,      ///< the same of the list it lies in
  listTooDeep,              ///< it is not entered
  listWithoutType,          ///< too short for one
  skippedUnreadable,        ///< `claimed` bytes, none of which can be read
  skippedPartlyUnreadable,  ///< `claimed` bytes that are no chunks, `held` of them readable
  skippedZeros,             ///< `claimed` bytes that are no chunks: all zero
  skippedBytes,             ///< the same: others
  payloadUnreadable,        ///< of a header chunk with a payload of `claimed` bytes, `held` can be read from its front
  wrongIndexEntries,  ///< of `claimed` entries that were checked, `held` match; `entry` is the first that does not
  tooManyChunks,      ///< `held` of them were met; the rest is not looked at
  fileShrank,         ///< from `claimed` bytes to `held`
  stopped,            ///< the walk, with `held` of the file's `claimed` bytes after it
};

/// What is wrong at a place of the file.
struct Problem {
  ProblemKind kind;
  std::uint64_t offset = 0;  ///< where; of a chunk its header
  std::uint64_t claimed = 0;
  std::uint64_t held = 0;
  FourCC id = {};
  std::optional<IndexEntry> entry = {};
};

/// Receives the walk's events.
class OutlineSink {
 public:
  virtual ~OutlineSink() = default;
  virtual void beginList(const OutlineItem& list) = 0;
  /// `sums`: the list's chunks that were not listed.
  virtual void endList(const OutlineItem& list, const DataSums& sums) = 0;
  /// The last call; `sums`: chunks in no list that were not listed.
  virtual void endFile(const DataSums& sums) = 0;
  virtual void chunk(const OutlineItem& chunk, const std::vector<Field>& fields,
                     const std::optional<IndexReport>& index) = 0;
  /// `depth`: of what lies there.
  virtual void problem(const Problem& problem, std::size_t depth) = 0;
};

/// Thread: one.
class Outline {
 public:
  /// Lists nested deeper than this are not entered.
  static constexpr std::size_t kDeepest = 16;
  /// After this many chunks the walk ends.
  static constexpr std::uint64_t kMaxChunks = 16U << 20U;
  /// So many chunks, lists and forms of a file are told one by one unless all are wanted; the rest is summed up.
  /// Decision: command-line, An outline is limited as a whole
  static constexpr std::uint64_t kMaxListed = 1000;
  /// Sums are kept for this many codes of a list, the rest under the code of zero.
  static constexpr std::size_t kMaxSums = 64;

  Outline(platform::ReadableFile& file, OutlineSink& sink, const std::function<bool()>& isEnding, bool listsAll)
      : sink_(sink), isEnding_(isEnding), listsAll_(listsAll), view_(file, 65536), indexes_(file, [this] {
          return ends();
        }) {}

  void walk();

  /// Whether the file begins as an AVI file does.
  [[nodiscard]] bool isAvi() const { return isAvi_; }
  [[nodiscard]] std::uint64_t problems() const { return problems_; }
  /// Whether the walk was ended before all was looked at.
  [[nodiscard]] bool wasStopped() const { return stopped_; }
  /// How far the walk has come; after a stop, where it ended.
  [[nodiscard]] std::uint64_t position() const { return position_; }
  /// Reads that failed.
  [[nodiscard]] ReadFailures failures() const;

 private:
  struct OpenList {
    OutlineItem item;
    std::uint64_t end = 0;
    bool isQuiet = false;  ///< not told itself: its chunks are summed up with those around it
    DataSums sums;
  };

  [[nodiscard]] std::uint64_t limit() const { return open_.empty() ? fileSize_ : open_.back().end; }
  [[nodiscard]] std::size_t depth() const;
  /// The innermost list that is told; none outside of all.
  [[nodiscard]] OpenList* toldList();
  [[nodiscard]] FourCC typeOfToldList();
  /// Asks whether the walk is to end. Once it is, it stays so.
  [[nodiscard]] bool ends();
  void report(const Problem& problem);
  void beginFile();
  void closeEnded();
  void step();
  /// What is no chunk.
  struct Damage {
    bool isZero = true;            ///< all of it that could be read
    std::uint64_t unreadable = 0;  ///< bytes of it that could not
  };
  void skipDamage();
  /// Moves on by some bytes. True where a chunk begins.
  [[nodiscard]] bool searchOn(std::uint64_t start, std::uint64_t end, Damage& damage);
  [[nodiscard]] std::uint64_t nextReadable(std::uint64_t unreadable, std::uint64_t end);
  void endHere();
  void enterList(const OutlineItem& item, std::uint64_t end);
  void meetChunk(const OutlineItem& item, std::uint64_t end);
  void reportChunk(const OutlineItem& item, std::uint64_t end);
  void reportWrong(const OutlineItem& item, const IndexReport& index);
  [[nodiscard]] std::optional<IndexReport> checkIndex(const OutlineItem& item, std::uint64_t end);
  /// Whether one more item is told, which counts it.
  [[nodiscard]] bool mayTell();
  [[nodiscard]] bool isListed(const OutlineItem& item);
  DataSum& addToSums(FourCC id, std::uint64_t size);
  [[nodiscard]] std::uint64_t nextChunkOffset(std::uint64_t end, std::uint64_t size);

  OutlineSink& sink_;
  const std::function<bool()> isEnding_;
  const bool listsAll_;
  FileView view_;
  IndexReader indexes_;
  std::uint64_t fileSize_ = 0;
  std::uint64_t position_ = 0;
  std::vector<OpenList> open_;
  std::uint64_t chunks_ = 0;
  std::uint64_t told_ = 0;
  DataSums sumsOutside_;
  std::uint64_t problems_ = 0;
  bool isAvi_ = false;
  bool stopped_ = false;
  FourCC streamType_;
  std::optional<std::uint64_t> moviType_;
};

}  // namespace zelvo::avi
