#include "procedures/profile/messages.h"

#include "host/messages.h"

namespace profile {

void refuse(const BpCellText& text) { BpError(text, BpErrorShow::diagnostics, BpErrorLevel::error); }

void refuse(std::string_view key) { refuse(BpString(key, true)); }

void warnOfUnprofiled(const std::vector<std::string>& names) {
  if (names.empty()) return;
  BpComposite text(
      "These variables are not in both datasets with the same type, so they are not profiled: [%1:, ^1:]1.", true);
  text.Sublist();
  for (const std::string& name : names) text.Add(BpString(name, false));
  text.EndSublist();
  text.Finish();
  BpError(text, BpErrorShow::results, BpErrorLevel::warning);
}

}  // namespace profile
