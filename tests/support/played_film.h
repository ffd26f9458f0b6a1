/// A small film that plays: pictures of one colour each (Microsoft Video 1, 8 x 8) and silence (PCM, 8 kHz), a second
/// of which is 25 pictures.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "tests/support/small_avi.h"

namespace zelvo::tests {

struct PlayedFilm {
  std::size_t pictures = 50;
  bool hasSound = true;
  bool hasIndex = true;
  /// A picture's payload, when it is to be another than the usual one.
  std::function<std::string(std::size_t)> picture = [](std::size_t number) { return colour(number); };
  /// Whether the index calls a picture a key.
  std::function<bool(std::size_t)> isKey = [](std::size_t) { return true; };
  /// Whether the index has an entry for a piece of sound.
  std::function<bool(std::size_t)> isSoundIndexed = [](std::size_t) { return true; };
  std::size_t promised = 0;  ///< pictures that the header names; as many as there are when it is 0

  /// A picture of one colour.
  static std::string colour(std::size_t number) {
    const std::size_t bits = 0x8000 | number * 517 % 0x7fff;
    std::string payload;
    for (int block = 0; block < 4; ++block) payload += le16(bits);
    return payload + le16(0);
  }

  [[nodiscard]] std::string bytes() const {
    const std::size_t count = promised == 0 ? pictures : promised;
    std::string media;
    std::string index;
    const auto add = [&](const std::string& id, const std::string& payload, bool key, bool isIndexed = true) {
      if (isIndexed) index += id + le32(key ? 0x10 : 0) + le32(media.size() + 4) + le32(payload.size());
      media += chunk(id, payload);
    };
    for (std::size_t i = 0; i < pictures; ++i) {
      add("00dc", picture(i), isKey(i));
      if (hasSound) add("01wb", std::string(640, '\0'), true, isSoundIndexed(i));
    }
    const std::string zeros(16, '\0');
    std::string streams =
        list("LIST", "strl",
             chunk("strh", "vidsCRAM" + le32(0) + le32(0) + le32(0) + le32(1) + le32(25) + le32(0) + le32(count) +
                               zeros + zeros.substr(4)) +
                 chunk("strf", le32(40) + le32(8) + le32(8) + le16(1) + le16(16) + "CRAM" + le32(128) + zeros));
    if (hasSound) {
      streams += list("LIST", "strl",
                      chunk("strh", "auds" + le32(0) + le32(0) + le32(0) + le32(0) + le32(2) + le32(16000) + le32(0) +
                                        le32(pictures * 320) + le32(0) + le32(0) + le32(2) + le32(0) + le32(0)) +
                          chunk("strf", le16(1) + le16(1) + le32(8000) + le32(16000) + le16(2) + le16(16)));
    }
    const std::string main = le32(40000) + le32(0) + le32(0) + le32(0x10) + le32(count) + le32(0) +
                             le32(hasSound ? 2 : 1) + le32(0) + le32(8) + le32(8) + zeros;
    std::string content = list("LIST", "hdrl", chunk("avih", main) + streams) + list("LIST", "movi", media);
    if (hasIndex) content += chunk("idx1", index);
    return list("RIFF", "AVI ", content);
  }
};

}  // namespace zelvo::tests
