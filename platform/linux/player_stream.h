/// One stream of a film that is played: its decoder, and what comes out. Part of zelvo-avi-player alone.
#pragma once

extern "C" {
#include <libavformat/avformat.h>
}

#include <cstdint>
#include <functional>
#include <memory>
#include <span>

#include "platform/film_player.h"
#include "platform/linux/codec_library.h"

namespace zelvo::platform::linux_ {

/// Thread: one.
class PlayerStream {
 public:
  /// Hears of each picture or piece of sound with the number of the packet that it came of.
  using Take = std::function<void(const AVFrame& frame, std::uint64_t packet)>;

  PlayerStream(const AVStream& stream, unsigned threads);

  [[nodiscard]] PlayedKind kind() const { return kind_; }
  [[nodiscard]] AVCodecID codec() const { return parameters_->codec_id; }
  [[nodiscard]] bool hasDecoder() const { return context_ != nullptr; }
  [[nodiscard]] PlayedStream told(std::uint32_t number) const;

  /// What was wrong with a packet; several may be.
  struct Trouble {
    bool isRefused = false;
    bool hasComplaints = false;
    bool lacksMemory = false;
  };

  /// Decodes a packet that is not empty. \pre it has a decoder.
  [[nodiscard]] Trouble decode(const AVPacket& packet, std::uint64_t number, const Take& take);
  /// Gives what is still to come.
  [[nodiscard]] Trouble finish(const Take& take);
  /// Forgets what came before, as before a jump.
  void forget();

 private:
  struct ParserEnd {
    void operator()(AVCodecParserContext* parser) const { ::av_parser_close(parser); }
  };

  [[nodiscard]] bool needsParser(const AVStream& stream) const;
  /// Decodes what the parser takes out of the bytes; of none, what it holds back.
  void decodeParsed(std::span<const std::uint8_t> bytes, Trouble& trouble, const Take& take);
  void send(const AVPacket& packet, Trouble& trouble, const Take& take);
  void receive(Trouble& trouble, const Take& take);

  PlayedKind kind_ = PlayedKind::data;
  const AVCodecParameters* parameters_;
  Context context_;
  /// Of a stream whose chunks are cut anywhere.
  std::unique_ptr<AVCodecParserContext, ParserEnd> parser_;
  Packet parsed_;
  Frame frame_;
};

/// A number that stands for all samples of a picture; equal pictures have equal ones.
[[nodiscard]] std::uint64_t fingerprint(const AVFrame& frame);

/// Has decoders' messages counted instead of printed. Call it once, before the first decoder is made.
void countComplaints();

}  // namespace zelvo::platform::linux_
