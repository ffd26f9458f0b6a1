/// Opens addresses with what the desktop has for them, and learns whether that could be started.
/// Thread: main.
#pragma once

#include <QObject>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "platform/program_starter.h"

namespace zelvo::platform::qt {

class AddressOpener final : public QObject {
 public:
  /// `program` is looked for in the PATH; it takes an address and ends with another status than 0 when nothing could be
  /// opened, as xdg-open does.
  explicit AddressOpener(ProgramStarter& starter, std::string program = "xdg-open")
      : starter_(starter), program_(std::move(program)) {}

  /// Hands the address over. No shell sees it.
  /// \return false when the program could not be started. When it says soon afterwards that it could not open the
  /// address, `failed` runs in the event loop, unless this object is gone by then; the program never ends with it.
  bool open(const std::string& address, std::function<void()> failed);

 private:
  void watch(std::unique_ptr<StartedProgram> started, std::function<void()> failed);

  ProgramStarter& starter_;
  std::string program_;
};

}  // namespace zelvo::platform::qt
