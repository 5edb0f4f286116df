// The string literals of C++ sources, as the compiler reads them: without comments, neighbours joined.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace workbench::text {

struct SourceLiteral {
  std::string text;
  std::string before;  // a little of the code before it and after it, without blanks
  std::string after;
};

std::vector<SourceLiteral> literalsOf(std::string_view source);

// Those of all sources under these folders of the project.
std::vector<SourceLiteral> sourceLiterals(const std::vector<std::string>& folders);

}  // namespace workbench::text
