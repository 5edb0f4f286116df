#include "workbench/output/document.h"

#include <algorithm>
#include <utility>

namespace workbench::output {

std::vector<std::int32_t> Dimension::leaves() const {
  std::vector<std::int32_t> shown;
  if (nodes.empty()) return shown;
  std::vector<std::int32_t> toVisit{0};
  while (!toVisit.empty()) {
    const std::int32_t node = toVisit.back();
    toVisit.pop_back();
    const Category& category = nodes[static_cast<std::size_t>(node)];
    if (!category.isGroup) shown.push_back(node);
    toVisit.insert(toVisit.end(), category.children.rbegin(), category.children.rend());
  }
  return shown;
}

std::vector<std::int32_t> Dimension::leafPositions() const {
  std::vector<std::int32_t> positions(nodes.size(), -1);
  std::int32_t next = 0;
  for (const std::int32_t leaf : leaves()) positions[static_cast<std::size_t>(leaf)] = next++;
  return positions;
}

bool Command::openedTable() const {
  return std::any_of(items.begin(), items.end(),
                     [](const Item& item) { return std::holds_alternative<std::unique_ptr<Table>>(item); });
}

Message hostMessage(BpErrorLevel level, std::string sentence) {
  Message message;
  message.source = Message::Source::host;
  message.show = static_cast<int>(BpErrorShow::diagnostics);
  message.level = static_cast<int>(level);
  message.text = Text{StringText{std::move(sentence), false}};
  return message;
}

Message parserMessage(std::string sentence, int line, int column) {
  Message message = hostMessage(BpErrorLevel::error, std::move(sentence));
  message.source = Message::Source::parser;
  message.line = line;
  message.column = column;
  return message;
}

}  // namespace workbench::output
