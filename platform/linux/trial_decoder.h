/// A trial decoder that sends payloads to a program of its own, zelvo-avi-decoder. That one may crash, hang or be
/// killed; this process only ever waits for it for a limited time.
/// Decision: decoding, Decoders work in a confined program
#pragma once

#include <sys/types.h>

#include <chrono>
#include <string>

#include "platform/linux/decoder_protocol.h"
#include "platform/trial_decoder.h"

namespace zelvo::platform::linux_ {

class LinuxTrialDecoder final : public TrialDecoder {
 public:
  /// For one answer; a second is what a picture takes at the very most.
  static constexpr std::chrono::milliseconds kLimit{10'000};
  /// Programs that may end before they should. After that nothing more is decoded.
  static constexpr int kMaxFailures = 4;

  explicit LinuxTrialDecoder(std::string program, std::chrono::milliseconds limit = kLimit);
  LinuxTrialDecoder(const LinuxTrialDecoder&) = delete;
  LinuxTrialDecoder& operator=(const LinuxTrialDecoder&) = delete;
  ~LinuxTrialDecoder() override;

  /// The program that is installed in the folder of the running one.
  [[nodiscard]] static std::string programBeside(const std::string& runningProgram);

  [[nodiscard]] bool open(const TrialStream& stream) override;
  [[nodiscard]] std::optional<TrialAnswer> decode(std::span<const std::byte> payload, WantedPlanes wanted) override;
  [[nodiscard]] std::optional<TrialAnswer> finish(WantedPlanes wanted) override;
  [[nodiscard]] Bytes usualExtra(const TrialStream& stream) override;
  [[nodiscard]] bool isThere() override;

  /// Whether the program that runs now said that it is confined.
  [[nodiscard]] bool isConfined() const { return isConfined_; }
  /// The signal that ended the last program which ended too early; 0 when none did, or when it ended by itself.
  [[nodiscard]] int lastSignal() const { return lastSignal_; }

 private:
  using Clock = std::chrono::steady_clock;

  [[nodiscard]] bool start();
  void end(bool isFailure);
  [[nodiscard]] bool isReady(short events, Clock::time_point latest) const;
  [[nodiscard]] bool send(const void* data, std::size_t size, Clock::time_point latest) const;
  [[nodiscard]] bool receive(void* data, std::size_t size, Clock::time_point latest) const;
  [[nodiscard]] std::optional<DecoderReply> ask(DecoderRequest request, std::span<const std::byte> body);
  [[nodiscard]] std::optional<TrialAnswer> answerOf(const std::optional<DecoderReply>& reply);
  [[nodiscard]] static DecoderRequest requestOf(DecoderRequestKind kind, const TrialStream& stream);

  const std::string program_;
  const std::chrono::milliseconds limit_;
  pid_t process_ = 0;  ///< 0 when none runs
  int socket_ = -1;
  bool isConfined_ = false;
  int failures_ = 0;
  int lastSignal_ = 0;
  Bytes body_;  ///< of the last reply
};

}  // namespace zelvo::platform::linux_
