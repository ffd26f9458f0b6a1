// zelvo-avi with the maps of a rescue, with ddrescue itself where it is installed.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/cli/program.h"
#include "tests/support/avi_builder.h"
#include "tests/support/byte_text.h"
#include "tests/support/temp_folder.h"

namespace zelvo::tests {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr std::size_t kSector = 2048;

/// No two pictures are of one size, so that none passes for another.
std::string rescuedFilm() {
  AviBuilder avi;
  avi.frames = 200;
  for (std::uint32_t i = 0; i < 200; ++i) {
    avi.chunks.push_back({"00dc", 2000 + 10 * i});
    avi.chunks.push_back({"01wb", 300});
  }
  const platform::Bytes bytes = avi.build();
  return textAt(bytes, 0, bytes.size());
}

/// The film with zeros in the place of these sectors, and the map that says so.
struct Copy {
  std::string bytes = rescuedFilm();
  std::string map = "0x0 +\n";

  explicit Copy(const std::vector<std::size_t>& sectors, std::size_t offset = 0) {
    std::size_t at = 0;
    const auto add = [&](std::size_t to, char status) {
      if (to > at) map += std::to_string(at) + " " + std::to_string(to - at) + " " + status + "\n";
      at = to;
    };
    for (const std::size_t sector : sectors) {
      std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(sector * kSector), kSector, '\0');
      add(offset + sector * kSector, '+');
      add(offset + (sector + 1) * kSector, '-');
    }
    add(offset + bytes.size(), '+');
  }
  void writeTo(const TempFolder& folder) const {
    writeFile(folder / "copy.avi", bytes);
    writeFile(folder / "copy.map", map);
  }
};

TEST(RescueMaps, LossesOfTheDiskAreToldAsSuch) {
  const TempFolder folder;
  Copy({20, 90}).writeTo(folder);

  const Ended ended = runZelvoAvi({"salvage", folder / "copy.avi", "--map", folder / "copy.map", "--verbose"});

  EXPECT_EQ(ended.exit, 0) << ended.err;
  EXPECT_THAT(ended.out, HasSubstr("not rescued from the disk"));
  EXPECT_THAT(ended.out, HasSubstr("  Disk:      2 places with 4.1 kB were not rescued, which costs "));
  EXPECT_THAT(ended.out, HasSubstr("  Wanted:    2 places with 4.1 kB would bring nearly all of it back\n"));
  EXPECT_THAT(ended.out, HasSubstr("  Wanted:    bytes 40,960 to 43,008 of the map: "));
  EXPECT_EQ(readFile(folder / "copy.map"), Copy({20, 90}).map);
}

TEST(RescueMaps, JsonAndPageTellThemToo) {
  const TempFolder folder;
  Copy({20}).writeTo(folder);
  const Ended ended = runZelvoAvi(
      {"salvage", folder / "copy.avi", "--map", folder / "copy.map", "--json", "--report", folder / "report.html"});
  EXPECT_EQ(ended.exit, 0) << ended.err;
  EXPECT_THAT(ended.out, HasSubstr("\"cause\":\"not-rescued\""));
  EXPECT_THAT(ended.out, HasSubstr("\"rescue\":{\"bytes\":2048,\"places\":1,"));
  EXPECT_THAT(ended.out, HasSubstr("\"gains\":[{\"begin\":40960,\"end\":43008,"));
  EXPECT_THAT(readFile(folder / "report.html"), HasSubstr("What the disk did not give"));
  writeFile(folder / "result.json", ended.out);
  const Ended judged = run({"python3", ZELVO_ROOT "/tests/cli/validate_json.py",
                            ZELVO_ROOT "/docs/cli-salvage.schema.json", folder / "result.json"});
  EXPECT_EQ(judged.exit, 0) << judged.out << judged.err;
}

TEST(RescueMaps, AMapOfAWholeDiskNeedsTheFilmsPlace) {
  const TempFolder folder;
  constexpr std::size_t kOffset = 1 << 20U;
  const Copy copy({20}, kOffset);
  copy.writeTo(folder);

  const Ended ended = runZelvoAvi({"salvage", folder / "copy.avi", "--map", folder / "copy.map", "--map-offset",
                                   "0x100000", "--wanted", folder / "wanted.map"});
  EXPECT_EQ(ended.exit, 0) << ended.err;
  EXPECT_THAT(ended.out, HasSubstr("1 place with 2.0 kB was not rescued"));
  EXPECT_THAT(readFile(folder / "wanted.map"), HasSubstr("0x0010a000  0x00000800  +\n"));

  const Ended far = runZelvoAvi({"salvage", folder / "copy.avi", "--map", folder / "copy.map", "--map-offset",
                                 "1000000000", "-o", folder / "other.avi"});
  EXPECT_EQ(far.exit, 3);
  EXPECT_THAT(far.err, HasSubstr("tells of no byte of "));
  EXPECT_THAT(folder.names(), Not(testing::Contains("other.avi")));
}

