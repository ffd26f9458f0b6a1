/// An AVI file's outline as indented text and as JSON, passed on in pieces while the walk goes on, so that neither the
/// length of the file nor the number of its chunks costs memory.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "avi/outline.h"
#include "cli/json_writer.h"

namespace zelvo::cli {

/// Takes a piece of the text.
using TakePiece = std::function<void(std::string_view)>;

class OutlineText final : public avi::OutlineSink {
 public:
  /// Of the problems only this many are shown unless all are wanted.
  static constexpr std::uint64_t kMaxProblems = 1000;

  explicit OutlineText(TakePiece take, bool showsAll = false) : take_(std::move(take)), showsAll_(showsAll) {}
  void beginList(const avi::OutlineItem& list) override;
  void endList(const avi::OutlineItem& list, const avi::DataSums& sums) override;
  void endFile(const avi::DataSums& sums) override;
  void chunk(const avi::OutlineItem& chunk, const std::vector<avi::Field>& fields,
             const std::optional<avi::IndexReport>& index) override;
  void problem(const avi::Problem& problem, std::size_t depth) override;
  /// Writes the last line and passes on what is left. `failedReads`: how many there were; `stopped`: before all was
  /// looked at.
  void finish(std::uint64_t failedReads, bool stopped);

 private:
  void passOn();
  void line(std::size_t depth, const std::string& text);
  void writeSums(std::size_t depth, const avi::DataSums& sums);

  TakePiece take_;
  const bool showsAll_;
  std::uint64_t problemCount_ = 0;
  std::string piece_;
};

class OutlineJson final : public avi::OutlineSink {
 public:
  /// Of the problems only this many are written; they are counted all.
  static constexpr std::size_t kMaxProblems = 100;

  OutlineJson(TakePiece take, std::string_view path, std::uint64_t size);
  void beginList(const avi::OutlineItem& list) override;
  void endList(const avi::OutlineItem& list, const avi::DataSums& sums) override;
  void endFile(const avi::DataSums& sums) override;
  void chunk(const avi::OutlineItem& chunk, const std::vector<avi::Field>& fields,
             const std::optional<avi::IndexReport>& index) override;
  void problem(const avi::Problem& problem, std::size_t depth) override;
  /// Writes the end and passes on what is left. `readErrors`: reads that failed; `stopped`: before all was looked at.
  void finish(bool isAvi, std::uint64_t readErrors, bool stopped);

 private:
  void beginItem(const avi::OutlineItem& item);
  void writeSums(const avi::DataSums& sums);
  void passOn(bool all);

  TakePiece take_;
  JsonWriter json_;
  std::vector<avi::Problem> problems_;
  std::uint64_t problemCount_ = 0;
};

}  // namespace zelvo::cli
