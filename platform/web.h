/// Resources fetched from web addresses. Sizes are in bytes.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>

namespace zelvo::platform {

/// When a fetch is given up.
struct FetchLimits {
  std::chrono::milliseconds connect = std::chrono::seconds(5);  ///< until the connection stands, its encryption too
  /// From the start to the last byte, redirects included; nothing for as long as it takes.
  std::optional<std::chrono::milliseconds> total = std::chrono::seconds(15);
  /// Bytes of the body once it is decompressed; nothing for as many as come.
  std::optional<std::size_t> largest = std::nullopt;
  /// A body that brings fewer bytes a second than this, over that many whole seconds, is given up. 0 for no such limit.
  std::uint32_t leastBytesPerSecond = 0;
  std::chrono::seconds leastOver{0};
};

/// Takes the next piece of a body; the bytes are the fetcher's and go when it returns.
using BodySink = std::function<void(std::span<const std::byte> piece)>;

/// Thread: any.
class Web {
 public:
  virtual ~Web() = default;
  /// Fetches the body at an http or https address and waits for it. `sink` gets it piece by piece, on this thread.
  /// Redirects are followed, five at most, and never from https back to http or to another scheme.
  /// Failure: false for a wrong address, no connection, a certificate that does not fit, an error status, a body that
  /// comes short, or a limit; `sink` may have got a part by then.
  [[nodiscard]] virtual bool fetch(const std::string& address, const FetchLimits& limits, const BodySink& sink) = 0;
};

}  // namespace zelvo::platform