TEST(RescueMaps, BadMapsAreRefusedWithTheirLine) {
  const TempFolder folder;
  Copy({20}).writeTo(folder);
  const auto refusal = [&](const std::string& map) {
    writeFile(folder / "bad.map", map);
    const Ended ended = runZelvoAvi({"salvage", folder / "copy.avi", "--map", folder / "bad.map"});
    EXPECT_EQ(ended.exit, 3) << map;
    EXPECT_THAT(ended.out, IsEmpty()) << map;
    return ended.err;
  };
  EXPECT_THAT(refusal("0 +\n0 10 +\n20 10 -\n"),
              HasSubstr("bad.map is no map of ddrescue: line 3: the block begins after the end of the one before it."));
  EXPECT_THAT(refusal("0 +\n0 10 +\n5 10 -\n"), HasSubstr("line 3: the block begins before the end of the one before"));
  EXPECT_THAT(refusal("0 +\n0 10 !\n"), HasSubstr("line 2: the status is none of those that a map has."));
  EXPECT_THAT(refusal(rescuedFilm()), HasSubstr("line 1: there is no status line"));
  EXPECT_THAT(refusal("0 +\n0 ten +\n"), HasSubstr("line 2: this is no block"));
  const Ended missing = runZelvoAvi({"salvage", folder / "copy.avi", "--map", folder / "none.map"});
  EXPECT_EQ(missing.exit, 3);
  EXPECT_THAT(missing.err, HasSubstr("there is no file named "));
  EXPECT_THAT(folder.names(), Not(testing::Contains("copy-salvaged.avi")));
}

TEST(RescueMaps, OptionsThatMakeNoSenseAreWrongUse) {
  const auto misuse = [](std::vector<std::string> options) {
    options.insert(options.begin(), "salvage");
    const Ended ended = runZelvoAvi(options);
    EXPECT_EQ(ended.exit, 2);
    return ended.err;
  };
  EXPECT_THAT(misuse({"a.avi", "b.avi", "--map", "m"}), HasSubstr("--map takes one input."));
  EXPECT_THAT(misuse({"a.avi", "--map-offset", "5"}), HasSubstr("--map-offset needs --map."));
  EXPECT_THAT(misuse({"a.avi", "--map", "m", "--map-offset", "5k"}), HasSubstr("--map-offset takes a number of bytes"));
  EXPECT_THAT(misuse({"a.avi", "--wanted", "w"}), HasSubstr("--wanted needs --map."));
  EXPECT_THAT(misuse({"a.avi", "--map", "m", "--wanted", "w", "-o", "w"}), HasSubstr("name the same file"));
}

TEST(RescueMaps, TheMapIsNeverWrittenTo) {
  const TempFolder folder;
  const Copy copy({20});
  copy.writeTo(folder);
  for (const std::string option : {"--wanted", "--output", "--report"}) {
    std::string map = folder / "copy.map";
    if (option == "--report") {
      map = folder / "map.txt";
      writeFile(map, copy.map);
    }
    const Ended ended = runZelvoAvi({"salvage", folder / "copy.avi", "--force", "--map", map, option, map});
    EXPECT_EQ(ended.exit, 3) << option;
    EXPECT_THAT(ended.err, HasSubstr("is the map of the rescue, which is never written to")) << option;
    EXPECT_EQ(readFile(map), copy.map) << option;
  }
  const Ended ended = runZelvoAvi(
      {"salvage", folder / "copy.avi", "--force", "--map", folder / "copy.map", "--wanted", folder / "copy.avi"});
  EXPECT_EQ(ended.exit, 3);
  EXPECT_TRUE(readFile(folder / "copy.avi") == copy.bytes);
}

/// "0.48" of "costs 0.48 s of the film"; 0 without it.
double secondsLost(const std::string& out) {
  const std::size_t at = out.find("which costs ");
  return at == std::string::npos ? 0 : std::stod(out.substr(at + 12));
}

TEST(RescueMaps, WhatIsWantedIsWhatDdrescueThenReads) {
  if (run({"ddrescue", "--version"}).exit != 0) GTEST_SKIP() << "ddrescue is not installed";
  const TempFolder folder;
  writeFile(folder / "good.avi", rescuedFilm());
  // The last of these sectors holds the end of the index, which brings no second back.
  const std::size_t last = rescuedFilm().size() / kSector - 1;
  writeFile(folder / "bad.map", Copy({20, 21, 90, last}).map);
  const auto rescue = [&](std::vector<std::string> options) {
    options.insert(options.begin(), {"ddrescue", "-q", "-b", "2048"});
    options.insert(options.end(), {folder / "good.avi", folder / "copy.avi", folder / "copy.map"});
    EXPECT_EQ(run(options).exit, 0);
  };
  const auto salvage = [&](const std::string& wanted) {
    return runZelvoAvi(
        {"salvage", folder / "copy.avi", "--force", "--map", folder / "copy.map", "--wanted", folder / wanted});
  };

  rescue({"-H", folder / "bad.map"});
  const Ended first = salvage("wanted.map");
  ASSERT_EQ(first.exit, 0) << first.err;
  EXPECT_THAT(first.out, HasSubstr("3 places with 8.2 kB were not rescued"));
  EXPECT_GT(secondsLost(first.out), 0.1);

  // The disk gives its sectors at last, and ddrescue asks for the wanted ones alone.
  rescue({"-r", "1", "-m", folder / "wanted.map"});
  const Ended second = salvage("wanted2.map");
  ASSERT_EQ(second.exit, 0) << second.err;
  EXPECT_THAT(second.out, HasSubstr("1 place with 2.0 kB was not rescued"));
  EXPECT_LT(secondsLost(second.out), 0.001);
  const std::string copy = readFile(folder / "copy.avi");
  EXPECT_TRUE(copy.substr(0, last * kSector) == rescuedFilm().substr(0, last * kSector));
}

}  // namespace
}  // namespace zelvo::tests
