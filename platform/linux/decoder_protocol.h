/// What goes through the socket between this program and the one that decodes, zelvo-avi-decoder. Both are of one
/// build and one machine, so numbers are as the machine has them. Each request is answered once, in order. Neither
/// believes the other's numbers.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace zelvo::platform::linux_ {

/// First, and by itself, the decoding program says who it is.
struct DecoderHello {
  static constexpr std::uint32_t kMagic = 0x7a64'6563;
  static constexpr std::uint32_t kVersion = 1;

  std::uint32_t magic = kMagic;
  std::uint32_t version = kVersion;
  std::uint32_t isConfined = 0;  ///< 1: by a filter of system calls and limits of memory and time
};

enum class DecoderRequestKind : std::uint32_t {
  open = 1,    ///< extra bytes follow
  decode = 2,  ///< a payload follows
  finish = 3,
  usualExtra = 4,  ///< the reply's bytes are those
};

struct DecoderRequest {
  DecoderRequestKind kind = DecoderRequestKind::open;
  std::uint32_t size = 0;    ///< bytes that follow
  std::uint32_t codec = 0;   ///< of `open` and `usualExtra`, like the next three
  std::uint32_t width = 0;   ///< in pixels
  std::uint32_t height = 0;  ///< in pixels
  std::uint32_t bits = 0;    ///< a pixel
  std::uint32_t wanted = 0;  ///< WantedPlanes, of `decode` and `finish`
};

/// `size` bytes follow: of `decode` and `finish` a `DecoderPicture` and the samples of its planes for each picture.
struct DecoderReply {
  DecoderRequestKind kind = DecoderRequestKind::open;  ///< of the request
  std::uint32_t isAccepted = 0;
  std::uint32_t complaints = 0;
  std::uint32_t pictures = 0;
  std::uint32_t size = 0;
};

struct DecoderPicture {
  static constexpr std::size_t kMaxPlanes = 3;

  std::uint32_t payload = 0;
  std::uint32_t type = 0;  ///< PictureType
  std::uint32_t isKey = 0;
  std::uint32_t planes = 0;
  std::array<std::uint32_t, kMaxPlanes> widths{};
  std::array<std::uint32_t, kMaxPlanes> heights{};
};

/// Of a reply's bytes. Pictures that do not fit come without planes.
inline constexpr std::size_t kMaxDecoderReply = std::size_t{24} << 20U;
/// Of a reply.
inline constexpr std::uint32_t kMaxDecoderPictures = 64;

static_assert(std::is_trivially_copyable_v<DecoderRequest> && std::is_trivially_copyable_v<DecoderReply> &&
              std::is_trivially_copyable_v<DecoderPicture>);

}  // namespace zelvo::platform::linux_
