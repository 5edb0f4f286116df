#include "workbench/output/value_variables.h"

#include <unordered_map>

namespace workbench::output {
namespace {

std::unordered_map<const VRIX_Variable*, std::shared_ptr<const ValueVariable>>& known() {
  static std::unordered_map<const VRIX_Variable*, std::shared_ptr<const ValueVariable>> variables;
  return variables;
}

}  // namespace

std::shared_ptr<const ValueVariable> valueVariableOf(const VRIX_Variable& variable) {
  FormatType format = FormatType::number;
  std::int32_t width = 0;
  std::int32_t decimals = 0;
  variable.GetFormatEx(format, width, decimals);
  const std::string& name = variable.GetName();

  // Another variable may stand at an address known from before, and a variable may have changed: what is known counts
  // only while it still holds.
  std::shared_ptr<const ValueVariable>& kept = known()[&variable];
  if (kept == nullptr || kept->format != format || kept->width != width || kept->decimals != decimals ||
      kept->name != name) {
    kept = std::make_shared<const ValueVariable>(ValueVariable{name, format, width, decimals});
  }
  return kept;
}

void forgetValueVariables() { known().clear(); }

}  // namespace workbench::output
