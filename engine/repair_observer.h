/// What a repair tells of itself while it works.
#pragma once

#include <cstdint>
#include <string>

#include "platform/log.h"

namespace zelvo::engine {

enum class RepairStage {
  recognising,     ///< does the input look like an AVI file?
  readingHeaders,  ///< the header lists at its beginning
  searching,       ///< the walk through the whole input for data chunks
  writing,         ///< the rebuilt file
};

/// Hears a repair's events in the order in which they happen, each before the next step. What it does not override, it
/// does not care for.
/// Thread: the one that repairs, unless a function says otherwise.
class RepairObserver {
 public:
  virtual ~RepairObserver() = default;

  /// Where the repair's log lines go.
  [[nodiscard]] virtual platform::Log& log() = 0;

  /// The repair is at this stage. Reading headers and searching say so again for every block of 1024 bytes.
  virtual void stage(RepairStage) {}
  /// `done` of `all` blocks of this stage are begun. Reading headers says so once per byte position, so it must be
  /// cheap.
  virtual void progress(std::uint64_t /*done*/, std::uint64_t /*all*/) {}

  /// The input looks like an AVI file.
  virtual void recognised() {}
  /// The video stream's header was found, a later one again. `text`: its codec, as a person reads it.
  virtual void videoCodec(const std::string& /*text*/) {}
  /// Everything that a repair needs of the header lists was found, before all of the blocks were searched.
  virtual void headersFound() {}
  /// The audio stream's header is being written, or would be, had the writing not failed.
  virtual void audioCodec(const std::string& /*text*/) {}
  /// The rebuilt file is closed; nothing more is written to it. A failed write may have cut it short.
  virtual void written() {}

  /// True as long as somebody asks for a stop who may still take that back. Asked for every block, beside the run's
  /// mark.
  /// Thread: any.
  [[nodiscard]] virtual bool stopIsAsked() const { return false; }
};

}  // namespace zelvo::engine
