#include "tests/model/table.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <utility>

namespace workbench::tests::model {

Table::Table(std::string key, std::string defaultTitle)
    : key_(std::move(key)), defaultTitle_(std::move(defaultTitle)) {}

void Table::addDimension(const std::string& title, const std::string& position) {
  dimensions_.push_back({title, position, {title, true, {}, {}}});
}

void Table::noteCategory(std::size_t dimension, const Path& path, const std::string& footnote) {
  find(dimension, path, false).notes += noteOf(footnote);
}

void Table::write(const std::vector<Path>& address, const std::string& content) {
  for (std::size_t dimension = 0; dimension < address.size(); ++dimension) nameCategory(dimension, address[dimension]);
  cells_.push_back(cellLine(address, content, ""));
}

void Table::writeWithNote(const std::vector<Path>& address, const std::string& content, const std::string& footnote) {
  for (std::size_t dimension = 0; dimension < address.size(); ++dimension) nameCategory(dimension, address[dimension]);
  cells_.push_back(cellLine(address, content, noteOf(footnote)));
}

std::string Table::text() const {
  std::string all = tableHead(key_, defaultTitle_, true, leastColumnWidth_, caption_);
  for (const Dimension& dimension : dimensions_) {
    all += dimensionLine(dimension.title, 2, dimension.position, textOf(dimension.root));
  }
  for (const std::string& cell : cells_) all += cell;
  for (const std::string& footnote : footnotes_) all += footnoteLine(footnote);
  return all;
}

Table::Node& Table::find(std::size_t dimension, const Path& path, bool isGroup) {
  Node* node = &dimensions_[dimension].root;
  for (std::size_t depth = 0; depth < path.size(); ++depth) {
    const bool wantsGroup = isGroup || depth + 1 < path.size();
    auto known = std::find_if(node->children.begin(), node->children.end(), [&](const Node& child) {
      return child.title == path[depth] && child.isGroup == wantsGroup;
    });
    if (known == node->children.end()) known = node->children.insert(known, Node{path[depth], wantsGroup, {}, {}});
    node = &*known;
  }
  return *node;
}

std::string Table::noteOf(const std::string& footnote) {
  const auto known = std::find(footnotes_.begin(), footnotes_.end(), footnote);
  const auto place = known - footnotes_.begin();
  if (known == footnotes_.end()) footnotes_.push_back(footnote);
  return fmt::format("^{}", place);
}

std::string Table::textOf(const Node& node) {
  std::string all;
  for (const Node& child : node.children) {
    all += ' ' + (child.isGroup ? groupText(child.title, true, 2, textOf(child)) : child.title + child.notes);
  }
  return all;
}

std::string tableHead(const std::string& key, const std::string& defaultTitle, bool flag,
                      std::optional<int> leastColumnWidth, const std::string& caption) {
  return fmt::format("table {} / {} / {} / width {} / caption {}\n", key, defaultTitle, flag,
                     leastColumnWidth ? std::to_string(*leastColumnWidth) : "any", caption);
}

std::string dimensionLine(const std::string& title, int sort, const std::string& position,
                          const std::string& categories) {
  return fmt::format("  {} {} {}:{}\n", title, sort, position.empty() ? "unplaced" : position, categories);
}

std::string groupText(const std::string& title, bool showTitle, int sort, const std::string& categories) {
  return fmt::format("[{} {},{}:{}]", title, showTitle, sort, categories);
}

std::string cellLine(const std::vector<Path>& address, const std::string& content, const std::string& notes) {
  std::vector<std::string> places;
  for (const Path& path : address) places.push_back(fmt::format("{}", fmt::join(path, "/")));
  return fmt::format("    {} = {}{}\n", fmt::join(places, " | "), content, notes);
}

std::string footnoteLine(const std::string& text) { return "  footnote " + text + '\n'; }

}  // namespace workbench::tests::model
