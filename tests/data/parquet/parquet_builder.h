// A Parquet file of one column, put together page by page: what writers do that are not at hand, and what none should.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "tests/data/parquet/run_writer.h"
#include "tests/data/parquet/thrift_writer.h"

namespace workbench::data {

template <class Number>
std::string plain(const std::vector<Number>& numbers) {
  std::string bytes(numbers.size() * sizeof(Number), '\0');
  if (!numbers.empty()) std::memcpy(bytes.data(), numbers.data(), bytes.size());
  return bytes;
}

inline std::string plainTexts(const std::vector<std::string>& texts) {
  std::string bytes;
  for (const std::string& text : texts) bytes += plain(std::vector{static_cast<std::uint32_t>(text.size())}) + text;
  return bytes;
}

inline std::string withLength(const std::string& bytes) {
  return plain(std::vector{static_cast<std::uint32_t>(bytes.size())}) + bytes;
}

struct BuiltPage {
  std::int64_t values = 0;
  std::string content;  // levels among it
  std::int64_t encoding = 0;
  std::int64_t type = 0;        // 2: a dictionary; 3: of version 2
  std::int64_t levelBytes = 0;  // of version 2
  bool saysThatItIsPacked = true;
  std::int64_t bytes = -1;  // said to be unpacked; less than zero: as many as there are

  std::string built() const {
    const auto length = static_cast<std::int64_t>(content.size());
    ThriftWriter header;
    header.whole(1, type).whole(2, bytes < 0 ? length : bytes).whole(3, length);
    if (type == 0) header.fields(5, ThriftWriter().whole(1, values).whole(2, encoding).whole(3, 3).whole(4, 3).ended());
    if (type == 2) header.fields(7, ThriftWriter().whole(1, values).whole(2, encoding).ended());
    if (type == 3) {
      header.fields(8, ThriftWriter()
                           .whole(1, values)
                           .whole(2, 0)
                           .whole(3, values)
                           .whole(4, encoding)
                           .whole(5, levelBytes)
                           .whole(6, 0)
                           .truth(7, saysThatItIsPacked)
                           .ended());
    }
    return header.ended() + content;
  }
};

struct BuiltColumn {
  std::int64_t physical = 1;
  std::int64_t length = 0;      // of fixed bytes
  std::int64_t repetition = 0;  // 1: values may be missing
  std::int64_t converted = -1;
  std::int64_t scale = 0;
  std::int64_t digits = 0;
  std::string logical{};  // an ended union
  std::int64_t codec = 0;
  std::vector<std::int64_t> encodings{0, 2, 3, 8};
};

// With so many rows in one group.
inline std::string builtParquet(const BuiltColumn& column, const std::vector<BuiltPage>& pages, std::int64_t rows) {
  std::string file = "PAR1";
  const auto begin = static_cast<std::int64_t>(file.size());
  std::int64_t firstValues = -1;
  for (const BuiltPage& page : pages) {
    if (page.type != 2 && firstValues < 0) firstValues = static_cast<std::int64_t>(file.size());
    file += page.built();
  }
  const auto bytes = static_cast<std::int64_t>(file.size()) - begin;
  ThriftWriter element;
  element.whole(1, column.physical);
  if (column.length != 0) element.whole(2, column.length);
  element.whole(3, column.repetition).text(4, "x");
  if (column.converted >= 0) element.whole(6, column.converted);
  if (column.digits != 0) element.whole(7, column.scale).whole(8, column.digits);
  if (!column.logical.empty()) element.fields(10, column.logical);
  ThriftWriter metadata;
  metadata.whole(1, column.physical).wholes(2, column.encodings).raw(3, 9, std::string("\x18\x01x", 3));
  metadata.whole(4, column.codec).longWhole(5, rows).longWhole(6, bytes).longWhole(7, bytes);
  metadata.longWhole(9, firstValues);
  if (firstValues != begin) metadata.longWhole(11, begin);
  const std::string part = ThriftWriter().longWhole(2, begin).fields(3, metadata.ended()).ended();
  const std::string group = ThriftWriter().list(1, {part}).longWhole(2, bytes).longWhole(3, rows).ended();
  const std::string footer = ThriftWriter()
                                 .whole(1, 1)
                                 .list(2, {ThriftWriter().text(4, "row").whole(5, 1).ended(), element.ended()})
                                 .longWhole(3, rows)
                                 .list(4, {group})
                                 .ended();
  return file + footer + plain(std::vector{static_cast<std::uint32_t>(footer.size())}) + "PAR1";
}

}  // namespace workbench::data
