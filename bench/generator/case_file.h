// CaseFile: a text file of a header and one line per case, written in large pieces, in the order in which the lines
// come or, when it is to be shuffled, in any.
#pragma once

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "bench/generator/chance.h"
#include "bench/generator/plan.h"

namespace bench {

class CaseFile {
 public:
  // The file of that path begins with the header, a line.
  CaseFile(const std::filesystem::path& path, std::string_view header, Order order);

  // A line with its end.
  void append(std::string_view line);
  // Throws std::runtime_error when not everything could be written.
  void close(Chance& chance);

 private:
  void write();
  void writeShuffled(Chance& chance);

  std::filesystem::path path_;
  std::ofstream file_;
  Order order_;
  std::string buffer_;               // of a file that is shuffled all of its lines
  std::vector<std::size_t> starts_;  // where these begin
};

}  // namespace bench
