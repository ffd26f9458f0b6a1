// What `cmake --install` lays out, looked at as the installed program sees it.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "app/texts.h"
#include "platform/linux/bundle.h"
#include "platform/linux/files.h"
#include "platform/linux/film_programs.h"
#include "platform/linux/path_probe.h"
#include "platform/linux/property_lists.h"
#include "platform/path_mapper.h"
#include "update/places.h"
#include "update/update_paths.h"

namespace zelvo::tests {
namespace {

namespace fs = std::filesystem;
using platform::linux_::LinuxBundle;

/// The path of an address below "file://".
fs::path pathOf(std::string_view url) {
  url.remove_prefix(platform::fixed_path::kFileScheme.size());
  std::string path;
  for (std::size_t at = 0; at < url.size(); ++at) {
    if (url[at] != '%') {
      path += url[at];
      continue;
    }
    path += static_cast<char>(std::stoi(std::string(url.substr(at + 1, 2)), nullptr, 16));
    at += 2;
  }
  return path;
}

/// The window's component, staged below a folder with a blank in its name.
class StagedBundle : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    std::string name = (fs::temp_directory_path() / "zelvo stage XXXXXX").string();
    ASSERT_NE(::mkdtemp(name.data()), nullptr);
    prefix_ = fs::canonical(name);
    const std::string command = "umask 022 && '" ZELVO_CMAKE "' --install '" ZELVO_BUILD_FOLDER
                                "' --component window --prefix '" +
                                prefix_.string() + "' >/dev/null";
    ASSERT_EQ(std::system(command.c_str()), 0) << command;
  }
  static void TearDownTestSuite() { fs::remove_all(prefix_); }

  /// As the program finds it that was started by its link.
  [[nodiscard]] static LinuxBundle bundle() {
    platform::linux_::LinuxFiles files;
    platform::linux_::LinuxPropertyLists lists;
    return {files, lists, fs::canonical(link()).string()};
  }
  [[nodiscard]] static fs::path link() { return prefix_ / ZELVO_INSTALL_BINDIR / "zelvo-avi-repair"; }
  [[nodiscard]] static fs::path share() { return prefix_ / ZELVO_INSTALL_DATADIR; }

  static inline fs::path prefix_;
};

TEST_F(StagedBundle, ProgramIsReachedThroughARelativeLink) {
  EXPECT_TRUE(fs::is_symlink(link()));
  EXPECT_TRUE(fs::read_symlink(link()).is_relative());
  EXPECT_NE(fs::status(link()).permissions() & fs::perms::others_exec, fs::perms::none);
}

TEST_F(StagedBundle, PrefixIsFoundAgainFromTheProgram) { EXPECT_EQ(bundle().prefix(), prefix_.string()); }

TEST_F(StagedBundle, FourComponentsAboveTheBundleLiesAFolderOfOurs) {
  const fs::path above = update::withoutLastComponents(bundle().bundlePath(), update::paths::kLevelsUp);
  EXPECT_EQ(above, prefix_ / "zelvo");
  const std::vector<fs::path> found{fs::directory_iterator(above), fs::directory_iterator()};
  EXPECT_EQ(found, std::vector<fs::path>{above / "avi-repair"});
}

TEST_F(StagedBundle, ListNamesTheApplication) {
  EXPECT_EQ(bundle().infoText("CFBundleIdentifier"), app::texts::kBundleIdentifier);
  EXPECT_EQ(bundle().infoText(update::paths::kVersionKey), ZELVO_VERSION);
}

TEST_F(StagedBundle, ListNamesTheProgramThatLiesInTheBundle) {
  const fs::path program =
      fs::path(bundle().bundlePath()) / "Contents/MacOS" / bundle().infoText("CFBundleExecutable").value_or("none");
  EXPECT_TRUE(fs::is_regular_file(program));
}

