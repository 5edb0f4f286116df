// The job that compare writes from its options.
#include "workbench/app/compare_job.h"

#include <gtest/gtest.h>

namespace workbench::app {
namespace {

CompareRequest request() {
  CompareRequest request;
  request.active = "a.csv";
  request.comparison = "b.csv";
  return request;
}

TEST(CompareJob, PairsByPositionAndSortsNothingWithoutCaseIds) {
  EXPECT_EQ(compareJob(request()),
            "OPEN DATA FILE='a.csv' NAME=active TYPESWITH='b.csv'.\n"
            "OPEN DATA FILE='b.csv' NAME=comparison TYPESWITH='a.csv'.\n"
            "ACTIVATE DATASET NAME=active.\n"
            "CHECK DATASETS WITH=comparison.\n"
            "COMPARE DATASETS\n"
            "  /COMPDATASET=comparison\n"
            "  /VARIABLES=ALL\n"
            "  /SAVE FLAGMISMATCHES=YES\n"
            "  /OUTPUT VARPROPERTIES=NONE.\n");
}

TEST(CompareJob, SortsBothSidesByTheCaseIdsAsTheActiveSideCutsThem) {
  CompareRequest wanted = request();
  wanted.ids = {"id", "visit day"};
  const std::string job = compareJob(wanted);
  EXPECT_NE(job.find("ACTIVATE DATASET NAME=active.\nSORT CASES BY=id 'visit day' WITH=comparison WHEN=NEEDED.\n"
                     "CHECK DATASETS WITH=comparison KEYS=id 'visit day'.\n"),
            std::string::npos)
      << job;
  EXPECT_NE(job.find("  /CASEID=id 'visit day'\n"), std::string::npos) << job;
}

TEST(CompareJob, SortsAlwaysOrNeverWhenAsked) {
  CompareRequest wanted = request();
  wanted.ids = {"id"};
  wanted.sort = SortChoice::always;
  EXPECT_NE(compareJob(wanted).find("SORT CASES BY=id WITH=comparison.\n"), std::string::npos);
  wanted.sort = SortChoice::never;
  EXPECT_EQ(compareJob(wanted).find("SORT CASES"), std::string::npos);
  EXPECT_NE(compareJob(wanted).find("CHECK DATASETS WITH=comparison KEYS=id.\n"), std::string::npos);
}

TEST(CompareJob, ChangesTheComparisonSidesNamesAlsoWhereTheOtherSideLooksForTypes) {
  CompareRequest wanted = request();
  wanted.renamed = {{"gender", "sex"}, {"last one", "to"}};
  wanted.dropped = {"u", "v 2"};
  const std::string job = compareJob(wanted);
  EXPECT_EQ(job.substr(0, job.find("ACTIVATE")),
            "OPEN DATA FILE='a.csv' NAME=active TYPESWITH='b.csv' TYPESRENAME=gender TO sex, 'last one' TO to "
            "TYPESDROP=u 'v 2'.\n"
            "OPEN DATA FILE='b.csv' NAME=comparison TYPESWITH='a.csv' RENAME=gender TO sex, 'last one' TO to "
            "DROP=u 'v 2'.\n");
}

TEST(CompareJob, DoublesQuotesInsideNames) {
  CompareRequest wanted = request();
  wanted.active = "it's.csv";
  EXPECT_NE(compareJob(wanted).find("FILE='it''s.csv'"), std::string::npos);
  EXPECT_EQ(quotedInJob("a'b"), "'a''b'");
}

TEST(CompareJob, WritesRangesOfVariablesAsThreeWords) {
  CompareRequest wanted = request();
  wanted.variables = {"x to y", "last one"};
  EXPECT_NE(compareJob(wanted).find("/VARIABLES=x TO y 'last one'\n"), std::string::npos) << compareJob(wanted);
}

TEST(CompareJob, WritesEveryOutput) {
  CompareRequest wanted = request();
  wanted.matched = "m.csv";
  wanted.mismatched = "n.csv";
  wanted.flagName = "check me";
  wanted.limit = "none";
  wanted.properties = {"label", "role"};
  wanted.saveActive = "s.csv";
  const std::string job = compareJob(wanted);
  EXPECT_NE(job.find("/SAVE FLAGMISMATCHES=YES VARNAME='check me' MATCHDATASET=YES MATCHNAME='m.csv' "
                     "MISMATCHDATASET=YES MISMATCHNAME='n.csv'\n"),
            std::string::npos)
      << job;
  EXPECT_NE(job.find("/OUTPUT VARPROPERTIES=LABEL ROLE TABLELIMIT=NONE.\n"), std::string::npos) << job;
  EXPECT_NE(job.find("SAVE DATA FILE='s.csv'.\n"), std::string::npos) << job;
}

TEST(CompareJob, AnOutputFileWithoutAnEndingIsStillAFile) {
  CompareRequest wanted = request();
  wanted.matched = "agreed";
  EXPECT_NE(compareJob(wanted).find("MATCHNAME='./agreed'"), std::string::npos);
}

TEST(CompareJob, ProfilesTheSameVariablesBehindTheComparisonAndLeavesItsFlagVariableOut) {
  CompareRequest wanted = request();
  wanted.profile = true;
  wanted.ids = {"id", "visit day"};
  wanted.saveActive = "s.csv";
  EXPECT_NE(compareJob(wanted).find("  /OUTPUT VARPROPERTIES=NONE.\n"
                                    "PROFILE DIFFERENCES\n"
                                    "  /COMPDATASET=comparison\n"
                                    "  /VARIABLES=ALL EXCEPT='CasesCompare'\n"
                                    "  /CASEID=id 'visit day'.\n"
                                    "SAVE DATA"),
            std::string::npos)
      << compareJob(wanted);
  wanted.variables = {"x to y"};
  wanted.flagName = "check me";
  EXPECT_NE(compareJob(wanted).find("/VARIABLES=x TO y EXCEPT='check me'\n"), std::string::npos) << compareJob(wanted);
  wanted.flagName.reset();
  wanted.noFlag = true;
  EXPECT_EQ(compareJob(wanted).find("EXCEPT"), std::string::npos) << compareJob(wanted);
}

TEST(CompareJob, GivesEveryFileTheReferenceToItsPassword) {
  CompareRequest wanted = request();
  wanted.passwords = {"reference-1", "reference-2", "reference-3"};
  wanted.matched = "m.csv.pgp";
  wanted.mismatched = "n.csv.pgp";
  wanted.saveActive = "s.csv.pgp";
  const std::string job = compareJob(wanted);
  for (const char* part :
       {"OPEN DATA FILE='a.csv' PASSWORD='reference-1' NAME=active TYPESWITH='b.csv' TYPESPASSWORD='reference-2'.\n",
        "OPEN DATA FILE='b.csv' PASSWORD='reference-2' NAME=comparison TYPESWITH='a.csv' "
        "TYPESPASSWORD='reference-1'.\n",
        "MATCHNAME='m.csv.pgp' MATCHPASS='reference-3' MISMATCHDATASET=YES MISMATCHNAME='n.csv.pgp' "
        "MISMATCHPASS='reference-3'\n",
        "SAVE DATA FILE='s.csv.pgp' PASSWORD='reference-3'.\n"}) {
    EXPECT_NE(job.find(part), std::string::npos) << part << "\nin: " << job;
  }
  wanted.passwords = hidden(wanted.passwords);
  EXPECT_EQ(compareJob(wanted).find("reference"), std::string::npos);
  EXPECT_NE(compareJob(wanted).find("MISMATCHPASS='***'"), std::string::npos);
}

TEST(CompareJob, SetsToleranceAndCollationFirst) {
  CompareRequest wanted = request();
  wanted.tolerance = 0.0;
  wanted.collation = "de";
  EXPECT_TRUE(compareJob(wanted).starts_with("SET OPTIONS TOLERANCE=0.\nSET OPTIONS COLLATION='de'.\nOPEN DATA"));
}

}  // namespace
}  // namespace workbench::app
