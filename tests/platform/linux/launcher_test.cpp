#include "platform/linux/launcher.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <map>
#include <sstream>
#include <thread>

#include "platform/linux/property_lists.h"
#include "platform/linux/trusted_path.h"
#include "platform/path_mapper.h"
#include "tests/platform/linux/variable.h"
#include "tests/support/temp_folder.h"
#include "update/update_paths.h"

namespace zelvo::tests {
namespace {

namespace fs = std::filesystem;
using platform::linux_::LinuxLauncher;
using platform::linux_::OwnerCheck;

/// Writes down how it was started, beside itself, and tells its end through a pipe that lies there.
constexpr const char* kUpdater = R"sh(#!/bin/sh
here=$(dirname "$0")
{
  echo "arguments=$#"
  echo "program=$0"
  echo "first=$1"
  echo "folder=$(pwd)"
  echo "process=$$"
  echo "session=$(sed 's/.*) //' /proc/$$/stat | cut -d' ' -f4)"
  echo "input=$(readlink /proc/$$/fd/0)"
  echo "ignored=$(sed -n 's/^SigIgn:[[:space:]]*//p' /proc/$$/status)"
  echo "blocked=$(sed -n 's/^SigBlk:[[:space:]]*//p' /proc/$$/status)"
  echo "kept=$KEPT"
  echo "lost=$LD_PRELOAD$LD_LIBRARY_PATH$QT_PLUGIN_PATH"
  echo "activation=$XDG_ACTIVATION_TOKEN$DESKTOP_STARTUP_ID"
} >"$here/record"
echo >"$here/ended"
)sh";

class Launcher : public testing::Test {
 protected:
  Launcher() {
    fs::create_directories(applications);
    for (fs::path folder = applications; folder != temp.path(); folder = folder.parent_path()) {
      fs::permissions(folder, fs::perms(0755));
    }
  }

  void putProgram(const fs::path& path, const std::string& content = kUpdater) {
    writeFile(path, content);
    fs::permissions(path, fs::perms(0755));
  }
  /// An application folder whose program writes down how it was started.
  fs::path putApplication(const fs::path& folder) {
    writeFile(folder / "Contents/Info.plist",
              "<plist><dict><key>CFBundleExecutable</key><string>updater</string></dict></plist>");
    putProgram(folder / "Contents/MacOS/updater");
    return folder / "Contents/MacOS";
  }
  /// Starts it, waits for its end and answers what it wrote down.
  std::map<std::string, std::string> recordOf(const fs::path& launched, const fs::path& folder,
                                              std::uint32_t options = platform::kLaunchWithoutActivation) {
    return recordAfter(folder, [&] { return launcher.launchApplication(launched, options); });
  }
  /// Hands `file` to it, and otherwise the same.
  std::map<std::string, std::string> recordOfOpening(const std::string& file, const fs::path& launched,
                                                     const fs::path& folder) {
    return recordAfter(folder, [&] { return launcher.openFile(file, launched); });
  }
  template <class Start>
  std::map<std::string, std::string> recordAfter(const fs::path& folder, const Start& start) {
    const std::string pipe = folder / "ended";
    EXPECT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    std::map<std::string, std::string> record;
    if (!start()) {
      ADD_FAILURE() << "not started: " << folder;
      return record;
    }
    EXPECT_EQ(readFile(pipe), "\n");
    std::istringstream lines(readFile(folder / "record"));
    for (std::string line; std::getline(lines, line);) {
      record[line.substr(0, line.find('='))] = line.substr(line.find('=') + 1);
    }
    return record;
  }
  bool starts(const fs::path& path) { return launcher.launchApplication(path, platform::kLaunchWithoutActivation); }

