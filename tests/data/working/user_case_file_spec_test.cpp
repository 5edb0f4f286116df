#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "tests/data/working/outputs_fixture.h"
#include "workbench/data/working/handle.h"
#include "workbench/data/working/password_decoder.h"

namespace workbench::data {
namespace {

class UserCaseFileSpecs : public testing::Outputs {};

TEST_F(UserCaseFileSpecs, OfAnInputGoesByItsQuotes) {
  const std::string path = folder_.write("a.csv", "x\n1\n");
  UserCaseFileSpec spec;
  EXPECT_FALSE(spec.IsValid());
  ASSERT_TRUE(spec.Init(path, true, false));
  EXPECT_TRUE(spec.IsFile());
  EXPECT_FALSE(spec.IsDataset());
  EXPECT_EQ(spec.DocumentationString(), path);
  ASSERT_TRUE(spec.Init("first", false, false));
  EXPECT_TRUE(spec.IsDataset());
  EXPECT_FALSE(spec.IsWorkingFile());
  EXPECT_EQ(spec.DocumentationString(), "first");
  ASSERT_TRUE(spec.Init("*", false, false));
  EXPECT_TRUE(spec.IsWorkingFile());
  EXPECT_FALSE(spec.IsDataset());
  EXPECT_FALSE(spec.Init("none", false, false));
  EXPECT_FALSE(spec.IsValid()) << "what was valid before is so no longer";
  EXPECT_EQ(spec.DocumentationString(), "");
}

TEST_F(UserCaseFileSpecs, ShowsAPathLexicallyCleaned) {
  folder_.write("a.csv", "x\n1\n");
  UserCaseFileSpec spec;
  ASSERT_TRUE(spec.Init(folder_.file("sub/.././a.csv"), true, false));
  EXPECT_EQ(spec.DocumentationString(), folder_.file("a.csv"));
}

TEST_F(UserCaseFileSpecs, OfAnInputThatIsNotThereSaysSo) {
  EXPECT_TRUE(refusal("second", false, false).starts_with("The dataset does not exist."));
  EXPECT_EQ(refusal("none.csv", true, false), "The data file none.csv does not exist or cannot be reached.");
  EXPECT_EQ(refusal("", true, false), "The name of the data file is empty.");
  EXPECT_TRUE(refusal("*", true, false).starts_with("The data file * does not exist")) << "a quoted star is a file";
}

TEST_F(UserCaseFileSpecs, OfATableInAFileLooksForTheFile) {
  folder_.write("people.json", "{}");
  UserCaseFileSpec spec;
  EXPECT_TRUE(spec.Init(folder_.file("people.json#adults"), true, false));
  EXPECT_EQ(spec.DocumentationString(), folder_.file("people.json#adults"));
}

TEST_F(UserCaseFileSpecs, OfADatasetHoldsWhenTheManagerCannotSay) {
  manager_.fails = true;
  EXPECT_EQ(refusal("second", false, false), "");
}

TEST_F(UserCaseFileSpecs, OfAnOutputGoesByItsText) {
  UserCaseFileSpec spec;
  ASSERT_TRUE(spec.Init("MatchedCases", true, true, "", false));
  EXPECT_TRUE(spec.IsDataset());
  ASSERT_TRUE(spec.Init(folder_.file("matched.csv"), false, true, "", false));
  EXPECT_TRUE(spec.IsFile());
  EXPECT_EQ(spec.DocumentationString(), folder_.file("matched.csv"));
}

TEST_F(UserCaseFileSpecs, OfAnOutputIsRefusedWhereItCannotBeWritten) {
  EXPECT_EQ(refusal("*", false, true), "Cases cannot be saved to the working file; name a data file or a dataset.");
  EXPECT_TRUE(refusal(folder_.file("none/x.csv"), true, true).find("because there is no folder") != std::string::npos);
  EXPECT_TRUE(refusal(folder_.file(""), true, true).find("is a folder") != std::string::npos);
  EXPECT_NE(refusal(folder_.file("x.unknown"), true, true), "");
  EXPECT_NE(refusal("s3://bucket/x.csv", true, true), "");
  EXPECT_NE(refusal("", true, true), "");
}

TEST_F(UserCaseFileSpecs, OfAnOutputIsRefusedInAFolderThatCannotBeWritten) {
  if (geteuid() == 0) GTEST_SKIP() << "the administrator may write everywhere";
  std::filesystem::permissions(folder_.file(""),
                               std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec);
  const std::string said = refusal(folder_.file("x.csv"), true, true);
  std::filesystem::permissions(folder_.file(""), std::filesystem::perms::owner_all);
  EXPECT_TRUE(said.find("no permission to write") != std::string::npos) << said;
}

TEST_F(UserCaseFileSpecs, RefusesAPasswordForADataset) {
  UserCaseFileSpec spec;
  EXPECT_FALSE(spec.Init("matched", true, true, "secret", false));
  EXPECT_TRUE(spec.ErrorText().find("a dataset has no password") != std::string::npos);
}

TEST_F(UserCaseFileSpecs, DecodesAnEncodedPasswordOrRefusesIt) {
  UserCaseFileSpec spec;
  EXPECT_FALSE(spec.Init(folder_.file("x.csv.pgp"), true, true, "c2VjcmV0", true));
  EXPECT_TRUE(spec.Init(folder_.file("x.csv"), true, true, "", true)) << "no password, nothing to decode";
  setPasswordDecoder([](std::string_view encoded) -> Outcome<Secret> {
    if (encoded != "c2VjcmV0") return Problem{"It was encoded elsewhere.", "", ""};
    return Secret("secret");
  });
  EXPECT_TRUE(spec.Init(folder_.file("x.csv.pgp"), true, true, "c2VjcmV0", true));
  EXPECT_FALSE(spec.Init(folder_.file("x.csv.pgp"), true, true, "other", true));
  EXPECT_EQ(spec.ErrorText(), "It was encoded elsewhere.");
  setPasswordDecoder({});
}

TEST_F(UserCaseFileSpecs, WantsAPasswordWhenAndOnlyWhenTheNameSaysSo) {
  UserCaseFileSpec spec;
  EXPECT_TRUE(spec.Init(folder_.file("x.csv.pgp"), true, true, "secret", false));
  EXPECT_TRUE(spec.Init(folder_.file("x.csv.GPG"), true, true, "secret", false));
  EXPECT_FALSE(spec.Init(folder_.file("x.csv"), true, true, "secret", false));
  EXPECT_TRUE(spec.ErrorText().find("Let the name end in .pgp") != std::string::npos) << spec.ErrorText();
  EXPECT_FALSE(spec.Init(folder_.file("x.csv.pgp"), true, true, "", false));
  EXPECT_TRUE(spec.ErrorText().find("no password was given") != std::string::npos) << spec.ErrorText();
}

TEST_F(UserCaseFileSpecs, NeverShowsAPasswordInTheJournal) {
  const testing::JournalLines journalLines;
  {
    UserCaseFileSpec spec;
    spec.Init("matched", true, true, "geheim", false);
    spec.Init("matched", true, true, "", false);
  }
  EXPECT_EQ(journalLines.lines,
            "UserCaseFileSpec#1 = UserCaseFileSpec()\n"
            "UserCaseFileSpec#1.Init(\"matched\", true, true, '***', false) -> false\n"
            "UserCaseFileSpec#1.Init(\"matched\", true, true, '', false) -> true\n"
            "~UserCaseFileSpec#1\n");
}

TEST_F(UserCaseFileSpecs, KnowsThatHandlesAreALetterThenLettersDigitsAndUnderscores) {
  for (const char* handle : {"a", "Matched_Cases2", "été"}) EXPECT_TRUE(isWellFormedHandle(handle)) << handle;
  for (const char* other : {"", "2a", "_a", "a.csv", "a b", "a-b", "*", "\xff"})
    EXPECT_FALSE(isWellFormedHandle(other)) << other;
}

}  // namespace
}  // namespace workbench::data
