// The command line: what is understood, and what is refused before anything is read.
#include "workbench/app/command_line.h"

#include <gtest/gtest.h>

namespace workbench::app {
namespace {

Outcome<ProgramOptions> read(std::vector<const char*> arguments) {
  arguments.insert(arguments.begin(), "compare-datasets");
  return readCommandLine(static_cast<int>(arguments.size()), arguments.data());
}

std::string refusal(const std::vector<const char*>& arguments) {
  const auto options = read(arguments);
  return options ? "accepted" : options.problem().text();
}

const CompareRequest& compareOf(const Outcome<ProgramOptions>& options) {
  return std::get<CompareCommand>(options->command).request;
}

TEST(CommandLine, ReadsListsAtTheirCommas) {
  const auto options = read({"compare", "a.csv", "b.csv", "--id", "x,y", "--variables", "p to q,r"});
  ASSERT_TRUE(options) << options.problem().text();
  EXPECT_EQ(compareOf(options).ids, (std::vector<std::string>{"x", "y"}));
  EXPECT_EQ(compareOf(options).variables, (std::vector<std::string>{"p to q", "r"}));
}

TEST(CommandLine, SortsOnlyWhenNeededUnlessTold) {
  EXPECT_EQ(compareOf(read({"compare", "a", "b"})).sort, SortChoice::whenNeeded);
  EXPECT_EQ(compareOf(read({"compare", "a", "b", "--sort", "never"})).sort, SortChoice::never);
  EXPECT_EQ(compareOf(read({"compare", "a", "b", "--sort", "always"})).sort, SortChoice::always);
  EXPECT_NE(refusal({"compare", "a", "b", "--sort", "maybe"}).find("--sort"), std::string::npos);
}

TEST(CommandLine, NoneIsNoPropertyAndAnUnknownOneIsRefusedByName) {
  EXPECT_TRUE(compareOf(read({"compare", "a", "b", "--properties", "none"})).properties.empty());
  EXPECT_EQ(compareOf(read({"compare", "a", "b", "--properties", "label,role"})).properties.size(), 2U);
  EXPECT_NE(refusal({"compare", "a", "b", "--properties", "label,colour"}).find("\"colour\""), std::string::npos);
  EXPECT_NE(refusal({"compare", "a", "b", "--properties", "label,all"}).find("\"all\""), std::string::npos);
}

TEST(CommandLine, TheLimitIsFrom1To10000OrNone) {
  for (const char* good : {"1", "10000", "none"})
    EXPECT_EQ(refusal({"compare", "a", "b", "--limit", good}), "accepted");
  for (const char* bad : {"0", "10001", "-3", "1.5", "many"}) {
    EXPECT_NE(refusal({"compare", "a", "b", "--limit", bad}).find("--limit"), std::string::npos) << bad;
  }
}

TEST(CommandLine, ReadsRenamingsAndWhatIsDropped) {
  const auto options = read({"compare", "a", "b", "--rename", "x=y,p=a b", "--rename", "q=r=s", "--drop", "u,v"});
  ASSERT_TRUE(options) << options.problem().text();
  const std::vector<std::pair<std::string, std::string>> renamed = {{"x", "y"}, {"p", "a b"}, {"q", "r=s"}};
  EXPECT_EQ(compareOf(options).renamed, renamed);
  EXPECT_EQ(compareOf(options).dropped, (std::vector<std::string>{"u", "v"}));
  for (const char* bad : {"x", "=x", "x=", "a=b,c"}) {
    EXPECT_NE(refusal({"compare", "a", "b", "--rename", bad}).find("--rename"), std::string::npos) << bad;
  }
}

TEST(CommandLine, ConvertTakesDataAndThePlaceOfTheCopy) {
  const auto options = read({"convert", "a.csv", "b.parquet"});
  ASSERT_TRUE(options) << options.problem().text();
  const auto& convert = std::get<ConvertCommand>(options->command);
  EXPECT_EQ(convert.input, "a.csv");
  EXPECT_EQ(convert.output, "b.parquet");
  EXPECT_NE(refusal({"convert", "a.csv"}).find("OUT"), std::string::npos);
}

TEST(CommandLine, ColourAndProgressAreAutomaticUnlessTold) {
  const auto outputOf = [](const Outcome<ProgramOptions>& options) {
    return std::get<CompareCommand>(options->command).output;
  };
  EXPECT_EQ(outputOf(read({"compare", "a", "b"})).color, Appearance::automatic);
  EXPECT_EQ(outputOf(read({"compare", "a", "b", "--color", "always"})).color, Appearance::always);
  EXPECT_EQ(outputOf(read({"compare", "a", "b", "--progress", "never"})).progress, Appearance::never);
  EXPECT_NE(refusal({"compare", "a", "b", "--color", "sometimes"}).find("--color"), std::string::npos);
}

TEST(CommandLine, AFlagNameAndNoFlagExcludeEachOther) {
  EXPECT_NE(refusal({"compare", "a", "b", "--flag", "f", "--no-flag"}), "accepted");
}

TEST(CommandLine, AnUnknownOptionOrCommandIsRefused) {
  EXPECT_NE(refusal({"compare", "a", "b", "--nothing"}), "accepted");
  EXPECT_NE(refusal({"contrast", "a", "b"}), "accepted");
  EXPECT_NE(refusal({}), "accepted");
}

TEST(CommandLine, HelpAndVersionAreTexts) {
  const auto version = read({"--version"});
  ASSERT_TRUE(version);
  EXPECT_TRUE(std::get<ShowText>(version->command).text.starts_with("compare-datasets "));
  EXPECT_NE(std::get<ShowText>(read({"--help"})->command).text.find("Exit status"), std::string::npos);
  EXPECT_NE(std::get<ShowText>(read({"compare", "--help"})->command).text.find("--id"), std::string::npos);
}

}  // namespace
}  // namespace workbench::app
