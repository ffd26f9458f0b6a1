/// How the program that worked on a film came to its end.
#pragma once

#include <string>
#include <system_error>

#include "platform/translator.h"
#include "salvage/batch_queue.h"

namespace zelvo::deep {

struct FilmEnd {
  enum class Kind {
    done,        ///< the film is there
    hopeless,    ///< there is none, and none can be made
    failed,      ///< reading or writing failed, or was refused: `reason`
    died,        ///< by `signal`, or without a word
    notStarted,  ///< `error`
    stopped,
  };
  Kind kind = Kind::stopped;
  std::string reason = {};  ///< the program's own sentence; may be empty
  int signal = 0;
  std::error_code error = {};
  std::string printed = {};  ///< on standard output

  /// Whether there is something to show.
  [[nodiscard]] bool isJudged() const { return kind == Kind::done || kind == Kind::hopeless; }
};

/// `isStopped`: the run was asked to stop.
[[nodiscard]] FilmEnd filmEnd(const salvage::FilmResult& result, bool isStopped);

/// Why nothing came of the film of that name, in sentences for a person. For ends that are not judged.
[[nodiscard]] std::string failureWords(const FilmEnd& end, const std::string& name,
                                       const platform::Translator& translator);

}  // namespace zelvo::deep
