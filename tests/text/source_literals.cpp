#include "tests/text/source_literals.h"

#include <cctype>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace workbench::text {

namespace {

constexpr std::size_t codeKept = 30;
constexpr char literalMark = '\1';  // stands for a literal in the code

struct Scan {
  std::string_view source;
  std::size_t at = 0;
  std::string code;  // without comments and blanks, a mark for every literal
  std::vector<std::string> literals;

  bool here(std::string_view text) const { return source.substr(at).starts_with(text); }

  void skipTo(std::string_view end) {
    const std::size_t found = source.find(end, at);
    at = found == std::string_view::npos ? source.size() : found + end.size();
  }

  void add(std::string text) {
    if (!code.empty() && code.back() == literalMark) {
      literals.back() += text;
      return;
    }
    code += literalMark;
    literals.push_back(std::move(text));
  }

  std::string quoted(char quote) {
    std::string text;
    for (++at; at < source.size() && source[at] != quote; ++at) {
      if (source[at] == '\\') {
        ++at;
        text += source[at] == 'n' ? '\n' : source[at];
      } else {
        text += source[at];
      }
    }
    ++at;
    return text;
  }

  std::string raw() {
    const std::size_t open = source.find('(', at);
    const std::string end = ")" + std::string(source.substr(at + 2, open - at - 2)) + "\"";
    at = open + 1;
    const std::size_t start = at;
    skipTo(end);
    return std::string(source.substr(start, at - start - end.size()));
  }

  void step() {
    const bool isInWord = at > 0 && (std::isalnum(static_cast<unsigned char>(source[at - 1])) != 0);
    if (here("//")) {
      skipTo("\n");
    } else if (here("/*")) {
      skipTo("*/");
    } else if (here("R\"")) {
      add(raw());
    } else if (source[at] == '"') {
      add(quoted('"'));
    } else if (source[at] == '\'' && !isInWord) {
      quoted('\'');
      code += "''";
    } else {
      if (std::isspace(static_cast<unsigned char>(source[at])) == 0) code += source[at];
      ++at;
    }
  }
};

std::string contentOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  std::ostringstream content;
  content << stream.rdbuf();
  return content.str();
}

}  // namespace

std::vector<SourceLiteral> literalsOf(std::string_view source) {
  Scan scan{source, 0, {}, {}};
  while (scan.at < source.size()) scan.step();
  std::vector<SourceLiteral> literals;
  std::size_t mark = 0;
  for (std::string& text : scan.literals) {
    mark = scan.code.find(literalMark, mark);
    const std::size_t start = mark > codeKept ? mark - codeKept : 0;
    literals.push_back({std::move(text), scan.code.substr(start, mark - start), scan.code.substr(mark + 1, codeKept)});
    ++mark;
  }
  return literals;
}

std::vector<SourceLiteral> sourceLiterals(const std::vector<std::string>& folders) {
  using Walk = std::filesystem::recursive_directory_iterator;
  std::vector<SourceLiteral> all;
  for (const std::string& folder : folders) {
    const std::filesystem::path root = std::filesystem::path(SOURCE_FOLDER) / folder;
    for (const auto& entry : Walk(root, std::filesystem::directory_options::follow_directory_symlink)) {
      const std::string extension = entry.path().extension().string();
      if (extension != ".cpp" && extension != ".h") continue;
      for (SourceLiteral& literal : literalsOf(contentOf(entry.path()))) all.push_back(std::move(literal));
    }
  }
  return all;
}

}  // namespace workbench::text
