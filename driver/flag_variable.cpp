#include "driver/flag_variable.h"

#include <array>

#include "host/messages.h"

namespace compdatas {

namespace {

constexpr const char* messageCatalog = "vrix.err";
constexpr std::int64_t variableLabelText = 8023;

struct FlagLabel {
  double value;
  std::int64_t text;
};
constexpr auto flagLabels = std::to_array<FlagLabel>({{1.0, 8020}, {0.0, 8021}, {-1.0, 8022}});

}  // namespace

std::string makeFlagVariable(const CompareOptions& options, ProcedureDataSource& activeSource) {
  std::string wanted = options.flagVarName();
  if (wanted.empty()) wanted = "CasesCompare";

  activeSource.SetUseFilter(false);
  activeSource.SetSplitEndCheck(false);
  activeSource.SetMaxObsAdded(1);
  std::string name = activeSource.GoodVarName(wanted);

  VRIX_Variable& flag = activeSource.MakeVariable(0, nullptr);
  flag.SetName(name);
  flag.SetFormat(FormatType::number, 1, 0);
  flag.SetMeasurementLevel(VRIX_Variable_Enumerations::MeasurementLevel::nominal);
  {
    const VrixServerErrorText label(messageCatalog, variableLabelText);
    flag.SetLabel(label.GetText());
  }
  for (const FlagLabel& row : flagLabels) {
    const VrixServerErrorText label(messageCatalog, row.text);
    flag.AddValueLabel(row.value, label.GetText());
  }
  return name;
}

}  // namespace compdatas
