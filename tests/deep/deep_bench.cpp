#include "tests/deep/deep_bench.h"

#include <csignal>
#include <utility>

#include "platform/json_writer.h"
#include "platform/paths.h"
#include "salvage/report_json.h"

namespace zelvo::tests {

namespace {

constexpr int kStoppedExit = 130;

}  // namespace

salvage::SalvageReport hurtReport() {
  salvage::SalvageReport report;
  report.end = salvage::SalvageEnd::written;
  report.verdict = salvage::SalvageVerdict::partial;
  report.inputSize = 100'000;
  report.hasMainHeader = true;
  report.headerEnd = 2'000;
  salvage::SalvagedStream video;
  video.type = avi::kVids;
  video.handler = avi::FourCC{"MJPG"};
  const auto slots = [](salvage::SalvagedStream& stream, salvage::SlotState state) -> salvage::SlotTally& {
    return stream.slots[static_cast<std::size_t>(state)];
  };
  slots(video, salvage::SlotState::whole) = {97, 80'000, 3.88};
  slots(video, salvage::SlotState::damaged) = {1, 700, 0.04};
  slots(video, salvage::SlotState::lost) = {2, 0, 0.08};
  salvage::SalvagedStream sound;
  sound.number = 1;
  sound.type = avi::kAuds;
  sound.formatTag = 1;
  slots(sound, salvage::SlotState::whole) = {100, 10'000, 4.0};
  report.streams = {video, sound};
  salvage::SalvagedSpan span;
  span.span.begin = 50'000;
  span.span.end = 52'000;
  span.span.cause = salvage::LossCause::zeroed;
  span.span.slots = 3;
  span.begin = 2.0;
  span.end = 2.12;
  span.streams = {{0, 2, 1}};
  report.spans = {span};
  return report;
}

salvage::SalvageReport hopelessReport() {
  salvage::SalvageReport report;
  report.inputSize = 100'000;
  return report;
}

DeepBench::DeepBench(platform::MainQueue& queue, platform::Workers& workers,
                     std::function<std::unique_ptr<platform::FilmPrograms>()> makePrograms)
    : sheets(queue, &events) {
  deepRepair =
      std::make_unique<deep::DeepRepair>(servicesOf(queue, workers, newFiles, std::move(makePrograms)), screen.outlets);
  deepRepair->wire(actions);
}

deep::DeepServices DeepBench::servicesOf(platform::MainQueue& queue, platform::Workers& workers,
                                         platform::NewFiles& newFilesToUse,
                                         std::function<std::unique_ptr<platform::FilmPrograms>()> makePrograms) {
  return {.files = files,
          .fileManager = fileManager,
          .newFiles = newFilesToUse,
          .lockedFiles = lockedFiles,
          .workers = workers,
          .mainQueue = queue,
          .clock = clock,
          .log = log,
          .sheets = sheets,
          .alertPanels = alerts,
          .choosers = choosers,
          .movies = movies,
          .workspace = workspace,
          .clipboard = clipboard,
          .settings = settings,
          .pathProbe = pathProbe,
          .translator = platform::englishTranslator(),
          .makePrograms = std::move(makePrograms),
          .scratchFolders = [this] { return scratchFolders; },
          .process = 4711,
          .patience = std::chrono::milliseconds(0)};
}

DeepTest::DeepTest() : DeepBench(queue, workers, [this] { return programs.make(); }) {
  programs.onWait = [this] {
    for (const auto& program : programs.started) {
      if (program->end) continue;
      if (program->isKilled) {
        program->end = platform::ProgramEnd{.exit = -1, .signal = SIGKILL};
      } else {
        play(*program);
      }
      if (program->isStopped && !program->end) end(*program, kStoppedExit);
    }
  };
}

std::string DeepTest::choose(const std::string& name) {
  const std::string path = temp.put(name, "a damaged film");
  deepRepair->filmChosen(path);
  return path;
}

std::string DeepTest::reachResult() {
  const std::string path = choose();
  EXPECT_TRUE(press(screen.deeprepairbutton));
  runWorkers();
  EXPECT_EQ(screen.pages.shown(), platform::DeepPage::result);
  return path;
}

void DeepTest::end(Program& program, int exit, const std::string& reason) {
  salvage::BatchLine line;
  line.state = salvage::LineState::done;
  line.command = "salvage";
  line.input = "/films/some.avi";
  line.outcome = exit == 0 ? "repaired" : "failed";
  line.exit = exit;
  line.reason = reason;
  program.messages.push_back(salvage::filmMessage({salvage::FilmMessage::Kind::end, {}, line}));
  program.end = platform::ProgramEnd{.exit = exit};
}

void DeepTest::repair(Program& program) const {
  platform::JsonWriter json;
  json.beginObject();
  json.key("report");
  json.beginObject();
  salvage::writeReport(json, report);
  json.endObject();
  json.endObject();
  const std::string page = valueOf(program, "--report");
  writeFile(platform::pathIn(platform::folderOf(page), "report.json"), json.take());
  writeFile(page, "<html>a report</html>");
  const bool isHopeless = report.verdict == salvage::SalvageVerdict::hopeless;
  if (!isHopeless) writeFile(valueOf(program, "-o"), repairedBytes);
  end(program, isHopeless ? 1 : 0);
}

void DeepTest::tell(Program& program, const std::string& stage, std::uint64_t done, std::uint64_t all) {
  program.messages.push_back(salvage::filmMessage({salvage::FilmMessage::Kind::progress, {}, {}, {stage, done, all}}));
}

std::string DeepTest::valueOf(const Program& program, const std::string& option) {
  std::string value;
  for (std::size_t i = 0; i + 1 < program.arguments.size(); ++i) {
    if (program.arguments[i] == option) value = program.arguments[i + 1];
  }
  return value;
}

std::vector<std::string> DeepBench::takeAlerts() {
  std::vector<std::string> titles;
  for (; alertsSeen_ < alerts.shown().size(); ++alertsSeen_) {
    titles.push_back(alerts.shown()[alertsSeen_].title.value_or(""));
  }
  return titles;
}

std::vector<std::string> DeepBench::scratchNames() {
  std::vector<std::string> names;
  for (const std::string& own : fileManager.list(temp / "cache")) {
    for (const std::string& name : fileManager.list(temp / ("cache/" + own))) {
      if (name != "lock") names.push_back(name);
    }
  }
  return names;
}

void DeepTest::runWorkers() {
  while (workers.runNext()) {
  }
  queue.pump();
}

}  // namespace zelvo::tests