TEST_F(StagedBundle, ProgramThatLooksAtPathsLiesBesideIt) {
  const fs::path probe = platform::linux_::LinuxPathProbe::programBeside(fs::canonical(link()).string());
  EXPECT_TRUE(fs::is_regular_file(probe));
  EXPECT_NE(fs::status(probe).permissions() & fs::perms::others_exec, fs::perms::none);
  EXPECT_TRUE(platform::linux_::LinuxPathProbe(probe.string()).answers({"/"}));
}

TEST_F(StagedBundle, TheCommandLineThatDoesTheDeepRepairLiesBesideTheWindow) {
  using platform::linux_::LinuxFilmPrograms;
  const fs::path program = LinuxFilmPrograms::programBeside(fs::canonical(link()).string());
  EXPECT_TRUE(fs::is_regular_file(program.parent_path() / "zelvo-avi-decoder"));
  LinuxFilmPrograms programs(program.string());
  const auto started = programs.start({.arguments = {"salvage", "--dry-run", "--", "/no/such/film.avi"}});
  ASSERT_NE(started.program, nullptr) << started.error.message();
  constexpr int kLooks = 600;
  for (int look = 0; look < kLooks && !started.program->end(); ++look) programs.wait(std::chrono::milliseconds(100));
  ASSERT_TRUE(started.program->end());
  EXPECT_EQ(started.program->end()->exit, 3);
  EXPECT_NE(started.program->complaints().find("/no/such/film.avi"), std::string::npos);
}

TEST_F(StagedBundle, AddressThatIsNotSetHasNoKey) {
  const auto expected = [](std::string_view url) {
    return url.empty() ? std::nullopt : std::optional<std::string>(std::string(url));
  };
  EXPECT_EQ(bundle().infoText(update::paths::kCloudPlistUrlKey), expected(ZELVO_UPDATE_URL));
  EXPECT_EQ(bundle().infoText(app::texts::kPlayerDownloadUrlKey), expected(ZELVO_PLAYER_URL));
}

TEST_F(StagedBundle, BothFormsOfTheHelpAddressesLeadToPages) {
  const platform::PathMapper mapper(bundle().prefix().value_or("none"));
  for (const platform::FixedUrl url : {app::texts::kHelpPage1, app::texts::kHelpPage2, app::texts::kTipsPage}) {
    EXPECT_TRUE(fs::is_regular_file(pathOf(mapper.mapped(url)))) << mapper.mapped(url);
  }
}

TEST_F(StagedBundle, EveryPictureOfTheWindowIsThere) {
  using namespace app::texts;
  const fs::path pictures = fs::path(bundle().bundlePath()) / "Contents/Resources";
  for (const std::string_view name :
       {kRepairNormal, kRepairHover, kHomeNormal, kHomeHover, kHelpNormal, kHelpHover, kUpdateNormal, kUpdateHover}) {
    EXPECT_TRUE(fs::is_regular_file(pictures / (std::string(name) + ".svg"))) << name;
  }
}

TEST_F(StagedBundle, DesktopFindsTheApplication) {
  EXPECT_TRUE(fs::is_regular_file(share() / "applications/zelvo-avi-repair.desktop"));
  EXPECT_TRUE(fs::is_regular_file(share() / "metainfo/com.zelvo.avi_repair.metainfo.xml"));
  EXPECT_TRUE(fs::is_regular_file(share() / "icons/hicolor/scalable/apps/zelvo-avi-repair.svg"));
}

TEST_F(StagedBundle, EverybodyMayReadEverything) {
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(prefix_ / "zelvo")) {
    const fs::perms wanted = fs::perms::others_read | (entry.is_directory() ? fs::perms::others_exec : fs::perms::none);
    EXPECT_EQ(entry.status().permissions() & wanted, wanted) << entry.path();
  }
}

TEST_F(StagedBundle, CommandLineIsNoPartOfIt) { EXPECT_FALSE(fs::exists(link().parent_path() / "zelvo-avi")); }

}  // namespace
}  // namespace zelvo::tests
