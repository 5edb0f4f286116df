// What of a document people see, in whatever format: answers, tables, notes, and the messages that a procedure wants
// among its results. All other messages belong on standard error.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/output/document.h"

namespace workbench::output {

// A command with what it shows: an answer, items, or both. Valid as long as the document.
struct ShownCommand {
  const Command* command = nullptr;
  const Answer* answer = nullptr;  // null when there is none to show
  std::vector<const Item*> items;
};

// The commands that show something. With the key of a table, tables that were opened under it are all that is shown.
std::vector<ShownCommand> shownCommands(const Document& document, const std::optional<std::string>& onlyTable);

// The table of a shown item; null when it is none.
const Table* tableOf(const Item& item);
// The key under which a table was opened; empty when it has none.
std::string_view keyOf(const Table& table);

bool belongsToResults(const Message& message);

}  // namespace workbench::output
