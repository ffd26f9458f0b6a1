/// The options that every command for many films has, and which films they name.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/command.h"
#include "cli/environment.h"
#include "salvage/batch_inputs.h"
#include "salvage/batch_shard.h"

namespace zelvo::cli {

class BatchOptions {
 public:
  /// The inputs of a command that mends; they may lack where a list or a folder names films.
  [[nodiscard]] static Option damagedFilms(std::vector<std::string>& inputs);

  [[nodiscard]] std::vector<Option> rows();
  /// `rows` after those of the command.
  void addTo(std::vector<Option>& options);
  [[nodiscard]] std::optional<std::string> misuse(const std::vector<std::string>& inputs) const;
  /// Whether any of them was given, so that the films are worked on as a batch.
  [[nodiscard]] bool isGiven() const;
  /// Whether there may be more inputs than those that were named.
  [[nodiscard]] bool namesMore() const { return list_ || isRecursive_; }

  /// The films in their order: named, listed and found. A sentence for each folder that could not be read goes to the
  /// console, and counts as a failure.
  struct Films {
    std::vector<salvage::BatchFilm> films;
    Exit exit = Exit::done;
  };
  [[nodiscard]] Films films(Environment& environment, const std::vector<std::string>& inputs,
                            const std::optional<std::string>& outputFolder) const;
  /// Whether a film belongs to this run's shard.
  [[nodiscard]] bool isOurs(Environment& environment, const salvage::BatchFilm& film) const;

  [[nodiscard]] std::optional<unsigned> jobs() const;
  [[nodiscard]] unsigned threads() const;  ///< of each film; 0 when nothing was said
  [[nodiscard]] const std::optional<std::string>& journal() const { return journal_; }
  [[nodiscard]] bool resumes() const { return resumes_; }
  [[nodiscard]] bool takesChecksums() const { return takesChecksums_; }

 private:
  std::optional<std::string> jobs_;
  std::optional<std::string> threads_;
  std::optional<std::string> list_;
  std::optional<std::string> journal_;
  std::optional<std::string> shard_;
  bool endsWithZero_ = false;
  bool isRecursive_ = false;
  bool anyName_ = false;
  bool resumes_ = false;
  bool takesChecksums_ = false;
};

}  // namespace zelvo::cli