  TempFolder temp;
  const fs::path applications = temp / "zelvo/avi-repair/Applications";
  platform::linux_::LinuxPropertyLists lists;
  LinuxLauncher launcher{lists, applications};
};

TEST_F(Launcher, ProgramIsStartedWithoutArgumentsInASessionOfItsOwn) {
  putProgram(applications / "Auto Updator.app");
  auto record = recordOf(applications / "Auto Updator.app", applications);
  EXPECT_EQ(record["arguments"], "0");
  EXPECT_EQ(record["program"], applications / "Auto Updator.app");
  EXPECT_EQ(record["folder"], "/");
  EXPECT_EQ(record["session"], record["process"]);
  EXPECT_EQ(record["input"], "/dev/null");
}

TEST_F(Launcher, FolderIsStartedByTheProgramItsListNames) {
  const platform::PathMapper mapper(temp.path());
  const fs::path bundle = mapper.mapped(update::paths::kUpdater);
  const fs::path folder = putApplication(bundle);
  EXPECT_EQ(recordOf(bundle, folder)["program"], folder / "updater");
}

TEST_F(Launcher, SignalsAreAsUsual) {
  putProgram(applications / "updater");
  ::signal(SIGPIPE, SIG_IGN);
  ::signal(SIGUSR1, SIG_IGN);
  sigset_t mask;
  ::sigemptyset(&mask);
  ::sigaddset(&mask, SIGTERM);
  ::pthread_sigmask(SIG_BLOCK, &mask, nullptr);
  auto record = recordOf(applications / "updater", applications);
  ::pthread_sigmask(SIG_UNBLOCK, &mask, nullptr);
  ::signal(SIGPIPE, SIG_DFL);
  ::signal(SIGUSR1, SIG_DFL);
  // Two signals are the system library's own, and stay as they were.
  constexpr std::uint64_t kOwnOfTheLibrary = (1ULL << 31U) | (1ULL << 32U);
  EXPECT_EQ(std::stoull(record["ignored"], nullptr, 16) & ~kOwnOfTheLibrary, 0U);
  EXPECT_EQ(record["blocked"], "0000000000000000");
}

TEST_F(Launcher, OnlyTheUsualStreamsAreHandedOn) {
  putProgram(applications / "updater", R"sh(#!/bin/sh
here=$(dirname "$0")
for one in /proc/$$/fd/*; do echo "${one##*/}=$(readlink "$one")"; done >"$here/record"
echo >"$here/ended"
)sh");
  const int left = ::open(applications.c_str(), O_RDONLY | O_DIRECTORY);  // NOLINT: left open on purpose
  ASSERT_GE(left, 0);
  ASSERT_EQ(::dup2(left, 50), 50);
  auto record = recordOf(applications / "updater", applications);
  EXPECT_EQ(record["0"], "/dev/null");
  EXPECT_EQ(record["2"], "/dev/null");
  EXPECT_EQ(record.count("50"), 0U);
  for (const auto& [number, target] : record) EXPECT_NE(target, applications) << number;
  ::close(50);
  ::close(left);
}

TEST_F(Launcher, VariablesThatPutOtherCodeIntoAProgramStayBehind) {
  putProgram(applications / "updater");
  const Variable kept("KEPT", "yes");
  const Variable preload("LD_PRELOAD", "x");
  const Variable libraries("LD_LIBRARY_PATH", "x");
  const Variable plugins("QT_PLUGIN_PATH", "x");
  const Variable token("XDG_ACTIVATION_TOKEN", "x");
  const Variable startUp("DESKTOP_STARTUP_ID", "x");
  auto record = recordOf(applications / "updater", applications);
  EXPECT_EQ(record["kept"], "yes");
  EXPECT_EQ(record["lost"], "");
  EXPECT_EQ(record["activation"], "");
}

TEST_F(Launcher, WithoutTheOptionTheApplicationMayComeToTheFront) {
  putProgram(applications / "updater");
  const Variable token("XDG_ACTIVATION_TOKEN", "a");
  const Variable startUp("DESKTOP_STARTUP_ID", "b");
  EXPECT_EQ(recordOf(applications / "updater", applications, 0)["activation"], "ab");
}

