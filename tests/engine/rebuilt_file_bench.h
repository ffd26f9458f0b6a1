/// A writer of the rebuilt file alone: a job whose harvest and scan are given.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "engine/repair_file.h"
#include "tests/support/avi_builder.h"
#include "tests/support/byte_text.h"
#include "tests/support/engine_bench.h"

namespace zelvo::tests {

using platform::Bytes;

inline Bytes number(std::uint32_t value) {
  Bytes bytes;
  appendNumber(bytes, value);
  return bytes;
}
inline Bytes wideNumber(std::uint32_t value) {
  Bytes bytes = number(value);
  bytes.resize(8);
  return bytes;
}
inline Bytes zeros(std::size_t count) { return Bytes(count); }
/// `count` bytes that all differ from their neighbours.
inline Bytes counting(std::size_t count, unsigned first) {
  Bytes bytes;
  for (std::size_t i = 0; i < count; ++i) bytes.push_back(static_cast<std::byte>((first + i) & 0xffU));
  return bytes;
}

/// A job whose harvest and scan are given, so that the writer is tested alone.
class RebuiltFile : public testing::Test {
 protected:
  RebuiltFile() {
    engine::RepairFile& job = *bench.job;
    bench.choose(Bytes(2000, std::byte{0x20}));
    bench.begin();
    static_cast<void>(job.fileValidityCheck());
    job.avihdata1 = counting(20, 1);
    job.avihdata2 = counting(36, 31);
    job.videocodec = bytesOf("DIVX");
    job.videoscaleratedata = counting(8, 71);
    job.videoscaledata = counting(4, 81);
    job.audiocodec = bytesOf("mp3 ");
    job.audioscaleratedata = counting(8, 91);
    job.audioscaledata = counting(4, 101);
    job.audiocodecfound = true;
    setFormats(40, 18);
    bench.events.clear();
  }

  void setFormats(std::size_t video, std::size_t audio) {
    bench.job->videostrfsize = video;
    bench.job->videostrfdata.held = counting(video, 111);
    bench.job->audiostrfsize = audio;
    bench.job->audiostrfdata.held = counting(audio, 160);
  }

  /// Puts a chunk into the input and records it.
  void addChunk(std::string_view code, std::uint32_t size, std::byte fill = std::byte{0x55}) {
    Bytes& bytes = bench.files.at("/in.avi").bytes;
    const std::uint64_t offset = bytes.size();
    appendChunk(bytes, code, size, fill);
    bench.files.at("/in.avi").size = bytes.size();
    engine::RepairFile& job = *bench.job;
    if (code == "01wb") {
      job.audiosamplesizearray[++job.audiosamplecount] = size;
      job.audiosampleoffsetarray[job.audiosamplecount] = offset;
    } else {
      job.videosamplesizearray[++job.videosamplecount] = size;
      job.videosampleoffsetarray[job.videosamplecount] = offset;
    }
  }

  Bytes write() {
    bench.job->constructRIFFList();
    return bench.output();
  }

  std::size_t eventIndex(const std::string& event) {
    const auto lines = bench.events.lines();
    return static_cast<std::size_t>(std::find(lines.begin(), lines.end(), event) - lines.begin());
  }
  bool happened(const std::string& event) { return eventIndex(event) < bench.events.lines().size(); }

  EngineBench bench;
};

}  // namespace zelvo::tests
