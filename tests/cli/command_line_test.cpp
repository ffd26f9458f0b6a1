#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/shown_text.h"
#include "tests/cli/program.h"
#include "tests/support/small_avi.h"
#include "tests/support/temp_folder.h"

namespace zelvo::tests {
namespace {

using testing::AnyOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class WrongUse : public testing::TestWithParam<std::vector<std::string>> {};

TEST_P(WrongUse, AnswersTwoAndPointsToTheHelp) {
  const Ended ended = runZelvoAvi(GetParam());

  EXPECT_EQ(ended.exit, 2);
  EXPECT_THAT(ended.err, HasSubstr("--help for what can be given."));
  EXPECT_THAT(ended.out, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    EachWay, WrongUse,
    testing::Values(std::vector<std::string>{}, std::vector<std::string>{"repair"}, std::vector<std::string>{"check"},
                    std::vector<std::string>{"inspect"}, std::vector<std::string>{"mend", "a.avi"},
                    std::vector<std::string>{"--nope"}, std::vector<std::string>{"repair", "a.avi", "--nope"},
                    std::vector<std::string>{"repair", "a.avi", "-o"},
                    std::vector<std::string>{"repair", "a.avi", "b.avi", "-o", "c.avi"},
                    std::vector<std::string>{"repair", "a.avi", "b.avi", "--into", "c"},
                    std::vector<std::string>{"repair", "a.avi", "-o", "b", "--into", "c"},
                    std::vector<std::string>{"repair", "a.avi", "-o", "b", "--output-dir", "c"},
                    std::vector<std::string>{"repair", "a.avi", "--into", "b", "--output-dir", "c"},
                    std::vector<std::string>{"inspect", "a.avi", "b.avi"},
                    std::vector<std::string>{"check", "a.avi", "-o", "b.avi"}));

TEST(CommandLine, HelpBeginsWithExamples) {
  const Ended ended = runZelvoAvi({"--help"});

  EXPECT_EQ(ended.exit, 0);
  EXPECT_THAT(ended.out, StartsWith("Examples:\n  zelvo-avi repair holiday.avi"));
  EXPECT_THAT(ended.err, IsEmpty());
}

TEST(CommandLine, EachCommandsHelpBeginsWithItsExamples) {
  for (const std::string command : {"repair", "check", "inspect"}) {
    const Ended ended = runZelvoAvi({command, "--help"});
    EXPECT_EQ(ended.exit, 0);
    EXPECT_THAT(ended.out, StartsWith("Examples:\n  zelvo-avi " + command));
    EXPECT_THAT(ended.out, HasSubstr("Usage: zelvo-avi " + command));
  }
}

TEST(CommandLine, VersionIsToldEverywhere) {
  for (const std::vector<std::string>& line : std::vector<std::vector<std::string>>{
           {"--version"}, {"repair", "--version"}, {"check", "--version"}, {"inspect", "--version"}}) {
    const Ended ended = runZelvoAvi(line);
    EXPECT_EQ(ended.exit, 0);
    EXPECT_EQ(ended.out, "zelvo-avi " ZELVO_VERSION "\n");
  }
}

TEST(CommandLine, InputMayBearTheNameOfACommand) {
  const TempFolder folder;
  writeFile(folder / "check", SmallAvi{}.bytes());

  const Ended ended = run({"sh", "-c", "cd \"$1\" && " ZELVO_AVI " repair check", "sh", folder.path()});

  EXPECT_EQ(ended.exit, 0) << ended.err;
}

TEST(CommandLine, InputMayStandBetweenBrackets) {
  const TempFolder folder;
  writeFile(folder / "[a,b]", SmallAvi{}.bytes());

  const Ended ended = run({"sh", "-c", "cd \"$1\" && " ZELVO_AVI " check '[a,b]'", "sh", folder.path()});

  EXPECT_EQ(ended.exit, 0) << ended.err;
}

TEST(CommandLine, NameBetweenBracketsIsToldAsTyped) {
  for (const std::string name : {"[]", "[a,b]", "[[x]]", "[", "\x01[]", "\x01", "{}"}) {
    const std::string shown = cli::printable(name);
    for (const char* command : {"repair", "check", "inspect"}) {
      EXPECT_EQ(runZelvoAvi({command, name}).err, "zelvo-avi: there is no file named " + shown + ".\n");
    }
    EXPECT_THAT(runZelvoAvi({"check", "--json", name}).out, HasSubstr("there is no file named "));
    const std::string said = runZelvoAvi({"inspect", "a.avi", name}).err;
    EXPECT_THAT(said, HasSubstr(shown));
    EXPECT_THAT(said, Not(AnyOf(HasSubstr("./" + shown), HasSubstr("\\x01" + shown))));
  }
}

TEST(CommandLine, OutputBetweenBracketsIsToldAsTyped) {
  const TempFolder folder;
  writeFile(folder / "in.avi", SmallAvi{}.bytes());

  for (const char* options : {"-o '[]'", "--output='[x]'", "--into '[y]' --"}) {
    const std::string script = std::string("cd \"$1\" && " ZELVO_AVI " repair ") + options + " in.avi";
    const Ended ended = run({"sh", "-c", script, "sh", folder.path()});
    EXPECT_EQ(ended.exit, 0) << ended.err;
    EXPECT_THAT(ended.out, HasSubstr("  Written:   ["));
  }
  EXPECT_EQ(folder.names(), (std::vector<std::string>{"[]", "[x]", "[y]", "in.avi"}));
}

TEST(CommandLine, InputWithADashGoesBehindTwo) {
  const TempFolder folder;
  writeFile(folder / "-a.avi", SmallAvi{}.bytes());

  const Ended ended = run({"sh", "-c", "cd \"$1\" && " ZELVO_AVI " repair -- -a.avi", "sh", folder.path()});

  EXPECT_EQ(ended.exit, 0) << ended.err;
  EXPECT_THAT(ended.out, HasSubstr("mpv './-a-repaired.avi'"));
}

TEST(CommandLine, EmptyNamesAreWrongUse) {
  for (const std::vector<std::string>& line :
       std::vector<std::vector<std::string>>{{"repair", ""},
                                             {"check", "a.avi", ""},
                                             {"inspect", ""},
                                             {"repair", "a.avi", "-o", ""},
                                             {"repair", "a.avi", "--into", ""},
                                             {"repair", "a.avi", "--output-dir", ""},
                                             {"drives", "--record", ""}}) {
    const Ended ended = runZelvoAvi(line);
    EXPECT_EQ(ended.exit, 2) << line[0];
    EXPECT_THAT(ended.err,
                HasSubstr(line.back().empty() && line[line.size() - 2].starts_with('-') ? "is empty."
                                                                                        : "an input's name is empty."));
  }
}

TEST(CommandLine, WhatTheParserDislikesIsSaidInOurWords) {
  const std::vector<std::pair<std::vector<std::string>, std::string>> cases{
      {{"repair", "a.avi", "-o"}, "--output needs a value after it."},
      {{"repair", "a.avi", "--output="}, "--output needs a value after it."},
      {{"drives", "--record"}, "--record needs a value after it."},
      {{"repair", "a.avi", "-o", "b", "-o", "c"}, "--output can be given only once."},
      {{"repair", "a.avi", "--frobnicate"}, "there is no option --frobnicate here."},
      {{"repair", "a.avi", "-qx"}, "there is no option -x here."},
      {{"repair", "a.avi", "-v=3"}, "there is no option -v=3 here."},
      {{"inspect", "a.avi", "b.avi"}, "\"b.avi\" is one argument too many."},
      {{"drives", "extra"}, "\"extra\" is one argument too many."},
      {{"repair", "a.avi", "--force=maybe"}, "--force stands alone; no value goes with it."},
      {{"repair", "a.avi", "--verbose=x"}, "--verbose stands alone; no value goes with it."},
      {{"repair"}, "no input was given."},
      {{}, "no command was given."},
      {{"mend"}, "there is no command \"mend\"."}};
  for (const auto& [line, sentence] : cases) {
    const Ended ended = runZelvoAvi(line);
    EXPECT_EQ(ended.exit, 2);
    EXPECT_THAT(ended.err, StartsWith("zelvo-avi: " + sentence + "\nzelvo-avi: see zelvo-avi"));
  }
}

TEST(CommandLine, ControlCharactersOfANameDoNotReachTheTerminal) {
  const TempFolder folder;
  writeFile(folder / "a\033[2J.avi", SmallAvi{}.bytes());

  const Ended ended = runZelvoAvi({"repair", folder / "a\033[2J.avi"});

  EXPECT_EQ(ended.exit, 0);
  EXPECT_THAT(ended.out, HasSubstr("a\\x1b[2J.avi: repaired."));
  EXPECT_EQ(ended.out.find('\033'), std::string::npos);
}

TEST(CommandLine, NothingOfANameSteersTheTerminal) {
  const TempFolder folder;
  const std::string name = "a\xc2\x9b\x9b\xe2\x80\xae.avi";
  const std::string shown = "a\\u009b\\x9b\\u202e.avi";
  writeFile(folder / name, SmallAvi{}.bytes());

  for (const std::vector<std::string>& line :
       std::vector<std::vector<std::string>>{{"check", folder / name, folder / (name + name)},
                                             {"check", "--json", folder / name, folder / (name + name)},
                                             {"check", "--verbose", folder / name},
                                             {"repair", "--verbose", "--force", folder / name},
                                             {"inspect", folder / name},
                                             {"inspect", "--json", folder / name},
                                             {"mend", name},
                                             {name},
                                             {"check", folder / name, "--" + name}}) {
    const Ended ended = runZelvoAvi(line);
    for (const std::string& said : {ended.out, ended.err}) {
      EXPECT_EQ(said.find('\x9b'), std::string::npos) << line[0] << ": " << said;
      EXPECT_EQ(said.find("\xe2\x80\xae"), std::string::npos) << line[0] << ": " << said;
    }
  }
  EXPECT_THAT(runZelvoAvi({"check", folder / name}).out, HasSubstr(shown + ": can be repaired."));
  EXPECT_THAT(runZelvoAvi({"check", folder / (name + name)}).err,
              HasSubstr("no file named " + folder / (shown + shown)));
  EXPECT_THAT(runZelvoAvi({"inspect", "--json", folder / name}).out, HasSubstr("/a\\u009b\xef\xbf\xbd\\u202e.avi\""));
}

TEST(CommandLine, ResultThatCannotBePrintedIsAFailure) {
  const TempFolder folder;
  writeFile(folder / "in.avi", SmallAvi{}.bytes());

  const Ended ended = run({"sh", "-c", "exec " ZELVO_AVI " check \"$1\" >/dev/full", "sh", folder / "in.avi"});

  EXPECT_EQ(ended.exit, 3);
  EXPECT_THAT(ended.err, HasSubstr("the result could not be printed: No space left on device."));
}

TEST(CommandLine, ReaderThatWentAwayEndsTheProgramInOrder) {
  const TempFolder folder;
  writeFile(folder / "in.avi", SmallAvi{.frames = 5000, .frameSize = 200}.bytes());

  const Ended ended =
      run({"sh", "-c", "{ " ZELVO_AVI " inspect --chunks \"$1\"; echo code $? >&2; } | true", "sh", folder / "in.avi"});

  EXPECT_EQ(ended.err, "code 3\n");
}

}  // namespace
}  // namespace zelvo::tests
