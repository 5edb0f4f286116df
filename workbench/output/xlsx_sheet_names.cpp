#include "workbench/output/xlsx_sheet_names.h"

#include <fmt/format.h>

#include "workbench/output/display_text.h"
#include "workbench/text/folding.h"

namespace workbench::output {
namespace {

constexpr std::size_t mostUnits = 31;

std::string trimmed(const std::string& text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

// The heading without what no name may have.
std::string allowed(std::string_view heading) {
  std::string name;
  for (const char character : visible(heading)) {
    if (character == '\'') {
      name += "\xE2\x80\x99";
    } else if (character == '[' || character == ']') {
      name += character == '[' ? '(' : ')';
    } else if (character == '\n') {
      name += ' ';
    } else {
      name += std::string_view(":*?/\\").find(character) != std::string_view::npos ? '-' : character;
    }
  }
  return name;
}

}  // namespace

std::string XlsxSheetNames::nameFor(std::string_view heading) {
  std::string base = trimmed(allowed(heading));
  if (base.empty()) base = unnamed_;
  std::string name = trimmed(beginning(base, mostUnits));
  for (int number = 2; name.empty() || !take(name); ++number) {
    const std::string ending = fmt::format(" ({})", number);
    name = trimmed(beginning(base, mostUnits - ending.size())) + ending;
  }
  return name;
}

bool XlsxSheetNames::take(const std::string& name) { return taken_.insert(text::foldedName(name)).second; }

}  // namespace workbench::output
