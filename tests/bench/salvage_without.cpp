// The deep repair with one of its techniques left out, so that it can be measured what each brings.
//
//   bench_salvage_without index|learning|gaps|headers INPUT OUTPUT
#include <algorithm>
#include <cstdio>
#include <string_view>

#include "avi/input_file.h"
#include "platform/headless/workers.h"
#include "platform/linux/file_manager.h"
#include "platform/linux/files.h"
#include "salvage/headers/header_synthesis.h"
#include "salvage/plan/evidence.h"
#include "salvage/plan/film_plan.h"
#include "salvage/plan/plan_choices.h"
#include "salvage/writing/film_writer.h"

namespace {

using namespace zelvo;  // NOLINT(google-build-using-namespace): a program of its own

constexpr auto kNever = [] { return false; };

bool salvageWithout(std::string_view technique, avi::InputFile& input, platform::WritableFile& out) {
  const salvage::SurvivingHeaders headers = salvage::survivingHeaders(input);
  const salvage::StreamCodes codes(headers);
  const salvage::MediaScan scan = salvage::scanMedia(input, headers.mediaBegin(), codes, kNever);
  const salvage::ChunkChain chain = salvage::linkChunks(scan.candidates, scan.chunkEnds(), scan.end);
  const auto seen = salvage::seenStreams(scan.candidates, chain, codes);
  salvage::IndexTemplate index;
  if (technique != "index") index = salvage::indexTemplate(input, headers, codes, scan);
  salvage::FilmHeader header = salvage::filmHeader(headers, seen);
  const auto lost = salvage::sampleStreams(input, scan.candidates, chain, salvage::streamsWithoutHeader(header, seen));
  if (!lost.empty() && technique != "headers")
    salvage::synthesiseHeaders(header, {lost, index, scan.candidates, chain, {}});
  if (header.streams.empty()) return false;
  std::vector<salvage::StreamFacts> facts;
  if (technique != "learning") facts = salvage::learnStreams(scan.candidates, chain);
  salvage::FilmPlan plan = salvage::planFilm({input, headers, header, codes, scan, chain, facts, index});
  if (technique == "gaps") salvage::closeGaps(plan);
  const auto layout = salvage::layOut(plan, header);
  if (!layout) return false;
  platform::headless::HeadlessWorkers workers;
  return !salvage::writeFilm({input, out, workers, plan, header, *layout, kNever}).failure;
}

}  // namespace

int main(int count, char** words) {
  constexpr std::string_view kTechniques[] = {"index", "learning", "gaps", "headers"};
  if (count != 4 || std::ranges::find(kTechniques, words[1]) == std::end(kTechniques)) {
    std::fputs("usage: bench_salvage_without index|learning|gaps|headers INPUT OUTPUT\n", stderr);
    return 2;
  }
  platform::linux_::LinuxFiles files;
  platform::linux_::LinuxFileManager fileManager;
  const auto opened = files.openForReading(words[2]);
  if (!opened.file || fileManager.createFile(words[3])) return 3;
  const auto out = files.openForWriting(words[3]);
  avi::InputFile input(*opened.file);
  return out.file && salvageWithout(words[1], input, *out.file) && !out.file->close() ? 0 : 1;
}
