// The buttons of the three sheets: what the globals say when an element is told something.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "engine/repair_file.h"
#include "tests/support/engine_bench.h"

namespace zelvo::tests {
namespace {

/// The path label, which notes what the globals say when it is set.
class NotingField final : public platform::TextField {
 public:
  explicit NotingField(std::function<void(const std::string&)> note) : note_(std::move(note)) {}
  void setStringValue(std::string_view text) override { note_("path label \"" + std::string(text) + "\""); }
  void setIntegerValue(std::int64_t) override {}

 private:
  std::function<void(const std::string&)> note_;
};

class NotingTabs final : public platform::TabView {
 public:
  explicit NotingTabs(std::function<void(const std::string&)> note) : note_(std::move(note)) {}
  void selectFirstTabViewItem() override { note_("first page"); }
  void selectNextTabViewItem() override { note_("next page"); }
  void selectPreviousTabViewItem() override { note_("previous page"); }

 private:
  std::function<void(const std::string&)> note_;
};

class SheetButton : public testing::Test {
 protected:
  SheetButton() {
    const platform::JobOutlets& all = bench.screen.job;
    const platform::JobOutlets outlets{.textfield = all.textfield,
                                       .videocodecfield = all.videocodecfield,
                                       .audiocodecfield = all.audiocodecfield,
                                       .pathfield = pathfield,
                                       .window = all.window,
                                       .filenotsupportedwindow = all.filenotsupportedwindow,
                                       .invalidfilewindow = all.invalidfilewindow,
                                       .repaircompletedwindow = all.repaircompletedwindow,
                                       .stoprepairwindow = all.stoprepairwindow,
                                       .stopbutton = all.stopbutton,
                                       .tabview2 = tabs,
                                       .movieview1 = all.movieview1,
                                       .filenotsupportedokbutton = all.filenotsupportedokbutton,
                                       .invalidfileokbutton = all.invalidfileokbutton,
                                       .repaircompletedokbutton = all.repaircompletedokbutton,
                                       .previewbutton = all.previewbutton,
                                       .minutestextfield = all.minutestextfield,
                                       .secondstextfield = all.secondstextfield,
                                       .hourstextfield = all.hourstextfield};
    bench.job = std::make_unique<engine::RepairFile>(
        engine::RepairServices{bench.files, bench.files, bench.movies, bench.workers, bench.queue, bench.sheets,
                               bench.log},
        outlets);
    bench.job->controll = &bench.relay;
    engine::path.set("/in.avi");
  }

  void note(const std::string& what) {
    const auto path = engine::path.get();
    steps.push_back(what + ": path " + (path ? "\"" + *path + "\"" : "nothing") +
                    (engine::stopflag ? ", stopped" : ""));
  }

  EngineBench bench;
  NotingField pathfield{[this](const std::string& what) { note(what); }};
  NotingTabs tabs{[this](const std::string& what) { note(what); }};
  std::vector<std::string> steps;
};

TEST_F(SheetButton, NotSupportedOkStopsBehindThePageAndBeforeThePath) {
  bench.job->fileNotSupportedokOk(nullptr);
  note("then");
  EXPECT_EQ(steps, (std::vector<std::string>{"previous page: path \"/in.avi\"", "path label \"\": path \"\", stopped",
                                             "then: path nothing, stopped"}));
}

TEST_F(SheetButton, InvalidFileOkForgetsThePathBehindThePage) {
  bench.job->invalidFileOk(nullptr);
  note("then");
  EXPECT_EQ(steps, (std::vector<std::string>{"previous page: path \"/in.avi\"", "path label \"\": path \"\"",
                                             "then: path nothing"}));
}

TEST_F(SheetButton, CompletedOkKeepsThePath) {
  bench.job->repairCompletedOk(nullptr);
  note("then");
  EXPECT_EQ(steps, (std::vector<std::string>{"next page: path \"/in.avi\"", "then: path \"/in.avi\""}));
}

}  // namespace
}  // namespace zelvo::tests
