// TerminalCanvas: texts put down at columns of lines, in any order, and then written line by line.
//
// Requires: texts do not overlap.
#pragma once

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace workbench::output {

class TerminalCanvas {
 public:
  // Puts a text down; an empty one makes sure that the line is there. A style is what has to be sent before the text;
  // it takes no columns.
  void paint(std::size_t line, int column, std::string text, std::string_view style = {});
  // Writes all lines without blanks at their ends, and starts anew.
  void writeTo(std::ostream& out);

 private:
  struct Piece {
    int column;
    std::string text;
    std::string_view style;
  };
  std::vector<std::vector<Piece>> lines_;
};

}  // namespace workbench::output
