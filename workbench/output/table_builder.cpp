#include "workbench/output/table_builder.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "host/messages.h"
#include "workbench/output/call_text.h"
#include "workbench/output/text_identity.h"
#include "workbench/text/wording.h"

namespace workbench::output {

using text::sentence;

TableBuilder::TableBuilder(Table& table)
    : table_(table),
      nodesByTitle_(0, NodeHash{this}, NodeEqual{this}),
      cellsByAddress_(0, AddressHash{&table}, AddressEqual{&table}),
      emptyContent_(std::make_shared<const Text>(Text{StringText{}})) {}

TableBuilder::Handle TableBuilder::addDimension(const Text& title, BpSort sort) {
  requireOpen();
  if (!table_.cells.empty()) {
    throw ErrorText(
        sentence("The dimension ^1 was added to a table that has cells already: make every dimension before "
                 "the first cell.",
                 {asArgument(title)}));
  }
  Dimension dimension;
  dimension.title = title;
  dimension.sort = static_cast<int>(sort);
  dimension.nodes.push_back(Category{title, true, true, static_cast<int>(sort), {}, {}});
  nodes_.push_back({static_cast<std::int32_t>(table_.dimensions.size()), 0, -1});
  table_.dimensions.push_back(std::move(dimension));
  current_.push_back(-1);
  return static_cast<Handle>(nodes_.size() - 1);
}

void TableBuilder::position(Handle dimension, const Position& position) {
  requireOpen();
  table_.dimensions[static_cast<std::size_t>(at(dimension).dimension)].position = position;
}

TableBuilder::Handle TableBuilder::category(Handle parent, const Text& title) {
  const Handle handle = findOrMake(parent, title, false, false, BpSort::asMade);
  const Node& node = at(handle);
  current_[static_cast<std::size_t>(node.dimension)] = node.node;
  return handle;
}

TableBuilder::Handle TableBuilder::group(Handle parent, const Text& title, bool showTitle, BpSort sort) {
  return findOrMake(parent, title, true, showTitle, sort);
}

TableBuilder::Handle TableBuilder::findOrMake(Handle parent, const Text& title, bool isGroup, bool showTitle,
                                              BpSort sort) {
  requireOpen();
  const auto known = nodesByTitle_.find(Title{parent, isGroup, &title});
  if (known != nodesByTitle_.end()) return *known;
  if (nodes_.size() == static_cast<std::size_t>(std::numeric_limits<Handle>::max())) {
    throw ErrorText(sentence("A table has more categories than it can hold: limit the number of cases that it shows."));
  }

  const Node& above = at(parent);
  const std::int32_t dimension = above.dimension;
  std::vector<Category>& nodes = table_.dimensions[static_cast<std::size_t>(dimension)].nodes;
  const std::int32_t node = static_cast<std::int32_t>(nodes.size());
  nodes[static_cast<std::size_t>(above.node)].children.push_back(node);
  nodes.push_back(Category{title, isGroup, showTitle, isGroup ? static_cast<int>(sort) : 0, {}, {}});
  const Handle handle = static_cast<Handle>(nodes_.size());
  nodes_.push_back({dimension, node, parent});
  nodesByTitle_.insert(handle);
  return handle;
}

void TableBuilder::writeCell(Handle category, const Text& content) {
  cellAt(addressAt(category)).content = contentOf(content);
}

void TableBuilder::noteCell(Handle category, std::uint64_t annotation, const Text& text) {
  Cell& cell = cellAt(addressAt(category));
  const std::int32_t note = footnote(annotation, text);
  if (std::find(cell.notes.begin(), cell.notes.end(), note) == cell.notes.end()) cell.notes.push_back(note);
}

void TableBuilder::noteCategory(Handle category, std::uint64_t annotation, const Text& text) {
  requireOpen();
  std::vector<std::int32_t>& notes = categoryOf(at(category)).notes;
  const std::int32_t note = footnote(annotation, text);
  if (std::find(notes.begin(), notes.end(), note) == notes.end()) notes.push_back(note);
}

void TableBuilder::setCaption(const Text& text) {
  requireOpen();
  table_.caption = text;
}

void TableBuilder::setMinDataColumnWidth(int points) {
  requireOpen();
  table_.minDataColumnWidth = points;
}

void TableBuilder::destroy() {
  requireOpen();
  nodesByTitle_.clear();
  cellsByAddress_.clear();
  footnotes_.clear();
  keyContents_.clear();
  nodes_ = {};
  current_ = {};
  Table destroyed;
  destroyed.title = std::move(table_.title);
  destroyed.defaultTitle = std::move(table_.defaultTitle);
  destroyed.flag = table_.flag;
  destroyed.destroyed = true;
  table_ = std::move(destroyed);
}

void TableBuilder::requireOpen() const {
  if (table_.destroyed) {
    throw ErrorText(sentence("The table ^1 was used after it had been destroyed.", {asArgument(table_.title)}));
  }
}

Category& TableBuilder::categoryOf(const Node& node) {
  return table_.dimensions[static_cast<std::size_t>(node.dimension)].nodes[static_cast<std::size_t>(node.node)];
}

const Category& TableBuilder::categoryOf(const Node& node) const {
  return table_.dimensions[static_cast<std::size_t>(node.dimension)].nodes[static_cast<std::size_t>(node.node)];
}

TableBuilder::Title TableBuilder::titleOf(Handle handle) const {
  const Node& node = at(handle);
  const Category& category = categoryOf(node);
  return {node.parent, category.isGroup, &category.title};
}

std::size_t TableBuilder::NodeHash::operator()(const Title& title) const {
  const std::size_t place = static_cast<std::size_t>(title.parent) * 2 + (title.isGroup ? 1 : 0);
  return identityHash(*title.text) ^ (place * 0x9e3779b97f4a7c15ULL);
}

bool TableBuilder::NodeEqual::operator()(const Title& left, const Title& right) const {
  return left.parent == right.parent && left.isGroup == right.isGroup && haveSameIdentity(*left.text, *right.text);
}

std::size_t TableBuilder::AddressHash::operator()(Address address) const {
  std::size_t hash = 0;
  for (const std::int32_t node : address) {
    hash = (hash ^ static_cast<std::size_t>(node)) * 0x9e3779b97f4a7c15ULL;
    hash ^= hash >> 32;
  }
  return hash;
}

bool TableBuilder::AddressEqual::operator()(Address left, Address right) const {
  return std::equal(left.begin(), left.end(), right.begin(), right.end());
}

TableBuilder::Address TableBuilder::addressAt(Handle category) {
  requireOpen();
  const Node& own = at(category);
  address_.assign(current_.begin(), current_.end());
  address_[static_cast<std::size_t>(own.dimension)] = own.node;
  for (std::size_t dimension = 0; dimension < address_.size(); ++dimension) {
    if (address_[dimension] >= 0) continue;
    throw ErrorText(
        sentence("A cell of the table ^1 was written while its dimension ^2 had no category: make one in every "
                 "dimension first.",
                 {asArgument(table_.title), asArgument(table_.dimensions[dimension].title)}));
  }
  return address_;
}

Cell& TableBuilder::cellAt(Address address) {
  const auto known = cellsByAddress_.find(address);
  if (known != cellsByAddress_.end()) return table_.cells[*known];
  if (table_.cells.size() == std::numeric_limits<std::uint32_t>::max()) {
    throw ErrorText(sentence("A table has more cells than it can hold: limit the number of cases that it shows."));
  }
  table_.addresses.insert(table_.addresses.end(), address.begin(), address.end());
  table_.cells.push_back(Cell{emptyContent_, {}});
  cellsByAddress_.insert(static_cast<std::uint32_t>(table_.cells.size() - 1));
  return table_.cells.back();
}

std::shared_ptr<const Text> TableBuilder::contentOf(const Text& text) {
  const StringText* string = std::get_if<StringText>(&text.held);
  if (string == nullptr || (!string->translate && !string->key.empty())) return std::make_shared<const Text>(text);
  if (!string->translate) return emptyContent_;
  auto known = keyContents_.find(string->key);
  if (known == keyContents_.end()) known = keyContents_.emplace(string->key, std::make_shared<const Text>(text)).first;
  return known->second;
}

std::int32_t TableBuilder::footnote(std::uint64_t annotation, const Text& text) {
  const auto [place, isNew] = footnotes_.emplace(annotation, static_cast<std::int32_t>(table_.footnotes.size()));
  if (isNew) table_.footnotes.push_back(text);
  return place->second;
}

}  // namespace workbench::output
