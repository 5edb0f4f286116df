#include <gtest/gtest.h>

#include "host/messages.h"
#include "tests/language/sample_grammar.h"
#include "workbench/language/job.h"
#include "workbench/output/document.h"
#include "workbench/runtime/current_run.h"
#include "workbench/runtime/journal.h"

namespace workbench::language {
namespace {

TEST(CommandParser, ReadsSubcommandsWithTheirValuesAndKeywords) {
  EXPECT_EQ(answerTo("compare datasets /compdataset=second password='x' /Variables=a TO b, c\n"
                     "  /save flagmismatches=no matchname='m.csv' /OUTPUT VarProperties=label width TABLELIMIT=50."),
            "COMPARE DATASETS /COMPDATASET=second PASSWORD='x' /VARIABLES=a TO b c /SAVE FLAGMISMATCHES=no "
            "MATCHNAME='m.csv' /OUTPUT VARPROPERTIES=label width TABLELIMIT=50\n");
}

TEST(CommandParser, LooksUpTheLastOfTwoSubcommandsOfOneName) {
  EXPECT_EQ(answerTo("COMPARE DATASETS /SAVE ENCRYPTEDPW=YES."), "COMPARE DATASETS /SAVE ENCRYPTEDPW=YES\n");
}

TEST(CommandParser, TakesAnEmptyListForAList) {
  EXPECT_EQ(answerTo("COMPARE DATASETS /VARIABLES= /CASEID."), "COMPARE DATASETS /VARIABLES= /CASEID\n");
}

TEST(CommandParser, HoldsAWholeNumberAgainstItsBounds) {
  for (const char* accepted : {"1", "+1", "10000", "NONE", "none"}) {
    EXPECT_EQ(errorOf(std::string("COMPARE DATASETS /OUTPUT TABLELIMIT=") + accepted + "."), "") << accepted;
  }
  for (const char* refused : {"0", "10001", "-5", "1.5", "1e3", "99999999999", "MANY", "'5'"}) {
    EXPECT_EQ(errorOf(std::string("COMPARE DATASETS /OUTPUT TABLELIMIT=") + refused + "."),
              std::string("1:37 COMPARE DATASETS, OUTPUT: found ") + refused +
                  ", expected a value of TABLELIMIT: a whole number from 1 to 10000 or NONE.")
        << refused;
  }
}

TEST(CommandParser, HoldsANumberAgainstItsBounds) {
  for (const char* accepted : {"0.5", "1", "2.49", "5e-1"}) {
    EXPECT_EQ(errorOf(std::string("DRAW /SHAPE=x SIZE=") + accepted + "."), "") << accepted;
  }
  for (const char* refused : {"0.49", "2.5", "x", "1e999"}) {
    EXPECT_EQ(
        errorOf(std::string("DRAW /SHAPE=x SIZE=") + refused + "."),
        std::string("1:20 DRAW, SHAPE: found ") + refused + ", expected a value of SIZE: a number (>= 0.5, < 2.5).")
        << refused;
  }
}

TEST(CommandParser, ReadsKeywordsWithoutAValueAndRepeatedSubcommands) {
  EXPECT_EQ(answerTo("DRAW a b QUIET /SHAPE=circle FILLED SIZE=1 /SHAPE='box' SIZE=2 COUNT=-3."),
            "DRAW=a b QUIET /SHAPE=circle FILLED SIZE=1 /SHAPE='box' SIZE=2 COUNT=-3\n");
}

TEST(CommandParser, NamesThePlaceOfAMissingPart) {
  EXPECT_EQ(errorOf("\n DRAW."),
            "2:2 DRAW: found the end of the command, expected the subcommand /SHAPE, which is required.");
  EXPECT_EQ(errorOf("DRAW /SHAPE=x."),
            "1:13 DRAW, SHAPE: found the end of the command, expected the keyword SIZE, which is required.");
}

TEST(CommandParser, NeverShowsAPassword) {
  const std::string job = "COMPARE DATASETS /COMPDATASET=b PASSWORD=";
  EXPECT_EQ(errorOf(job + "geheim."),
            "1:42 COMPARE DATASETS, COMPDATASET: found '***', expected a value of PASSWORD: a text in quotes.");
  EXPECT_EQ(errorOf(job + "'a' 'geheim'."),
            "1:46 COMPARE DATASETS, COMPDATASET: found '***', expected one value of PASSWORD only.");
}

// Runs one command the way a procedure does.
class ProcedureParsing : public testing::Test {
 protected:
  ProcedureParsing() { currentRun().command = &document_; }
  ~ProcedureParsing() override {
    journal().sendTo({});
    currentRun().command = nullptr;
    currentRun().tokens = nullptr;
  }

