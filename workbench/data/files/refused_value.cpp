#include "workbench/data/files/refused_value.h"

#include <fmt/format.h>

#include "host/messages.h"
#include "workbench/runtime/outcome.h"
#include "workbench/text/utf8.h"
#include "workbench/text/wording.h"

namespace workbench::data {

void refuseValue(const std::string& path, std::uint64_t caseNumber, const Variable& variable, std::string_view why,
                 std::string_view value) {
  throw ErrorText(Problem{text::sentence(why, {fmt::to_string(caseNumber), variable.name, value}), path, ""}.text());
}

const char* problemOfText(std::string_view text) {
  if (text.find('\0') != std::string_view::npos)
    return "In case ^1 the value of \"^2\" holds a NUL byte, so it cannot be written; correct the value.";
  return text::isUtf8(text) ? nullptr
                            : "In case ^1 the value of \"^2\" is no UTF-8, so it cannot be written; correct the value.";
}

}  // namespace workbench::data
