/// An AVI file's outline as indented text and as JSON, passed on in pieces while the walk goes on, so that neither the
/// length of the file nor the number of its chunks costs memory.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/avi_outline.h"
#include "cli/json_writer.h"

namespace zelvo::cli {

/// Takes a piece of the text.
using TakePiece = std::function<void(std::string_view)>;

class OutlineText final : public OutlineSink {
 public:
  explicit OutlineText(TakePiece take) : take_(std::move(take)) {}
  void beginList(const OutlineItem& list) override;
  void endList(const OutlineItem& list, const DataSums& sums) override;
  void endFile(const DataSums& sums) override;
  void chunk(const OutlineItem& chunk, const std::vector<Field>& fields,
             const std::optional<IndexReport>& index) override;
  void problem(std::uint64_t offset, std::size_t depth, const std::string& sentence) override;
  /// Passes on what is left.
  void finish();

 private:
  void line(std::size_t depth, const std::string& text);
  void writeSums(std::size_t depth, const DataSums& sums);

  TakePiece take_;
  std::string piece_;
};

class OutlineJson final : public OutlineSink {
 public:
  /// Of the problems only this many are written; they are counted all.
  static constexpr std::size_t kMostProblems = 100;

  OutlineJson(TakePiece take, std::string_view path, std::uint64_t size);
  void beginList(const OutlineItem& list) override;
  void endList(const OutlineItem& list, const DataSums& sums) override;
  void endFile(const DataSums& sums) override;
  void chunk(const OutlineItem& chunk, const std::vector<Field>& fields,
             const std::optional<IndexReport>& index) override;
  void problem(std::uint64_t offset, std::size_t depth, const std::string& sentence) override;
  /// Writes the end and passes on what is left. `readErrors`: reads that failed.
  void finish(bool isAvi, std::uint64_t readErrors);

 private:
  struct Problem {
    std::uint64_t offset;
    std::string sentence;
  };
  void beginItem(const OutlineItem& item);
  void writeSums(const DataSums& sums);
  void passOn(bool all);

  TakePiece take_;
  JsonWriter json_;
  std::vector<Problem> problems_;
  std::uint64_t problemCount_ = 0;
};

}  // namespace zelvo::cli
