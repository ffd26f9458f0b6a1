/// Web resources by libcurl. // Decision: update, A fetch has limits
#pragma once

#include <optional>
#include <string>

#include "platform/web.h"

namespace zelvo::platform::linux_ {

/// The library's process-wide part. Made once, in `main`, before the first thread; gone after the last.
/// It also makes writes to broken connections fail instead of ending the process (SIGPIPE).
class WebLibrary {
 public:
  WebLibrary();
  ~WebLibrary();
  WebLibrary(const WebLibrary&) = delete;
  WebLibrary& operator=(const WebLibrary&) = delete;
  /// False when the library could not be set up; then every fetch fails.
  [[nodiscard]] bool works() const { return works_; }

 private:
  bool works_;
};

class LinuxWeb final : public Web {
 public:
  /// Certificates are judged by the authorities of this system or, when it is given, of that file alone (PEM).
  explicit LinuxWeb(const WebLibrary& library, std::optional<std::string> authorities = std::nullopt);
  [[nodiscard]] bool fetch(const std::string& address, const FetchLimits& limits, const BodySink& sink) override;

 private:
  const WebLibrary& library_;
  std::optional<std::string> authorities_;
};

}  // namespace zelvo::platform::linux_
