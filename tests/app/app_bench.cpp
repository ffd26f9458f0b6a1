#include "tests/app/app_bench.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <thread>

#include "tests/support/avi_builder.h"

namespace zelvo::tests {

using platform::headless::HeadlessButton;

namespace {

/// Steps of a progress: thousands, and looked at where a test is about them.
bool isStep(const std::string& line) {
  static constexpr std::array<std::string_view, 4> kSteps = {
      "progressbar.setDoubleValue", "saveprogressbar.setDoubleValue", "repairbutton.setState(off)",
      "textfield.setStringValue(Retrieving"};
  return std::any_of(kSteps.begin(), kSteps.end(), [&](std::string_view step) { return line.starts_with(step); });
}

}  // namespace

void RecordingUpdateCheck::checkForUpdateClicked(platform::Button* sender) {
  const auto* button = dynamic_cast<HeadlessButton*>(sender);
  events_.add("checkForUpdateClicked(" + (button == nullptr ? "nobody" : button->name()) + ")");
}

void RecordingUpdateCheck::autoUpdateScan(const update::ScanGates& gates) {
  noted("autoUpdateScan(" + std::string(gates.scanIsRunning ? "scanning" : "not scanning") + ", " +
        (gates.scanInfoOrSavingNotProcessing ? "idle" : "busy") + ", " + std::to_string(gates.viewsOverlaidCount) +
        ")");
}

std::optional<std::string> RecordingUpdateCheck::md5(std::optional<std::span<const std::byte>> data) {
  noted("md5(" + (data ? std::to_string(data->size()) : "nothing") + ")");
  return "digest";
}

std::optional<std::string> RecordingUpdateCheck::hashString(const std::string& text) {
  noted("hashString(" + text + ")");
  return "digest";
}

AppBench::AppBench(platform::MainQueue& queue, platform::Workers& workers, bool keepsEvents)
    : screen(keepsEvents ? &events : nullptr),
      log(keepsEvents ? &events : nullptr),
      sheets(queue, keepsEvents ? &events : nullptr),
      movies(keepsEvents ? &events : nullptr),
      application(&events, screen.mainWindow) {
  engine::resetGlobals();
  app::resetGlobals();
  controller = std::make_unique<app::Orlin_Repair_AVIAppDelegate>(
      app::AppServices{.application = application,
                       .files = recordingFiles,
                       .openUnattended =
                           [this](const std::string& path) {
                             openedUnattended.push_back(path);
                             return files.openForReading(path);
                           },
                       .fileManager = fileManager,
                       .scratchPaths = scratchPaths,
                       .workers = workers,
                       .mainQueue = queue,
                       .clock = clock,
                       .log = log,
                       .sheets = sheets,
                       .panels = panels,
                       .alertPanels = alerts,
                       .waitPanels = waits,
                       .movies = movies,
                       .notifications = notifications,
                       .tracking = tracking,
                       .cursor = cursor,
                       .workspace = workspace,
                       .bundle = bundle,
                       .paths = paths,
                       .pathProbe = pathProbe,
                       .updateCheck = updateCheck,
                       .films = films,
                       .lookAtStorage =
                           [this] {
                             return platform::StorageView{storage, storage};
                           },
                       .printed = printed,
                       .homeDirectory = "/home/user",
                       .translator = words},
      screen.controller, screen.job);
  app::wire(*controller, screen.job, actions, application);
}

AppBench::~AppBench() {
  events.changedBefore = nullptr;
  controller.reset();
  engine::resetGlobals();
  app::resetGlobals();
}

void AppBench::start() {
  controller->init();
  controller->awakeFromNib();
  controller->applicationDidFinishLaunching();
  events.clear();
}

MemoryFile& AppBench::choose(platform::Bytes bytes, const std::string& path) {
  MemoryFile& file = files.put(path, std::move(bytes));
  controller->openFinderWindow(&screen.browsebutton);
  EXPECT_TRUE(panels.lastOpenPanel()->choose(path));
  events.clear();
  return file;
}

bool AppBench::isShown(const platform::headless::HeadlessWindow& sheet) const {
  const Lines shown = sheets.shown();
  return std::find(shown.begin(), shown.end(), sheet.name()) != shown.end();
}

void AppBench::watchVariables() {
  const auto number = [](auto value) { return std::to_string(static_cast<std::uint64_t>(value)); };
  const auto text = [](const std::optional<std::string>& value) { return value.value_or("nothing"); };
  watched_ = {{"stopflag", [=] { return number(bool{engine::stopflag}); }, {}},
              {"path", [=] { return text(engine::path.get()); }, {}},
              {"inputfilesize", [=] { return number(std::uint64_t{engine::inputfilesize}); }, {}},
              {"internalpath", [] { return engine::internalpath.get(); }, {}},
              {"negvalue", [=] { return number(app::negvalue); }, {}},
              {"savepath", [] { return app::savepath; }, {}},
              {"oSize", [=] { return number(app::oSize); }, {}},
              {"unipath", [=, this] { return text(controller->unipath()); }, {}},
              {"stopvalue", [=, this] { return number(std::int32_t{controller->stopvalue}); }, {}},
              {"sendermain", [=, this] { return number(controller->sendermain != nullptr); }, {}},
              {"mythread", [=, this] { return number(controller->mythread != nullptr); }, {}},
              {"video", [=, this] { return number(controller->video.get() != nullptr); }, {}},
              {"savingNameFromUser", [=, this] { return controller->savingNameFromUser; }, {}}};
  for (Watched& one : watched_) one.last = one.look();
  events.changedBefore = [this] { return changedVariables(); };
}

Lines AppBench::changedVariables() {
  const std::lock_guard lock(watching_);
  Lines changed;
  for (Watched& one : watched_) {
    std::string now = one.look();
    if (now == one.last) continue;
    changed.push_back(one.name + " = " + now);
    one.last = std::move(now);
  }
  return changed;
}

Lines AppBench::takeAllEvents() {
  Lines lines = events.lines();
  for (std::string& line : changedVariables()) lines.push_back(std::move(line));
  events.clear();
  return lines;
}

Lines AppBench::takeEvents() {
  Lines lines = takeAllEvents();
  std::erase_if(lines, isStep);
  return lines;
}

Lines AppBench::takeEvents(const Lines& beginnings) {
  Lines lines = events.lines();
  events.clear();
  std::erase_if(lines, [&](const std::string& line) {
    return std::none_of(beginnings.begin(), beginnings.end(),
                        [&](const std::string& beginning) { return line.starts_with(beginning); });
  });
  return lines;
}

void FlowTest::runWorkers() {
  while (workers.runNext()) {
  }
  queue.pump();
}

void FlowTest::runNextOnAThread() {
  std::thread([this] { EXPECT_TRUE(workers.runNext()); }).join();
}

void FlowTest::repairWhole() {
  ASSERT_TRUE(app.press(app.screen.repairbutton));
  runWorkers();
}

void FlowTest::reachResultPage() {
  app.start();
  app.choose(smallAvi());
  repairWhole();
  ASSERT_TRUE(app.isShown(app.screen.repaircompletedwindow));
  ASSERT_TRUE(app.press(app.screen.repaircompletedokbutton));
  ASSERT_EQ(app.screen.tabview.page(), 3);
  app.events.clear();
}

platform::Bytes smallAvi() { return AviBuilder().interleaved(45, 10000, 1800).build(); }

}  // namespace zelvo::tests
