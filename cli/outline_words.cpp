#include "cli/outline_words.h"

#include <variant>

#include "cli/shown_text.h"

namespace zelvo::cli {

namespace {

constexpr std::uint64_t kChunkHeaderSize = 8;

std::string at(std::uint64_t offset) { return "at byte " + shownNumber(offset); }

std::string quoted(avi::FourCC code) { return "\"" + shownCode(code) + "\""; }

std::string tooLong(const avi::Problem& problem, std::string_view where) {
  return quoted(problem.id) + " claims " + counted(problem.claimed, "byte") + ", but only " +
         shownNumber(problem.held) + " are left in " + std::string(where);
}

std::string noChunks(const avi::Problem& problem, std::string_view kind) {
  return counted(problem.claimed, "byte") + std::string(kind) +
         (problem.claimed < kChunkHeaderSize ? " are too few for a chunk" : " are no chunks");
}

std::string wrongEntries(const avi::Problem& problem) {
  std::string text = shownNumber(problem.claimed - problem.held) + " of the " + shownNumber(problem.claimed) +
                     " index entries do not match";
  if (problem.entry) {
    text += "; in the first, number " + shownNumber(problem.entry->number) + ", " + inWords(*problem.entry);
  }
  return text;
}

/// The note of each alternative.
struct Note {
  std::uint64_t value;

  std::string operator()(std::monostate) const { return {}; }
  std::string operator()(const avi::FramesPerSecond& frames) const {
    return fixedPoint(frames.rate, 3) + " frames per second";
  }
  std::string operator()(const avi::UnitsPerSecond& units) const {
    return fixedPoint(units.rate, 3) + " units per second";
  }
  std::string operator()(const avi::SetFlags& flags) const {
    std::string text;
    for (const std::string_view flag : flags) {
      if (!text.empty()) text += " | ";
      text += flag;
    }
    return text;
  }
  std::string operator()(const avi::AudioFormatTag& tag) const {
    return shownHex(value, 4) + (tag.name.empty() ? "" : ", " + std::string(tag.name));
  }
};

}  // namespace

std::string inWords(const avi::Problem& problem) {
  using Kind = avi::ProblemKind;
  switch (problem.kind) {
    case Kind::beginningUnreadable:
      return "the first 12 bytes cannot be read";
    case Kind::noAviBeginning:
      return "the file does not begin as an AVI file does, with \"RIFF\", a size and \"AVI \"";
    case Kind::chunkLongerThanFile:
      return tooLong(problem, "the file");
    case Kind::chunkLongerThanList:
      return tooLong(problem, "its list");
    case Kind::listTooDeep:
      return "lists are nested too deep here";
    case Kind::listWithoutType:
      return "a list without a type";
    case Kind::skippedUnreadable:
      return counted(problem.claimed, "byte") + " cannot be read";
    case Kind::skippedPartlyUnreadable:
      return counted(problem.claimed, "byte") + ", of which " + shownNumber(problem.claimed - problem.held) +
             " cannot be read, are no chunks";
    case Kind::skippedZeros:
      return noChunks(problem, ", all zero,");
    case Kind::skippedBytes:
      return noChunks(problem, "");
    case Kind::payloadUnreadable:
      return "what it holds cannot be read from byte " + shownNumber(problem.offset + kChunkHeaderSize + problem.held) +
             " on";
    case Kind::wrongIndexEntries:
      return wrongEntries(problem);
    case Kind::tooManyChunks:
      return "there are more than " + shownNumber(problem.held) + " chunks; the rest is not looked at";
    case Kind::fileShrank:
      return "the file ends here by now; it was " + counted(problem.claimed, "byte") + " long";
    case Kind::stopped:
      return "stopped here; " + counted(problem.claimed - problem.held, "byte") + " were not looked at";
  }
  return {};
}

std::string inWords(const avi::IndexEntry& entry) {
  using Target = avi::EntryTarget;
  switch (entry.target) {
    case Target::matches:
      return {};
    case Target::entryUnreadable:
    case Target::unreadable:
      return "it cannot be read";
    case Target::beyondEnd:
      return at(entry.offset) + " the file has ended";
    case Target::otherCode:
      return at(entry.offset) + " lies " + quoted(entry.found.id) + ", not " + quoted(entry.id);
    case Target::otherSize:
      return "the chunk " + at(entry.offset) + " is " + counted(entry.found.size, "byte") + " long, not " +
             shownNumber(entry.size);
    case Target::noStandardIndex:
      return at(entry.offset) + " lies " + quoted(entry.found.id) + ", not a standard index";
    case Target::shorterThanIndex:
      return "the index " + at(entry.offset) + " is shorter than dwSize, " + counted(entry.size, "byte");
  }
  return {};
}

std::string remarkInWords(const avi::IndexReport& index) {
  using Remark = avi::IndexRemark;
  switch (index.remark) {
    case Remark::none:
      return {};
    case Remark::countsFromFile:
      return "dwOffset counts from the beginning of the file";
    case Remark::countsFromFileForNoMovi:
      return "dwOffset counts from the beginning of the file, since there is no \"movi\" list before the index";
    case Remark::countsFromMovi:
      return "dwOffset counts from the type of the \"movi\" list";
    case Remark::tooShort:
      return "too short to hold an index";
    case Remark::unreadable:
      return "it could not be read";
    case Remark::cutByEnd:
      return "the file has ended in it";
    case Remark::unknownEntries:
      return "its entries are of a kind that is not known here";
    case Remark::claimsMoreThanItHasRoomFor:
      return "it has room for " + shownNumber(index.entries) + " of these";
  }
  return {};
}

std::string_view inWords(avi::Unit unit) {
  using avi::Unit;
  switch (unit) {
    case Unit::none:
      return "";
    case Unit::bits:
      return "bits";
    case Unit::bytes:
      return "bytes";
    case Unit::bytesPerSecond:
      return "bytes per second";
    case Unit::channels:
      return "channels";
    case Unit::colours:
      return "colours";
    case Unit::entries:
      return "entries";
    case Unit::fields:
      return "fields";
    case Unit::frames:
      return "frames";
    case Unit::hertz:
      return "Hz";
    case Unit::lines:
      return "lines";
    case Unit::microseconds:
      return "microseconds";
    case Unit::pixels:
      return "pixels";
    case Unit::pixelsPerMetre:
      return "pixels per metre";
    case Unit::streamUnits:
      return "units of dwScale / dwRate seconds";
    case Unit::streams:
      return "streams";
  }
  return "";
}

std::string noteOn(const avi::Field& field) {
  const auto* number = std::get_if<std::uint64_t>(&field.value);
  return std::visit(Note{number == nullptr ? 0 : *number}, field.meaning);
}

std::string codeOrNumber(avi::FourCC code) { return code.value < 0x100 ? std::to_string(code.value) : shownCode(code); }

}  // namespace zelvo::cli
