#include "workbench/output/shown_results.h"

#include <utility>

namespace workbench::output {
namespace {

bool isShownTable(const Table& table, const std::optional<std::string>& onlyTable) {
  return !table.destroyed && !table.cells.empty() && (!onlyTable || keyOf(table) == *onlyTable);
}

bool isShown(const Item& item, const std::optional<std::string>& onlyTable) {
  if (const Table* table = tableOf(item)) return isShownTable(*table, onlyTable);
  if (onlyTable) return false;
  const auto* message = std::get_if<Message>(&item);
  return message == nullptr || belongsToResults(*message);
}

}  // namespace

std::vector<ShownCommand> shownCommands(const Document& document, const std::optional<std::string>& onlyTable) {
  std::vector<ShownCommand> showing;
  for (const std::unique_ptr<Command>& command : document.commands) {
    ShownCommand shown{command.get(), nullptr, {}};
    if (command->answer && !onlyTable) shown.answer = &*command->answer;
    for (const Item& item : command->items) {
      if (isShown(item, onlyTable)) shown.items.push_back(&item);
    }
    if (shown.answer != nullptr || !shown.items.empty()) showing.push_back(std::move(shown));
  }
  return showing;
}

const Table* tableOf(const Item& item) {
  const auto* table = std::get_if<std::unique_ptr<Table>>(&item);
  return table != nullptr ? table->get() : nullptr;
}

std::string_view keyOf(const Table& table) {
  const auto* key = std::get_if<StringText>(&table.title.held);
  return key != nullptr ? std::string_view(key->key) : std::string_view();
}

bool belongsToResults(const Message& message) { return message.show == static_cast<int>(BpErrorShow::results); }

}  // namespace workbench::output