  std::int32_t parse(std::string_view syntax, CommandSpec& spec) {
    commands_ = readJob(syntax, {"COMPARE DATASETS"});
    currentRun().tokens = &commands_.at(0).tokens;
    const VRIX_TokenSequence tokens(true);
    const CommandDescriptor grammar = compareGrammar();
    UniversalParser parser(tokens, spec, grammar);
    return parser.getCommandSpecifications();
  }

  std::string lastSentence() const {
    const auto& message = std::get<output::Message>(document_.items.back());
    return std::get<output::StringText>(message.text.held).key;
  }

  std::vector<JobCommand> commands_;
  output::Command document_;
};

TEST_F(ProcedureParsing, ReportsUnderTheNamesThatTheParserMessageSets) {
  CommandSpec spec;
  {
    ParserMessage message;
    message.SetCommandName("COMPARE");
    message.SetProcedureTitle("Comparing");
    EXPECT_NE(parse("COMPARE DATASETS /X.", spec), 0);
    EXPECT_TRUE(lastSentence().starts_with("COMPARE (Comparing): found X, expected ")) << lastSentence();
    message.SetProcedureTitle("compare");
    EXPECT_NE(parse("COMPARE DATASETS /X.", spec), 0);
    EXPECT_TRUE(lastSentence().starts_with("COMPARE: found X, expected ")) << lastSentence();
  }
  EXPECT_NE(parse("COMPARE DATASETS /X.", spec), 0);
  EXPECT_TRUE(lastSentence().starts_with("COMPARE DATASETS: found X, expected ")) << lastSentence();
}

TEST_F(ProcedureParsing, LeavesAnEmptySpecificationWhenTheCommandIsRefused) {
  CommandSpec spec;
  EXPECT_EQ(parse("COMPARE DATASETS /VARIABLES=ALL.", spec), 0);
  EXPECT_NE(spec.getSubComObj("variables"), nullptr);
  EXPECT_NE(parse("COMPARE DATASETS /VARIABLES=ALL /CASEID=(a).", spec), 0);
  EXPECT_EQ(spec.getSubComObj("VARIABLES"), nullptr);
  const auto& message = std::get<output::Message>(document_.items.back());
  EXPECT_EQ(message.source, output::Message::Source::parser);
  EXPECT_EQ(message.line, 1);
  EXPECT_EQ(message.column, 41);
}

TEST_F(ProcedureParsing, CanStartAtTheFirstSubcommand) {
  commands_ = readJob("COMPARE DATASETS x y /VARIABLES=ALL.", {"COMPARE DATASETS"});
  currentRun().tokens = &commands_.at(0).tokens;
  EXPECT_EQ(VRIX_TokenSequence(true).tokens().size(), 6U);
  EXPECT_EQ(VRIX_TokenSequence(false).tokens().size(), 4U);
}

TEST_F(ProcedureParsing, IsWrittenToTheJournalWithoutPasswords) {
  std::string lines;
  journal().sendTo([&](std::string_view line) { lines += std::string(line) + "\n"; });
  {
    CommandSpec spec;
    EXPECT_EQ(parse("COMPARE DATASETS /COMPDATASET=b PASSWORD='geheim'.", spec), 0);
    const SubComObj* dataset = spec.getSubComObj("COMPDATASET");
    std::string password;
    EXPECT_TRUE(dataset->getParamObj("PASSWORD")->getLiteral(password));
    EXPECT_EQ(dataset->getParamObj("PASSWORD")->getStringToken(), "geheim");
    EXPECT_FALSE(dataset->getParamObj("PASSWORD")->isStringValueCase("geheimnis"));
  }
  EXPECT_NE(lines.find("UniversalParser#1.getCommandSpecifications() -> 0\n"), std::string::npos) << lines;
  EXPECT_NE(lines.find("CommandSpec#1.getSubComObj(\"COMPDATASET\") -> SubComObj#1\n"), std::string::npos) << lines;
  EXPECT_NE(lines.find("ParamObj#1.getLiteral() -> true\n"), std::string::npos) << lines;
  EXPECT_NE(lines.find("~CommandSpec#1\n"), std::string::npos) << lines;
  EXPECT_EQ(lines.find("geheim"), std::string::npos) << lines;
}

}  // namespace
}  // namespace workbench::language
