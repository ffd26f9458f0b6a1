/// The structure of an AVI file, told in file order: lists, chunks, header fields, indexes, and what is wrong with them.
/// Any bytes may be given: nothing is recursive, memory is bounded, and the time is linear in the file's size. Offsets
/// and sizes are in bytes.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "cli/avi_fields.h"
#include "cli/avi_index.h"
#include "cli/file_view.h"

namespace zelvo::cli {

/// A chunk, list or form as it lies in the file.
struct OutlineItem {
  engine::FourCC id;
  std::optional<engine::FourCC> type;  ///< of a list or form
  std::uint64_t offset = 0;            ///< of the item's header
  std::uint64_t size = 0;              ///< as its size field says, of what follows the header
  std::size_t depth = 0;               ///< 0 for what lies in no list
};

/// Chunks of one code that were not listed one by one.
struct DataSum {
  std::uint64_t chunks = 0;
  std::uint64_t bytes = 0;  ///< payloads
};
using DataSums = std::map<std::uint32_t, DataSum>;  ///< by FourCC::value

/// Who is told.
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
  virtual void problem(std::uint64_t offset, std::size_t depth, const std::string& sentence) = 0;
};

/// Thread: one.
class AviOutline {
 public:
  /// Lists nested deeper than this are not entered.
  static constexpr std::size_t kDeepest = 16;
  /// After this many chunks the walk ends.
  static constexpr std::uint64_t kMostChunks = 16U << 20U;
  /// So many chunks of a list are listed one by one unless all are wanted; the rest is summed up.
  static constexpr std::uint64_t kMostListed = 1000;
  /// Sums are kept for this many codes of a list, the rest under the code of zero.
  static constexpr std::size_t kMostSums = 64;

  AviOutline(platform::ReadableFile& file, OutlineSink& sink, const std::function<bool()>& isEnding, bool listsAll)
      : sink_(sink), isEnding_(isEnding), listsAll_(listsAll), view_(file, 65536), indexes_(file, isEnding) {}

  void walk();

  /// Whether the file begins as an AVI file does.
  [[nodiscard]] bool isAvi() const { return isAvi_; }
  [[nodiscard]] std::uint64_t problems() const { return problems_; }
  /// Reads that failed.
  [[nodiscard]] engine::ReadFailures failures() const { return together(view_.failures(), indexes_.failures()); }

 private:
  struct OpenList {
    OutlineItem item;
    std::uint64_t end = 0;
    bool isQuiet = false;  ///< not told itself: a "rec " list whose chunks are summed up with those around it
    std::uint64_t listed = 0;
    DataSums sums;
  };

  [[nodiscard]] std::uint64_t limit() const { return open_.empty() ? fileSize_ : open_.back().end; }
  [[nodiscard]] std::size_t depth() const;
  [[nodiscard]] OpenList& toldList();
  void problem(std::uint64_t offset, const std::string& sentence);
  void closeEnded();
  void step();
  /// What is no chunk: where it ends, and whether all of it is zero.
  struct Damage {
    std::uint64_t end = 0;
    bool isZero = true;
  };
  [[nodiscard]] Damage damageFrom(std::uint64_t start);
  void skipDamage();
  void enterList(const OutlineItem& item, std::uint64_t end);
  void meetChunk(const OutlineItem& item, std::uint64_t end);
  [[nodiscard]] bool isListed(const OutlineItem& item);
  void addToSums(const OutlineItem& item);
  [[nodiscard]] std::uint64_t behind(std::uint64_t end, std::uint64_t size);

  OutlineSink& sink_;
  const std::function<bool()> isEnding_;
  const bool listsAll_;
  FileView view_;
  IndexCheck indexes_;
  std::uint64_t fileSize_ = 0;
  std::uint64_t position_ = 0;
  std::vector<OpenList> open_;
  std::uint64_t chunks_ = 0;
  std::uint64_t listedOutside_ = 0;
  DataSums sumsOutside_;
  std::uint64_t problems_ = 0;
  bool isAvi_ = false;
  engine::FourCC streamType_;
  std::optional<std::uint64_t> moviType_;
};

}  // namespace zelvo::cli
