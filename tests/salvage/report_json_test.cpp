// What is written of a report is read again, and nothing else is taken for one.
#include "salvage/report_json.h"

#include <gtest/gtest.h>

#include <string>

#include "avi/chunk_codes.h"
#include "salvage/damage_picture.h"
#include "salvage/salvage_words.h"

namespace zelvo::tests {
namespace {

using salvage::LossCause;
using salvage::SalvagedSpan;
using salvage::SalvagedStream;
using salvage::SalvageReport;
using salvage::SlotState;

SalvagedStream everyStateOf(avi::FourCC type, avi::FourCC handler) {
  SalvagedStream stream;
  stream.type = type;
  stream.handler = handler;
  for (std::size_t state = 0; state < salvage::kSlotStates; ++state) {
    stream.slots[state] = {state + 1, 100 * state, 0.125005 * static_cast<double>(state)};
  }
  return stream;
}

/// Every cause once, half a second each, the streams in turn.
SalvageReport fullReport() {
  SalvageReport report;
  report.verdict = salvage::SalvageVerdict::partial;
  report.inputSize = 1'000'000;
  report.returnsLeftOut = 12;
  report.hasMainHeader = true;
  report.headerEnd = 2048;
  report.streams = {everyStateOf(avi::kVids, avi::FourCC{"MJPG"}), everyStateOf(avi::kAuds, {}),
                    everyStateOf(avi::FourCC{"txts"}, {})};
  report.streams[1].formatTag = 0x55;
  report.streams[1].number = 1;
  report.streams[1].origin = salvage::HeaderOrigin::donor;
  report.streams[2].number = 7;
  report.streams[2].origin = salvage::HeaderOrigin::synthesised;
  report.fields = {{7, "codec", "0x0001", {"0x0055", "0x0007"}}};
  report.streamsWithoutHeader = 2;
  report.indexes = {{900'000, 500, salvage::Belonging::belongs, 16}, {5000, 30, salvage::Belonging::foreign, 8}};
  report.indexedChunks = 530;
  constexpr int kCauses = 12;
  for (int cause = 0; cause < kCauses; ++cause) {
    SalvagedSpan span;
    span.span.begin = 10'000U * static_cast<unsigned>(cause + 1);
    span.span.end = span.span.begin + 500;
    if (cause % 2 == 0) span.span.originalBegin = span.span.begin + 7;
    if (cause % 3 == 0) span.span.originalEnd = span.span.end + 7;
    span.span.slots = static_cast<std::uint32_t>(cause);
    span.span.cause = static_cast<LossCause>(cause);
    span.begin = 0.5 * cause;
    span.end = span.begin + 0.5;
    span.streams = {{static_cast<std::uint8_t>(cause % 3), static_cast<std::uint64_t>(cause), 1}};
    report.spans.push_back(span);
  }
  report.spansLeftOut = 3;
  report.chunksLeftOut = 5;
  report.syncBefore = 1.25;
  report.syncAfter = 0.04;
  report.unreadable = 4096;
  report.isDonorUseless = true;
  return report;
}

std::string written(const SalvageReport& report) {
  platform::JsonWriter json;
  json.beginObject();
  json.key("report");
  json.beginObject();
  writeReport(json, report);
  json.endObject();
  json.endObject();
  return json.take();
}

/// `text` with the first `part` replaced, which must be there.
std::string with(std::string text, const std::string& part, const std::string& by) {
  const std::size_t at = text.find(part);
  EXPECT_NE(at, std::string::npos) << part;
  return at == std::string::npos ? text : text.replace(at, part.size(), by);
}

TEST(ReportJson, WhatIsWrittenIsReadAgain) {
  const SalvageReport report = fullReport();
  const auto read = salvage::readReport(written(report));
  ASSERT_TRUE(read);
  EXPECT_EQ(written(*read), written(report));
  EXPECT_TRUE(read->isDonorUseless);
  EXPECT_EQ(damagePicture(*read), damagePicture(report));
  EXPECT_EQ(verdictSentence(*read), verdictSentence(report));
  for (std::size_t i = 0; i < report.streams.size(); ++i) {
    EXPECT_EQ(streamWords(read->streams[i]), streamWords(report.streams[i]));
    EXPECT_EQ(codecOf(read->streams[i]), codecOf(report.streams[i]));
    EXPECT_EQ(read->streams[i].type, report.streams[i].type);
    EXPECT_EQ(read->streams[i].handler, report.streams[i].handler);
  }
}

TEST(ReportJson, EveryVerdictComesBack) {
  using salvage::SalvageVerdict;
  for (const auto verdict :
       {SalvageVerdict::clean, SalvageVerdict::repaired, SalvageVerdict::partial, SalvageVerdict::hopeless}) {
    SalvageReport report;
    report.verdict = verdict;
    const auto read = salvage::readReport(written(report));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->verdict, verdict);
    EXPECT_FALSE(read->isDonorUseless || read->lacksDecoder);
    EXPECT_FALSE(read->hasMainHeader);
  }
}

TEST(ReportJson, ACodeThatIsNoTextComesBack) {
  SalvageReport report = fullReport();
  report.streams[0].handler.value = 0x0A000001;
  EXPECT_NE(written(report).find(R"("handler":"0x0a000001")"), std::string::npos);
  const auto read = salvage::readReport(written(report));
  ASSERT_TRUE(read);
  EXPECT_EQ(read->streams[0].handler.value, 0x0A000001U);
}

TEST(ReportJson, NothingElseIsTakenForAReport) {
  const std::string right = written(fullReport());
  EXPECT_TRUE(salvage::readReport(right));
  const std::vector<std::string> wrong = {
      "",
      "{}",
      R"({"report":null})",
      right.substr(0, right.size() - 1),
      with(right, R"("verdict":"partial")", R"("verdict":"fine")"),
      with(right, R"("size":1000000)", R"("size":-1)"),
      with(right, R"("size":1000000)", R"("size":11)"),  // less than what was left out of it
      with(right, R"("handler":"MJPG")", R"("handler":"MJPEG")"),
      with(right, R"("handler":"MJPG")", R"("handler":"0xZZZZ")"),
      with(right, R"("format_tag":85)", R"("format_tag":65536)"),
      with(right, R"("number":7)", R"("number":256)"),
      with(right, R"("header":"donor")", R"("header":"neighbour")"),
      with(right, R"("whole":{"chunks":1)", R"("whole":{"chunks":"1")"),
      with(right, R"("film":"own")", R"("film":"mine")"),
      with(right, R"("cause":"zeroed")", R"("cause":"eaten")"),
      with(right, R"("time_begin":0.500)", R"("time_begin":-0.5)"),
      with(right, R"("time_begin":0.500)", R"("time_begin":9)"),                // behind its end
      with(right, R"("begin":10000,)", R"("begin":20000,)"),                    // the same
      with(right, R"("streams":[{"stream":0,)", R"("streams":[{"stream":3,)"),  // there is none
      with(right, R"("alternatives":["0x0055")", R"("alternatives":[5)"),
      with(right, R"("unreadable":4096)", R"("unreadable":null)"),
      with(right, R"("donor_useless":true)", R"("donor_useless":1)"),
  };
  for (std::size_t i = 0; i < wrong.size(); ++i) EXPECT_FALSE(salvage::readReport(wrong[i])) << i << ": " << wrong[i];
}

}  // namespace
}  // namespace zelvo::tests