TEST_F(Launcher, EndedProcessLeavesNoEntry) {
  putProgram(applications / "updater");
  const pid_t process = std::stoi(recordOf(applications / "updater", applications)["process"]);
  while (::kill(process, 0) == 0) std::this_thread::yield();
  EXPECT_EQ(errno, ESRCH);
}

TEST_F(Launcher, WhatCannotBeStartedIsAFailure) {
  putProgram(applications / "no script", "just text");
  putProgram(applications / "no interpreter", "#!/no/such/interpreter\n");
  writeFile(applications / "not executable", kUpdater);
  fs::create_directories(applications / "empty.app");
  for (const char* name : {"missing", "no script", "no interpreter", "not executable", "empty.app"}) {
    EXPECT_FALSE(starts(applications / name)) << name;
  }
  EXPECT_FALSE(starts("relative"));
  EXPECT_FALSE(starts(""));
}

TEST_F(Launcher, ListThatNamesNoProgramOfTheFolderIsAFailure) {
  const fs::path bundle = applications / "updater.app";
  putApplication(bundle);
  putProgram(applications / "updater.app/Contents/outside");
  for (const char* value : {"<string>../outside</string>", "<string></string>", "<string>.</string>",
                            "<string>..</string>", "<string>missing</string>", "<true/>"}) {
    writeFile(bundle / "Contents/Info.plist",
              "<plist><dict><key>CFBundleExecutable</key>" + std::string(value) + "</dict></plist>");
    EXPECT_FALSE(starts(bundle)) << value;
  }
  writeFile(bundle / "Contents/Info.plist", "no list");
  EXPECT_FALSE(starts(bundle));
}

TEST_F(Launcher, ProgramThatOthersMayWriteIsNotStarted) {
  putProgram(applications / "updater");
  for (const unsigned mode : {0775U, 0757U}) {
    fs::permissions(applications / "updater", fs::perms(mode));
    EXPECT_FALSE(starts(applications / "updater"));
  }
}

TEST_F(Launcher, ProgramBelowAFolderThatOthersMayWriteIsNotStarted) {
  putProgram(applications / "a/b/updater");
  fs::permissions(applications / "a", fs::perms(0777));
  EXPECT_FALSE(starts(applications / "a/b/updater"));
  fs::permissions(applications / "a", fs::perms(0755));
  fs::permissions(applications, fs::perms(0775));
  EXPECT_FALSE(starts(applications / "a/b/updater"));
}

TEST_F(Launcher, ApplicationWhoseListOthersMayWriteIsNotStarted) {
  putApplication(applications / "updater.app");
  fs::permissions(applications / "updater.app/Contents/Info.plist", fs::perms(0666));
  EXPECT_FALSE(starts(applications / "updater.app"));
}

TEST_F(Launcher, FoldersAboveThePrefixAreNotLookedAt) {
  putProgram(applications / "updater");
  fs::permissions(temp.path(), fs::perms(0777));
  recordOf(applications / "updater", applications);
}

TEST_F(Launcher, OutsideThePrefixFoldersAreLookedAtToo) {
  putProgram(temp / "outside/a/updater", "#!/bin/sh\n");
  EXPECT_TRUE(starts(temp / "outside/a/updater"));
  fs::permissions(temp / "outside", fs::perms(0777));
  EXPECT_FALSE(starts(temp / "outside/a/updater"));
}

TEST_F(Launcher, LinkIntoAFolderThatOthersMayWriteIsNotFollowed) {
  putProgram(applications / "open/updater");
  fs::permissions(applications / "open", fs::perms(0777));
  fs::create_symlink(applications / "open/updater", applications / "updater");
  EXPECT_FALSE(starts(applications / "updater"));
}

