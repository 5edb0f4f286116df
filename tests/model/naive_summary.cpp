#include "tests/model/naive_summary.h"

#include <optional>
#include <vector>

#include "tests/model/cell_text.h"
#include "tests/model/table.h"

namespace workbench::tests::model {

namespace {

constexpr const char* columns[] = {"CD_Active", "CD_Comparison"};

std::string variableOrNothing(const Dataset& dataset, const std::optional<std::size_t>& place) {
  return place ? variableText(dataset.variables[*place]) : plain("");
}

std::string splitText(const Dataset& dataset) {
  if (dataset.split.empty()) return plain("");
  std::vector<std::string> variables;
  for (const std::size_t place : dataset.split) variables.push_back(variableText(dataset.variables[place]));
  return composite("[%1:, ^1:]1", {list(variables)});
}

}  // namespace

std::string comparisonSummary(const World& world, const Options& options) {
  Table table("CD_CompSummaryTableName", "Comparison Summary");
  table.setLeastColumnWidth(180);
  table.addDimension("CD_Information", "(0,1,false,false)");
  table.addDimension("CD_Datasets", "(1,1,false,false)");
  for (const char* column : columns) table.nameCategory(1, {column});
  const auto row = [&](const std::string& what, const std::optional<std::string>& active, const std::string& compared) {
    table.nameCategory(0, {what});
    if (active) table.write({{what}, {columns[0]}}, *active);
    table.write({{what}, {columns[1]}}, compared);
  };
  const Dataset& active = world.active;
  const Dataset& compared = world.compared;
  row("CD_Data_File", plain(active.path), plain(compared.path));
  std::optional<std::string> handle;
  if (world.activeHandle) handle = plain(*world.activeHandle);
  // The handle is that under which it was opened, however the command writes it; a data file has none.
  row("CD_Dataset", handle, plain(options.comparison.isQuoted ? "" : "b"));
  row("CD_Filter", variableOrNothing(active, active.filter), variableOrNothing(compared, compared.filter));
  row("CD_Weight", variableOrNothing(active, active.weight), variableOrNothing(compared, compared.weight));
  row("CD_SplitFile", splitText(active), splitText(compared));
  return table.text();
}

std::string caseCounts(const WalkedCases& walked) {
  Table table("CD_CompSummaryTableName", "CD_CompSummaryTemplateName");
  table.addDimension("CD_Information", "");
  table.addDimension("CD_Datasets", "(1,1,false,false)");
  for (const char* column : columns) table.nameCategory(1, {column});
  table.nameCategory(0, {"CD_Cases"});
  const std::size_t counts[] = {walked.activeRead, walked.comparedRead};
  for (std::size_t side = 0; side < 2; ++side) {
    if (counts[side] > 0) table.write({{"CD_Cases"}, {columns[side]}}, count(counts[side]));
  }
  return table.text();
}

}  // namespace workbench::tests::model
