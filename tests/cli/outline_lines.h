/// What an outline's walk tells, one line each, for the tests to compare.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "avi/outline.h"
#include "cli/outline_words.h"
#include "cli/shown_text.h"

namespace zelvo::tests {

/// What is told, one line each, as "id type offset+size", "end id", "! sentence", "id x chunks".
class Lines final : public avi::OutlineSink {
 public:
  void beginList(const avi::OutlineItem& list) override {
    ++open_;
    deepest_ = std::max(deepest_, open_);
    add(cli::shownCode(list.id) + " " + (list.type ? cli::shownCode(*list.type) : "?"), list);
  }
  void endList(const avi::OutlineItem& list, const avi::DataSums& sums) override {
    --open_;
    addSums(sums);
    lines.push_back("end " + cli::shownCode(list.id));
  }
  void endFile(const avi::DataSums& sums) override { addSums(sums); }
  void chunk(const avi::OutlineItem& chunk, const std::vector<avi::Field>&,
             const std::optional<avi::IndexReport>&) override {
    add(cli::shownCode(chunk.id), chunk);
  }
  void problem(const avi::Problem& problem, std::size_t) override {
    lines.push_back("! " + std::to_string(problem.offset) + " " + cli::inWords(problem));
  }
  [[nodiscard]] int open() const { return open_; }
  [[nodiscard]] int deepest() const { return deepest_; }

  std::vector<std::string> lines;

 private:
  void add(const std::string& name, const avi::OutlineItem& item) {
    EXPECT_LE(lines.size(), 10000000U);
    lines.push_back(name + " " + std::to_string(item.offset) + "+" + std::to_string(item.size));
  }
  void addSums(const avi::DataSums& sums) {
    for (const auto& [value, sum] : sums) {
      avi::FourCC code;
      code.value = value;
      lines.push_back(cli::shownCode(code) + " x " + std::to_string(sum.chunks) + ", " + std::to_string(sum.bytes));
      if (!sum.index) continue;
      lines.back() += "; " + std::to_string(sum.index->entries) + " entries, " + std::to_string(sum.index->checked) +
                      " checked, " + std::to_string(sum.index->matching) + " match, " +
                      std::to_string(sum.index->unreadable) + " unreadable";
    }
  }

  int open_ = 0;
  int deepest_ = 0;
};

inline const auto kNeverEnding = [] { return false; };

}  // namespace zelvo::tests