TEST_F(Launcher, LinkThatLiesInAFolderThatOthersMayWriteIsNotFollowed) {
  putProgram(applications / "updater");
  fs::create_directory(applications / "open");
  fs::create_symlink("../updater", applications / "open/link");
  fs::permissions(applications / "open", fs::perms(0777));
  fs::create_symlink("open/link", applications / "way");
  EXPECT_FALSE(starts(applications / "way"));
}

TEST_F(Launcher, TrustedLinkIsFollowed) {
  putProgram(applications / "a/updater");
  fs::create_symlink("../Applications/./a", applications / "link");
  EXPECT_EQ(recordOf(applications / "link/updater", applications / "a")["program"], applications / "a/updater");
}

TEST_F(Launcher, LinksThatLeadToEachOtherLeadNowhere) {
  fs::create_symlink("b", applications / "a");
  fs::create_symlink("a", applications / "b");
  EXPECT_FALSE(starts(applications / "a"));
}

TEST_F(Launcher, ProgramOfAnotherUserIsNotStarted) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can give a file away";
  putProgram(applications / "updater");
  ASSERT_EQ(::chown((applications / "updater").c_str(), 65534, 65534), 0);
  EXPECT_FALSE(starts(applications / "updater"));
}

TEST_F(Launcher, WithoutTheOwnerCheckTheyAreAllStarted) {
  LinuxLauncher unchecked(lists, applications, OwnerCheck::off);
  putProgram(applications / "updater", "#!/bin/sh\n");
  fs::permissions(applications / "updater", fs::perms(0777));
  fs::permissions(applications, fs::perms(0777));
  EXPECT_TRUE(unchecked.launchApplication(applications / "updater", 0));
}

TEST_F(Launcher, FileIsHandedOverAsTheOneArgument) {
  putProgram(applications / "player");
  auto record = recordOfOpening("/films/broken film.avi", applications / "player", applications);
  EXPECT_EQ(record["arguments"], "1");
  EXPECT_EQ(record["first"], "/films/broken film.avi");
  EXPECT_EQ(record["folder"], "/");
  EXPECT_EQ(record["session"], record["process"]);
}

TEST_F(Launcher, FileThatLooksLikeAnOptionOrACommandIsHandedOverAsItIs) {
  putProgram(applications / "player");
  const std::string name = "-x; $(touch here) \"'*.avi";
  EXPECT_EQ(recordOfOpening(name, applications / "player", applications)["first"], name);
}

TEST_F(Launcher, FileIsOpenedByTheProgramOfAnApplicationFolder) {
  const fs::path bundle = applications / "player.app";
  const fs::path folder = putApplication(bundle);
  EXPECT_EQ(recordOfOpening("/films/a.avi", bundle, folder)["program"], folder / "updater");
}

TEST_F(Launcher, ApplicationThatOpensAFileMayComeToTheFront) {
  putProgram(applications / "player");
  const Variable token("XDG_ACTIVATION_TOKEN", "a");
  const Variable startUp("DESKTOP_STARTUP_ID", "b");
  EXPECT_EQ(recordOfOpening("/films/a.avi", applications / "player", applications)["activation"], "ab");
}

TEST_F(Launcher, FileIsNotOpenedByWhatCannotBeStartedOrTrusted) {
  putProgram(applications / "player");
  fs::permissions(applications / "player", fs::perms(0757));
  EXPECT_FALSE(launcher.openFile("/films/a.avi", applications / "player"));
  EXPECT_FALSE(launcher.openFile("/films/a.avi", applications / "missing"));
  EXPECT_FALSE(launcher.openFile("/films/a.avi", ""));
}

TEST_F(Launcher, TheOwnerCheckIsOnUnlessBuiltOtherwise) {
  EXPECT_EQ(LinuxLauncher::kBuiltIn, ZELVO_CHECK_LAUNCH_OWNERS ? OwnerCheck::on : OwnerCheck::off);
}

}  // namespace
}  // namespace zelvo::tests
