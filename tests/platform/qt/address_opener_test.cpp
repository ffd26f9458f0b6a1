// What becomes of addresses: a program of the test's own stands in the place of the desktop's.
#include "platform/qt/window/address_opener.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QCoreApplication>
#include <QWidget>
#include <filesystem>

#include "platform/launcher.h"
#include "platform/linux/program_starter.h"
#include "platform/qt/window/workspace.h"
#include "tests/platform/qt/bounded_wait.h"
#include "tests/support/temp_folder.h"

namespace zelvo::tests {
namespace {

using platform::qt::AddressOpener;
using platform::qt::QtWorkspace;

class NoOpener final : public platform::FileOpener {
 public:
  bool openFile(const std::string&, const std::string&) override { return false; }
};

class AddressOpenerTest : public testing::Test {
 protected:
  /// A program that writes down what it was handed and then does `rest`.
  std::string program(const std::string& rest) {
    const std::string path =
        folder.put("opener", "#!/bin/sh\nprintf '%s|' \"$#\" \"$1\" > '" + folder.path("new") + "'\nmv '" +
                                 folder.path("new") + "' '" + folder.path("handed") + "'\n" + rest + "\n");
    EXPECT_EQ(::chmod(path.c_str(), 0700), 0);
    return path;
  }
  void until(const std::function<bool()>& reached) {
    waitUntil(
        reached, [] { QCoreApplication::processEvents(QEventLoop::AllEvents, 10); },
        [this] { return "\"" + handed() + "\", " + std::to_string(failures) + " failures"; });
  }
  [[nodiscard]] std::string handed() const {
    return std::filesystem::exists(folder.path("handed")) ? folder.content("handed") : std::string();
  }

  TempFolder folder;
  platform::linux_::LinuxProgramStarter starter;
  int failures = 0;
};

TEST_F(AddressOpenerTest, TheProgramIsHandedTheAddressAsItIs) {
  AddressOpener opener(starter, program("exit 0"));
  EXPECT_TRUE(opener.open("file:///a%20b/$(touch x)'\";.html", {}));
  until([&] { return handed() == "1|file:///a%20b/$(touch x)'\";.html|"; });
}

TEST_F(AddressOpenerTest, AProgramThatOpensNothingIsToldOf) {
  AddressOpener opener(starter, program("exit 3"));
  EXPECT_TRUE(opener.open("file:///page.html", [&] { ++failures; }));
  EXPECT_EQ(failures, 0) << "never within the call";
  until([&] { return failures > 0; });
  EXPECT_EQ(failures, 1);
}

TEST_F(AddressOpenerTest, AProgramThatOpensItIsNot) {
  AddressOpener opener(starter, program("exit 0"));
  int ends = 0;
  EXPECT_TRUE(opener.open("file:///page.html", [&] { ++failures; }));
  // The second one's end comes after the first one's.
  until([&] { return !handed().empty(); });
  AddressOpener failing(starter, program("exit 1"));
  EXPECT_TRUE(failing.open("file:///page.html", [&] { ++ends; }));
  until([&] { return ends > 0; });
  EXPECT_EQ(failures, 0);
}

TEST_F(AddressOpenerTest, AMissingProgramOpensNothing) {
  AddressOpener opener(starter, folder.path("missing"));
  EXPECT_FALSE(opener.open("file:///page.html", [&] { ++failures; }));
}

TEST_F(AddressOpenerTest, OneThatGoesIsToldNothing) {
  {
    AddressOpener opener(starter, program("exit 3"));
    EXPECT_TRUE(opener.open("file:///page.html", [&] { ++failures; }));
  }
  AddressOpener other(starter, program("exit 3"));
  int ends = 0;
  EXPECT_TRUE(other.open("file:///page.html", [&] { ++ends; }));
  until([&] { return ends > 0; });
  EXPECT_EQ(failures, 0);
}

TEST_F(AddressOpenerTest, TheWorkspaceTellsOfAnAddressThatNothingOpened) {
  QWidget window;
  NoOpener files;
  QtWorkspace workspace(window, files, starter, "/none", "none", program("exit 3"));
  QUrl told;
  workspace.setUnopenedReceiver([&](const QUrl& address) { told = address; });
  EXPECT_TRUE(workspace.openURL("file:///a%20b.html#there"));
  until([&] { return !told.isEmpty(); });
  EXPECT_EQ(told.toLocalFile().toStdString(), "/a b.html");
  EXPECT_EQ(told.fragment().toStdString(), "there");
}

TEST_F(AddressOpenerTest, AnAddressThatIsNoneOpensNothing) {
  QWidget window;
  NoOpener files;
  QtWorkspace workspace(window, files, starter, "/none", "none", program("exit 0"));
  EXPECT_FALSE(workspace.openURL("http://[broken"));
  EXPECT_EQ(handed(), "");
}

}  // namespace
}  // namespace zelvo::tests
