#include "workbench/data/files/refused_value.h"

#include <fmt/format.h>

#include "host/messages.h"
#include "workbench/text/utf8.h"

namespace workbench::data {

void refuseValue(const std::string& path, std::uint64_t caseNumber, const Variable& variable, std::string_view why) {
  throw ErrorText(fmt::format("{}: In case {} the value of \"{}\" {}, so it cannot be written; correct the value.",
                              path, caseNumber, variable.name, why));
}

const char* problemOfText(std::string_view text) {
  if (text.find('\0') != std::string_view::npos) return "holds a NUL byte";
  return text::isUtf8(text) ? nullptr : "is no UTF-8";
}

}  // namespace workbench::data
