#include "tests/support/engine_bench.h"

#include <utility>

namespace zelvo::tests {

void RecordingRelay::setProgressBarValue(double percent) {
  values.push_back(percent);
  if (writesEvents) events_.add("setProgressBarValue");
  if (onValue) onValue(percent);
}
void RecordingRelay::updateProgressBar() {
  shown.push_back(values.empty() ? -1.0 : values.back());
  if (writesEvents) events_.add("updateProgressBar");
}
void RecordingRelay::updateSaveProgressBar() {
  savingShown.push_back(values.empty() ? -1.0 : values.back());
  if (writesEvents) events_.add("updateSaveProgressBar");
}
void RecordingRelay::updateSaveProgressBar2() {
  if (writesEvents) events_.add("updateSaveProgressBar2");
}
void RecordingRelay::setMovieView(const std::string& path) {
  events_.add("setMovieView(" + path + ")");
  if (onMovie) onMovie(path);
}

EngineBench::EngineBench() {
  engine::resetGlobals();
  engine::internalpath.set("/out.avi");
  queue.holdRequests(false);
  job = std::make_unique<engine::RepairFile>(engine::RepairServices{files, files, movies, workers, queue, sheets, log},
                                             screen.job);
  job->controll = &relay;
}

EngineBench::~EngineBench() { engine::resetGlobals(); }

MemoryFile& EngineBench::choose(platform::Bytes bytes) {
  engine::path.set("/in.avi");
  engine::inputfilesize = bytes.size();
  return files.put("/in.avi", std::move(bytes));
}

void EngineBench::chooseClaiming(std::uint64_t size) {
  engine::path.set("/in.avi");
  engine::inputfilesize = size;
}

void EngineBench::begin() {
  current = engine::RepairFile::newRun();
  job->beginRun(current);
}

void EngineBench::run() {
  current = engine::RepairFile::newRun();
  job->retrieveAudioVideoSamples(current);
}

namespace {

std::vector<std::pair<std::uint64_t, std::uint64_t>> recorded(const engine::SampleTable& offsets,
                                                              const engine::SampleTable& sizes, std::uint64_t count) {
  std::vector<std::pair<std::uint64_t, std::uint64_t>> out;
  for (std::uint64_t i = 1; i <= count; ++i) out.emplace_back(offsets[i], sizes[i]);
  return out;
}

}  // namespace

std::vector<std::pair<std::uint64_t, std::uint64_t>> EngineBench::video() const {
  return recorded(job->videosampleoffsetarray, job->videosamplesizearray, job->videosamplecount);
}
std::vector<std::pair<std::uint64_t, std::uint64_t>> EngineBench::audio() const {
  return recorded(job->audiosampleoffsetarray, job->audiosamplesizearray, job->audiosamplecount);
}

}  // namespace zelvo::tests
