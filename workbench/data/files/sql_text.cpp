#include "workbench/data/files/sql_text.h"

namespace workbench::data {
namespace {

std::string inQuotes(std::string_view text, char quote) {
  std::string quoted(1, quote);
  for (const char character : text) {
    quoted += character;
    if (character == quote) quoted += character;
  }
  return quoted + quote;
}

}  // namespace

std::string sqlText(std::string_view text) { return inQuotes(text, '\''); }

std::string sqlName(std::string_view name) { return inQuotes(name, '"'); }

}  // namespace workbench::data
