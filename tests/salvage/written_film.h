/// A film that is planned by hand, written to memory and looked at again.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "avi/chunk_codes.h"
#include "avi/outline.h"
#include "platform/headless/workers.h"
#include "salvage/writing/film_writer.h"
#include "tests/salvage/codec_films.h"
#include "tests/support/byte_text.h"
#include "tests/support/memory_files.h"

namespace zelvo::tests {

/// What a walk over a file meets, in short.
class OutlineNotes final : public avi::OutlineSink {
 public:
  void beginList(const avi::OutlineItem& list) override { lists.push_back(list); }
  void endList(const avi::OutlineItem&, const avi::DataSums&) override {}
  void endFile(const avi::DataSums&) override {}
  void chunk(const avi::OutlineItem& chunk, const std::vector<avi::Field>& fields,
             const std::optional<avi::IndexReport>& index) override {
    chunks.push_back(chunk);
    if (chunk.id == avi::kStrh) streamHeaders.push_back(fields);
    if (chunk.id == avi::kAvih) mainHeader = fields;
    if (index) indexes.push_back(*index);
  }
  void problem(const avi::Problem& problem, std::size_t) override { problems.push_back(problem); }

  std::vector<avi::OutlineItem> lists;
  std::vector<avi::OutlineItem> chunks;
  std::vector<std::vector<avi::Field>> streamHeaders;
  std::vector<avi::Field> mainHeader;
  std::vector<avi::IndexReport> indexes;
  std::vector<avi::Problem> problems;
};

/// The field's number.
[[nodiscard]] inline std::uint64_t fieldOf(const std::vector<avi::Field>& fields, std::string_view name) {
  for (const avi::Field& field : fields) {
    if (field.name != name) continue;
    if (const auto* number = std::get_if<std::uint64_t>(&field.value)) return *number;
    if (const auto* number = std::get_if<std::int64_t>(&field.value)) return static_cast<std::uint64_t>(*number);
  }
  ADD_FAILURE() << "no number " << name;
  return 0;
}

/// Thread: one.
struct WrittenFilmBench {
  /// Adds a stream; `code` with the number it has in the damaged film.
  WrittenFilmBench& with(salvage::SurvivingStream stream, std::string_view code) {
    salvage::FilmStream made;
    made.number = static_cast<std::uint8_t>(header.streams.size());
    made.code = avi::FourCC::at(bytesOf(code));
    made.header = std::move(stream);
    header.streams.push_back(std::move(made));
    return *this;
  }
  /// Adds a slot whose payload, put at the end of the input, is `payload`.
  salvage::Slot& add(std::uint8_t stream, const platform::Bytes& payload) {
    salvage::Slot slot;
    slot.source = input.size() & salvage::Slot::kSourceMask;
    slot.size = static_cast<std::uint32_t>(payload.size());
    slot.stream = stream;
    input.insert(input.end(), payload.begin(), payload.end());
    plan.slots.push_back(slot);
    return plan.slots.back();
  }
  /// Adds a slot of which nothing is left.
  salvage::Slot& addLost(std::uint8_t stream, std::uint32_t size) {
    salvage::Slot slot;
    slot.size = size;
    slot.stream = stream;
    slot.state = salvage::SlotState::lost;
    plan.slots.push_back(slot);
    return plan.slots.back();
  }
  void write(std::uint64_t formSize = salvage::kFormSize) {
    if (!files.has("/in.avi")) files.put("/in.avi", input);
    files.put("/out.avi", {});
    avi::InputFile in(files.openForReading("/in.avi").file);
    const auto out = files.openForWriting("/out.avi");
    layout = *salvage::layOut(plan, header, formSize);
    written = salvage::writeFilm({in, *out.file, workers, plan, header, layout, [this] { return isEnding; }});
    failures = in.failures();
    bytes = files.content("/out.avi");
    avi::Outline(
        *files.openForReading("/out.avi").file, notes, [] { return false; }, true)
        .walk();
  }
  /// Chunks of streams in the output: "00dc:" and the payload in hexadecimal digits.
  [[nodiscard]] std::vector<std::string> chunks() const {
    std::vector<std::string> texts;
    for (const avi::OutlineItem& chunk : notes.chunks) {
      if (!avi::isStreamData(chunk.id)) continue;
      texts.push_back(textAt(bytes, chunk.offset, 4) + ":" + hexAt(bytes, chunk.offset + 8, chunk.size));
    }
    return texts;
  }
  /// Payloads of the chunks with this code.
  [[nodiscard]] std::vector<avi::OutlineItem> all(avi::FourCC id) const {
    std::vector<avi::OutlineItem> found;
    for (const avi::OutlineItem& chunk : notes.chunks) {
      if (chunk.id == id) found.push_back(chunk);
    }
    return found;
  }
  /// Flags of the entries of "idx1".
  [[nodiscard]] std::vector<bool> keysInTable() const {
    std::vector<bool> keys;
    const avi::OutlineItem table = all(avi::kIdx1).at(0);
    for (std::uint64_t at = table.offset + 8; at < table.offset + 8 + table.size; at += 16)
      keys.push_back(numberAt(bytes, at + 4) == 0x10);
    return keys;
  }
  /// The same of the standard indexes with this code, form after form.
  [[nodiscard]] std::vector<bool> keysIn(avi::FourCC id) const {
    std::vector<bool> keys;
    for (const avi::OutlineItem& index : all(id)) {
      for (std::uint64_t at = index.offset + 32; at < index.offset + 8 + index.size; at += 8)
        keys.push_back((numberAt(bytes, at + 4) & 0x80000000U) == 0);
    }
    return keys;
  }

  platform::Bytes input{std::byte{0x11}};
  salvage::FilmHeader header;
  salvage::FilmPlan plan;
  MemoryFiles files;
  platform::headless::HeadlessWorkers workers;
  bool isEnding = false;

  salvage::FilmLayout layout;
  salvage::WrittenFilm written;
  avi::ReadFailures failures;
  platform::Bytes bytes;
  OutlineNotes notes;
};

/// A stream of MPEG-4 pictures and one of PCM sound of two bytes a sample.
[[nodiscard]] inline std::unique_ptr<WrittenFilmBench> pictureAndSound() {
  auto bench = std::make_unique<WrittenFilmBench>();
  bench->with(pictureStream("XVID"), "00dc").with(soundStream(1, 1, 8000, 2, 16, 2), "01wb");
  return bench;
}

}  // namespace zelvo::tests
