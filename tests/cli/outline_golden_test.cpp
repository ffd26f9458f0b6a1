// Whole outlines as inspect tells them, line by line: every field of every header, indexes, sums, and damage. The texts
// are in tests/golden/inspect_*.txt.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "avi/outline.h"
#include "cli/outline_writers.h"
#include "tests/cli/outline_lines.h"
#include "tests/support/golden.h"
#include "tests/support/memory_readable.h"
#include "tests/support/small_avi.h"

namespace zelvo::tests {
namespace {

using cli::OutlineJson;
using cli::OutlineText;
using cli::TakePiece;

/// `size` bytes that all differ, so that each field of a header shows where it lies.
std::string counting(std::size_t size, int first) {
  std::string bytes;
  for (std::size_t i = 0; i < size; ++i) bytes += static_cast<char>(first + static_cast<int>(i));
  return bytes;
}

std::string entry(std::string_view id, std::uint64_t flags, std::uint64_t offset, std::uint64_t size) {
  return std::string(id) + le32(flags) + le32(offset) + le32(size);
}

/// The part of an OpenDML index before its entries.
std::string indexHeader(std::uint64_t longs, int type, std::uint64_t entries, std::string_view id, std::uint64_t base) {
  return le16(longs) + '\0' + static_cast<char>(type) + le32(entries) + std::string(id) + le32(base) + le32(0) +
         le32(0);
}

/// Streams of pictures, of sound and of text with every header, indexes with right and wrong entries, and damage.
std::string film() {
  const std::string video =
      list("LIST", "strl",
           chunk("strh", "vids" + counting(52, 1)) + chunk("strf", counting(40, 0x81)) +
               chunk("indx", indexHeader(4, 0, 2, "00dc", 0x11) + le32(12) + le32(0) + le32(40) + le32(3) + le32(0) +
                                 le32(1) + le32(40) + le32(3)) +
               chunk("vprp", counting(44, 0x21)) + chunk("strn", std::string("Front \"door\"\n\0", 14)));
  const std::string audio =
      list("LIST", "strl", chunk("strh", "auds" + counting(52, 0xa1)) + chunk("strf", counting(18, 0x31)));
  const std::string other = list("LIST", "strl", chunk("strh", "txts") + chunk("strf", counting(20, 1)));
  const std::string headers = list("LIST", "hdrl",
                                   chunk("avih", counting(56, 0x41)) + video + audio + other +
                                       list("LIST", "odml", chunk("dmlh", counting(8, 0x71))));
  const std::string information = list("LIST", "INFO", chunk("ISFT", "Encoder 1") + chunk("ICRD", "2020"));
  // Behind the type of the list: a picture, sound with a pad byte, an index of one right entry, of a wrong one and of a
  // delta frame, a record, damage, an empty chunk of another stream.
  const std::string before = headers + information;
  const std::uint64_t type = 12 + before.size() + 8;
  const std::string standard = chunk("ix00", indexHeader(2, 1, 3, "00dc", type) + le32(12) + le32(6) + le32(13) +
                                                 le32(6) + le32(12) + le32(0x80000006));
  const std::string movi =
      list("LIST", "movi",
           chunk("00dc", "abcdef") + chunk("01wb", "xyz") + standard +
               list("LIST", "rec ", chunk("00dc", "gh") + chunk("01wb", "i")) + counting(30, 1) + chunk("07tx", ""));
  const std::string old = chunk("idx1", entry("00dc", 0x10, 4, 6) + entry("01wb", 0, 18, 3) +
                                            entry("01wb", 0x10, 18, 4) + entry("00dc", 0, 5, 6));
  return list("RIFF", "AVI ", before + movi + old + chunk("JUNK", counting(6, 1))) + "abc";
}

enum class Form { text, json };

std::string told(MemoryReadable& file, Form form, bool all, const std::function<bool()>& isEnding = kNeverEnding) {
  std::string out;
  const TakePiece take = [&out](std::string_view piece) { out += piece; };
  if (form == Form::text) {
    OutlineText sink(take, all);
    avi::Outline outline(file, sink, isEnding, all);
    outline.walk();
    sink.finish(outline.failures().count, outline.wasStopped());
    return out;
  }
  OutlineJson sink(take, "clip\n.avi", file.size());
  avi::Outline outline(file, sink, isEnding, all);
  outline.walk();
  sink.finish(outline.isAvi(), outline.failures().count, outline.wasStopped());
  // One member or element a line, so that a difference shows where it is.
  std::string lines;
  for (const char character : out) {
    lines += character;
    if (character == ',' || character == '{' || character == '[') lines += '\n';
  }
  return lines;
}

TEST(OutlineGolden, EveryFieldIsToldInWords) {
  MemoryReadable file(film());
  EXPECT_TRUE(matchesGolden("inspect_text", told(file, Form::text, false)));
}

TEST(OutlineGolden, EveryChunkIsToldInWordsWhereAllAreWanted) {
  MemoryReadable file(film());
  EXPECT_TRUE(matchesGolden("inspect_text_chunks", told(file, Form::text, true)));
}

TEST(OutlineGolden, EveryFieldIsToldAsJson) {
  MemoryReadable file(film());
  EXPECT_TRUE(matchesGolden("inspect_json", told(file, Form::json, false)));
}

TEST(OutlineGolden, EveryChunkIsToldAsJsonWhereAllAreWanted) {
  MemoryReadable file(film());
  EXPECT_TRUE(matchesGolden("inspect_json_chunks", told(file, Form::json, true)));
}

TEST(OutlineGolden, WhatCannotBeReadIsTold) {
  const std::string bytes = film();
  const std::size_t index = bytes.find("idx1");
  for (const Form form : {Form::text, Form::json}) {
    MemoryReadable file(bytes);
    file.makeUnreadable(index + 8 + 20, index + 8 + 21);
    EXPECT_TRUE(matchesGolden(form == Form::text ? "inspect_unreadable_text" : "inspect_unreadable_json",
                              told(file, form, false)));
  }
}

TEST(OutlineGolden, JsonHolds100ProblemsAndCountsThemAll) {
  std::string out;
  OutlineJson sink([&out](std::string_view piece) { out += piece; }, "", 0);
  for (std::uint64_t i = 0; i < 101; ++i) sink.problem({.kind = avi::ProblemKind::listTooDeep, .offset = i}, 0);
  sink.endFile({});
  sink.finish(true, 0, false);
  EXPECT_NE(out.find("\"offset\":99,"), std::string::npos);
  EXPECT_EQ(out.find("\"offset\":100,"), std::string::npos);
  EXPECT_NE(out.find("\"problem_count\":101"), std::string::npos);
}

TEST(OutlineGolden, TextShows1000ProblemsUnlessAllAreWanted) {
  const auto endOf = [](std::uint64_t problems, bool all) {
    std::string out;
    OutlineText sink([&out](std::string_view piece) { out += piece; }, all);
    for (std::uint64_t i = 0; i < problems; ++i) sink.problem({.kind = avi::ProblemKind::listTooDeep, .offset = i}, 0);
    sink.finish(0, false);
    return out.substr(out.rfind('!'));
  };
  EXPECT_EQ(endOf(1000, false), "! at 999: lists are nested too deep here\n1,000 problems found.\n");
  EXPECT_EQ(endOf(1001, false),
            "! at 999: lists are nested too deep here\n1,001 problems found; the first 1,000 are shown.\n");
  EXPECT_EQ(endOf(1001, true), "! at 1,000: lists are nested too deep here\n1,001 problems found.\n");
}

TEST(OutlineGolden, StopIsTold) {
  for (const Form form : {Form::text, Form::json}) {
    MemoryReadable file(film());
    int asked = 0;
    EXPECT_TRUE(matchesGolden(form == Form::text ? "inspect_stopped_text" : "inspect_stopped_json",
                              told(file, form, false, [&asked] { return ++asked > 30; })));
  }
}

}  // namespace
}  // namespace zelvo::tests
