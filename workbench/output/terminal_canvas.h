// TerminalCanvas: texts put down at columns of lines, in any order, and then written line by line.
//
// Requires: texts do not overlap.
#pragma once

#include <iosfwd>
#include <string>
#include <utility>
#include <vector>

namespace workbench::output {

class TerminalCanvas {
 public:
  // Puts a text down; an empty one makes sure that the line is there.
  void paint(std::size_t line, int column, std::string text);
  // Writes all lines without blanks at their ends, and starts anew.
  void writeTo(std::ostream& out);

 private:
  std::vector<std::vector<std::pair<int, std::string>>> lines_;
};

}  // namespace workbench::output
