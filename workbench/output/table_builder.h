// TableBuilder fills one table of the document: categories that are asked for again, current categories, cells that are
// written again, footnotes that are attached many times.
//
// Requires: the table outlives it. What cannot be done is thrown as ErrorText.
// Invariant: every cell of the table has one leaf of each dimension; cellsByAddress_ holds every cell once.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "workbench/output/document.h"

namespace workbench::output {

class TableBuilder {
 public:
  // A node of any dimension of the table; a dimension is its outermost node.
  using Handle = std::int32_t;

  explicit TableBuilder(Table& table);
  TableBuilder(const TableBuilder&) = delete;
  TableBuilder& operator=(const TableBuilder&) = delete;

  // Requires: no cell has been written.
  Handle addDimension(const Text& title, BpSort sort);
  // Requires: the handle is a dimension.
  void position(Handle dimension, const Position& position);
  // The category or group of this title in the parent, made when it is not there. Takes constant time. A category
  // becomes the current one of its dimension.
  Handle category(Handle parent, const Text& title);
  Handle group(Handle parent, const Text& title, bool showTitle, BpSort sort);

  // Writes the cell at the category and the current categories of the other dimensions. Footnotes that a cell has
  // already are the place's and stay when it is written again.
  void writeCell(Handle category, const Text& content);
  // Attaches a footnote to that cell (an empty one is made when nothing was written yet), or to the category itself.
  // `annotation` tells one footnote from another; attached twice in one place it stands there once.
  void noteCell(Handle category, std::uint64_t annotation, const Text& text);
  void noteCategory(Handle category, std::uint64_t annotation, const Text& text);

  void setCaption(const Text& text);
  void setMinDataColumnWidth(int points);
  // Takes the table out of the results and frees what it held. Nothing else may be done with it then.
  void destroy();

 private:
  struct Node {
    std::int32_t dimension;
    std::int32_t node;  // among the dimension's nodes
    Handle parent;
  };
  // What a category is looked up by.
  struct Title {
    Handle parent;
    bool isGroup;
    const Text* text;
  };
  struct NodeHash {
    using is_transparent = void;
    const TableBuilder* builder;
    std::size_t operator()(const Title& title) const;
    std::size_t operator()(Handle node) const { return operator()(builder->titleOf(node)); }
  };
  struct NodeEqual {
    using is_transparent = void;
    const TableBuilder* builder;
    bool operator()(const Title& left, const Title& right) const;
    bool operator()(const Title& left, Handle right) const { return operator()(left, builder->titleOf(right)); }
    bool operator()(Handle left, const Title& right) const { return operator()(builder->titleOf(left), right); }
    bool operator()(Handle left, Handle right) const { return left == right; }
  };
  using Address = std::span<const std::int32_t>;
  struct AddressHash {
    using is_transparent = void;
    const Table* table;
    std::size_t operator()(Address address) const;
    std::size_t operator()(std::uint32_t cell) const { return operator()(table->at(cell)); }
  };
  struct AddressEqual {
    using is_transparent = void;
    const Table* table;
    bool operator()(Address left, Address right) const;
    bool operator()(Address left, std::uint32_t right) const { return operator()(left, table->at(right)); }
    bool operator()(std::uint32_t left, Address right) const { return operator()(table->at(left), right); }
    bool operator()(std::uint32_t left, std::uint32_t right) const { return left == right; }
  };

  void requireOpen() const;
  const Node& at(Handle handle) const { return nodes_[static_cast<std::size_t>(handle)]; }
  Category& categoryOf(const Node& node);
  const Category& categoryOf(const Node& node) const;
  Title titleOf(Handle handle) const;
  Handle findOrMake(Handle parent, const Text& title, bool isGroup, bool showTitle, BpSort sort);
  Address addressAt(Handle category);
  Cell& cellAt(Address address);
  std::shared_ptr<const Text> contentOf(const Text& text);
  std::int32_t footnote(std::uint64_t annotation, const Text& text);

  Table& table_;
  std::vector<Node> nodes_;
  std::vector<std::int32_t> current_;  // per dimension the current leaf's node; -1: none yet
  std::unordered_set<Handle, NodeHash, NodeEqual> nodesByTitle_;
  std::unordered_set<std::uint32_t, AddressHash, AddressEqual> cellsByAddress_;
  std::unordered_map<std::uint64_t, std::int32_t> footnotes_;
  std::map<std::string, std::shared_ptr<const Text>, std::less<>> keyContents_;
  std::shared_ptr<const Text> emptyContent_;
  std::vector<std::int32_t> address_;  // of the cell in hand
};

}  // namespace workbench::output
