// Files that nobody here wrote: two published versions of the same data. The counts were found beforehand by reading
// the files directly.
#include <gtest/gtest.h>

#include "tests/program/program_run.h"

namespace workbench::tests::real_data_test {

const std::string summary = "CD_MatchedSummaryTableName";
const std::string byCases = "CD_MismatchedByCasesTableName";
const std::string byVariables = "CD_MismatchedByVarsTableName";

std::string version1(const std::string& name) { return std::string(REAL_DATA) + "/vega-datasets-1/data/" + name; }
std::string version2(const std::string& name) { return std::string(REAL_DATA) + "/vega-datasets-2/data/" + name; }

nlohmann::json compared(const std::string& name, const std::string& id) {
  const ProgramFolder folder;
  return folder.results({"compare", version1(name), version2(name), "--id", id});
}

TEST(RealData, WeatherDiffersIn679CasesAllOfThemInOneVariable) {
  const auto results = compared("weather.csv", "location,date");
  EXPECT_EQ(results["verdict"], "different");
  EXPECT_EQ(cellOf(results, summary, {"CD_CasesCompared", "CD_Count", "CD_Active"}), "2922");
  EXPECT_EQ(cellOf(results, summary, {"CD_CasesNotCompared", "CD_Count", "CD_Comparison"}), "0");
  EXPECT_EQ(cellOf(results, byCases, {"CD_CasesContainingMismatches", "CD_Count"}), "679");
  EXPECT_EQ(cellOf(results, byVariables, {"weather", "CD_Count"}), "679");
  for (const char* other : {"location", "date", "precipitation", "temp_max", "temp_min", "wind"}) {
    EXPECT_EQ(cellOf(results, byVariables, {other, "CD_Count"}), "0") << other;
  }
}

TEST(RealData, WeatherWasNotInOrderAndTheOutputSaysThatItWasSorted) {
  const std::string messages = messagesOf(compared("weather.csv", "location,date"));
  EXPECT_NE(messages.find("sorted by location, date"), std::string::npos) << messages;
  EXPECT_NE(messages.find("Seattle"), std::string::npos) << messages;
}

TEST(RealData, CarbonDioxideHas28NewCasesAnd55ThatDiffer) {
  const auto results = compared("co2-concentration.csv", "Date");
  EXPECT_EQ(results["verdict"], "different");
  EXPECT_EQ(cellOf(results, summary, {"CD_CasesCompared", "CD_Count", "CD_Active"}), "713");
  EXPECT_EQ(cellOf(results, summary, {"CD_CasesNotCompared", "CD_Count", "CD_Active"}), "0");
  EXPECT_EQ(cellOf(results, summary, {"CD_CasesNotCompared", "CD_Count", "CD_Comparison"}), "28");
  EXPECT_EQ(cellOf(results, byCases, {"CD_CasesContainingMismatches", "CD_Count"}), "55");
  EXPECT_EQ(cellOf(results, byVariables, {"CO2", "CD_Count"}), "55");
}

TEST(RealData, GapminderIsTheSameInBothVersions) {
  const auto results = compared("gapminder-health-income.csv", "country");
  EXPECT_EQ(results["verdict"], "same");
  EXPECT_EQ(cellOf(results, summary, {"CD_CasesCompared", "CD_Count", "CD_Active"}), "187");
}

TEST(RealData, SeattleWeatherWritesItsDatesInTwoWaysAndTheOutputSaysSo) {
  const auto results = compared("seattle-weather.csv", "date");
  EXPECT_EQ(results["verdict"], "different");
  EXPECT_EQ(cellOf(results, summary, {"CD_CasesCompared", "CD_Count", "CD_Active"}), "0");
  const std::string messages = messagesOf(results);
  EXPECT_NE(messages.find("\"2012/01/01\" is no ISO date"), std::string::npos) << messages;
}

}  // namespace workbench::tests::real_data_test
