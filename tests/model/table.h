// A pivot table written down by hand: dimensions, categories in the order in which they are first named, cells, notes.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace workbench::tests::model {

// From a dimension down to a category: the titles of the groups around it, then its own.
using Path = std::vector<std::string>;

class Table {
 public:
  Table(std::string key, std::string defaultTitle);

  // `position` is "(0,1,false,false)"; empty: it was never placed.
  void addDimension(const std::string& title, const std::string& position);
  void moveDimension(std::size_t dimension, const std::string& position) { dimensions_[dimension].position = position; }
  // Names a category, or a group without any.
  void nameCategory(std::size_t dimension, const Path& path) { find(dimension, path, false); }
  void nameGroup(std::size_t dimension, const Path& path) { find(dimension, path, true); }
  // Attaches the table's footnote of that text to a category.
  void noteCategory(std::size_t dimension, const Path& path, const std::string& footnote);

  // Writes a cell at one category per dimension.
  void write(const std::vector<Path>& address, const std::string& content);
  void writeWithNote(const std::vector<Path>& address, const std::string& content, const std::string& footnote);

  void setCaption(const std::string& caption) { caption_ = caption; }
  void setLeastColumnWidth(int points) { leastColumnWidth_ = points; }

  std::string text() const;

 private:
  struct Node {
    std::string title;
    bool isGroup = false;
    std::vector<Node> children;
    std::string notes;
  };
  struct Dimension {
    std::string title;
    std::string position;
    Node root;
  };

  Node& find(std::size_t dimension, const Path& path, bool isGroup);
  // "^0", of the footnote that has this text.
  std::string noteOf(const std::string& footnote);
  static std::string textOf(const Node& node);

  std::string key_;
  std::string defaultTitle_;
  std::string caption_ = "none";
  std::optional<int> leastColumnWidth_;
  std::vector<Dimension> dimensions_;
  std::vector<std::string> cells_;
  std::vector<std::string> footnotes_;
};

// How a table is written down, part by part: shared with whoever writes down a table that was observed.
std::string tableHead(const std::string& key, const std::string& defaultTitle, bool flag,
                      std::optional<int> leastColumnWidth, const std::string& caption);
std::string dimensionLine(const std::string& title, int sort, const std::string& position,
                          const std::string& categories);
std::string groupText(const std::string& title, bool showTitle, int sort, const std::string& categories);
std::string cellLine(const std::vector<Path>& address, const std::string& content, const std::string& notes);
std::string footnoteLine(const std::string& text);

}  // namespace workbench::tests::model
