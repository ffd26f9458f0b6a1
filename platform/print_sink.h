/// Where a room prints plain text that a user or a developer may read: standard output, standard error, or nowhere.
#pragma once

#include <string_view>

namespace zelvo::platform {

/// Thread: the one that owns it.
class PrintSink {
 public:
  virtual ~PrintSink() = default;
  /// Takes `text` as it is; line ends are part of it.
  virtual void print(std::string_view text) = 0;
  /// False when nobody reads, so that long texts need not be made.
  [[nodiscard]] virtual bool isRead() const { return true; }
};

/// Prints nowhere.
class NoPrintSink final : public PrintSink {
 public:
  void print(std::string_view) override {}
  [[nodiscard]] bool isRead() const override { return false; }
};

}  // namespace zelvo::platform
