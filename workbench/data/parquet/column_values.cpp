#include "workbench/data/parquet/column_values.h"

#include <algorithm>
#include <cstring>
#include <type_traits>

#include "workbench/data/cells/row_presence.h"
#include "workbench/text/utf8.h"

namespace workbench::data {
namespace {

constexpr std::size_t longestInlined = 12;

// Requires: twelve bytes can be read from there, whatever the length. Lengths being what they are, a branch would be
// guessed wrongly time and again: the first four bytes stand in the same place in either way to hold a text.
duckdb_string_t textAt(const char* bytes, std::uint32_t length) {
  static_assert(sizeof(duckdb_string_t) == 16 && sizeof(char*) == 8);
  std::uint64_t rest = 0;
  std::memcpy(&rest, bytes + 4, sizeof rest);
  const auto pointer = reinterpret_cast<std::uint64_t>(bytes);
  const std::uint64_t last = length <= longestInlined ? rest : pointer;
  duckdb_string_t text;
  char* const to = reinterpret_cast<char*>(&text);
  std::memcpy(to, &length, sizeof length);
  std::memcpy(to + 4, bytes, 4);
  std::memcpy(to + 8, &last, sizeof last);
  return text;
}

}  // namespace

ColumnValues::ColumnValues(int descriptor, const ParquetColumn& column, const ValueForm& form, KeptPages& kept,
                           bool isFirstLook)
    : pages_(descriptor, kept, isFirstLook, form.handedOut == HandedOut::text),
      form_(form),
      fixedLength_(column.fixedLength),
      mayBeMissing_(column.mayBeMissing) {}

void ColumnValues::begin(const ColumnPart& part) {
  pages_.begin(part, mayBeMissing_);
  dictionaryValues_ = 0;
  left_ = 0;
  isDamaged_ = false;
}

std::size_t ColumnValues::ready() {
  while (left_ == 0 && !isDamaged_) isDamaged_ = !openPage();
  return isDamaged_ ? 0 : left_;
}

bool ColumnValues::openPage() {
  const std::optional<Page> page = pages_.next();
  if (!page) return false;
  if (page->isDictionary) return openDictionary(*page);
  left_ = page->values;
  levels_ = RunReader(page->levels, 1);
  at_ = page->content.data();
  end_ = at_ + page->content.size();
  bit_ = 0;
  isOfDictionary_ =
      page->encoding == ParquetEncoding::plainDictionary || page->encoding == ParquetEncoding::runsOfDictionary;
  isInRuns_ = page->encoding == ParquetEncoding::runs && form_.stored == PhysicalType::boolean;
  if (isOfDictionary_) {
    constexpr int widest = 32;
    // A page without a value that is there may lack all of this.
    const int width = page->content.empty() ? 0 : static_cast<unsigned char>(*at_);
    indices_ = RunReader(page->content.substr(page->content.empty() ? 0 : 1), width);
    return width <= widest;
  }
  if (isInRuns_) {
    constexpr std::size_t lengthBytes = 4;
    const bool isThere = page->content.size() >= lengthBytes;
    indices_ = RunReader(page->content.substr(isThere ? lengthBytes : page->content.size()), 1);
    return isThere || left_ == 0;
  }
  isAscii_ = page->isAscii;
  return page->encoding == ParquetEncoding::plain;
}

bool ColumnValues::openDictionary(const Page& page) {
  const bool isPlain = page.encoding == ParquetEncoding::plain || page.encoding == ParquetEncoding::plainDictionary;
  // Every value takes a byte at least but for truths, of which no dictionary is made.
  if (!isPlain || form_.stored == PhysicalType::boolean || page.values > page.content.size()) return false;
  at_ = page.content.data();
  end_ = at_ + page.content.size();
  isAscii_ = page.isAscii;
  dictionaryValues_ = page.values;
  if (!readPlain(page.values, dictionary_.reserve(page.values * valueBytes(), 0))) return false;
  pages_.exchange(dictionaryBytes_);  // texts lie there
  return true;
}

bool ColumnValues::read(std::size_t count) {
  const std::size_t there = readPresent(count);
  if (there > count) return false;
  void* const to = there == count ? values_.data() : there_.data();
  if (isOfDictionary_ ? !readFromDictionary(there, to) : !readPlain(there, to)) return false;
  if (there != count) spread(count);
  left_ -= count;
  return true;
}

std::size_t ColumnValues::readPresent(std::size_t count) {
  areAllPresent_ = true;
  if (!mayBeMissing_) return count;
  present_.fill(0);
  const std::int64_t there = levels_.readBits(present_.data(), 0, count);
  if (there < 0) return count + 1;
  areAllPresent_ = static_cast<std::size_t>(there) == count;
  return static_cast<std::size_t>(there);
}

bool ColumnValues::readFromDictionary(std::size_t count, void* to) {
  if (!indices_.read(chosen_.data(), count)) return false;
  std::uint32_t highest = 0;
  for (std::size_t index = 0; index < count; ++index) highest = std::max(highest, chosen_[index]);
  if (count != 0 && highest >= dictionaryValues_) return false;
  const auto gather = [&]<class Value>(Value* values) {
    const auto* const from = reinterpret_cast<const Value*>(dictionary_.data());
    for (std::size_t index = 0; index < count; ++index) values[index] = from[chosen_[index]];
  };
  switch (form_.handedOut) {
    case HandedOut::int32:
      gather(static_cast<std::int32_t*>(to));
      break;
    case HandedOut::int64:
      gather(static_cast<std::int64_t*>(to));
      break;
    case HandedOut::real:
      gather(static_cast<double*>(to));
      break;
    case HandedOut::text:
      gather(static_cast<duckdb_string_t*>(to));
      break;
  }
  return true;
}

bool ColumnValues::readPlain(std::size_t count, void* to) {
  auto* const wholes = static_cast<std::int64_t*>(to);
  switch (form_.stored) {
    case PhysicalType::boolean:
      return readTruths(count, static_cast<std::int32_t*>(to));
    case PhysicalType::int32:
      if (form_.isUnsigned) return readNumbers<std::uint32_t>(count, wholes);
      return form_.handedOut == HandedOut::int32 ? readNumbers<std::int32_t>(count, static_cast<std::int32_t*>(to))
                                                 : readNumbers<std::int32_t>(count, wholes);
    case PhysicalType::int64:
      return readNumbers<std::int64_t>(count, wholes);
    case PhysicalType::real32:
      return readNumbers<float>(count, static_cast<double*>(to));
    case PhysicalType::real64:
      return readNumbers<double>(count, static_cast<double*>(to));
    case PhysicalType::fixedBytes:
      return readFixed(count, wholes);
    case PhysicalType::bytes:
      return readTexts(count, static_cast<duckdb_string_t*>(to));
    case PhysicalType::int96:
      break;
  }
  return false;
}

template <class Stored, class Number>
bool ColumnValues::readNumbers(std::size_t count, Number* to) {
  if (count > static_cast<std::size_t>(end_ - at_) / sizeof(Stored)) return false;
  if constexpr (std::is_same_v<Stored, Number>) {
    std::memcpy(to, at_, count * sizeof(Stored));
  } else {
    for (std::size_t index = 0; index < count; ++index) {
      Stored value;
      std::memcpy(&value, at_ + index * sizeof(Stored), sizeof value);
      to[index] = static_cast<Number>(value);
    }
  }
  at_ += count * sizeof(Stored);
  return finished(to, count);
}

// Whole numbers held against what their type allows, and in the unit that is handed out.
template <class Number>
bool ColumnValues::finished(Number* numbers, std::size_t count) const {
  if constexpr (std::is_integral_v<Number>) {
    if (form_.isLimited()) {
      bool isWithin = true;
      for (std::size_t index = 0; index < count; ++index)
        isWithin = isWithin & (numbers[index] >= form_.lowest) & (numbers[index] <= form_.highest);
      if (!isWithin) return false;
    }
    if (form_.multiplier != 1) {
      for (std::size_t index = 0; index < count; ++index)
        numbers[index] = static_cast<Number>(numbers[index] * form_.multiplier);
    }
  }
  return true;
}

bool ColumnValues::readTruths(std::size_t count, std::int32_t* to) {
  if (isInRuns_) {
    if (!indices_.read(chosen_.data(), count)) return false;
    std::copy_n(chosen_.data(), count, to);
    return true;
  }
  if (count > static_cast<std::size_t>(end_ - at_) * 8 - bit_) return false;
  for (std::size_t index = 0; index < count; ++index, ++bit_) to[index] = at_[bit_ / 8] >> (bit_ % 8) & 1;
  return true;
}

// Whole numbers with a sign, the highest byte first.
bool ColumnValues::readFixed(std::size_t count, std::int64_t* to) {
  if (count > static_cast<std::size_t>(end_ - at_) / fixedLength_) return false;
  for (std::size_t index = 0; index < count; ++index) {
    std::uint64_t number = static_cast<signed char>(*at_) < 0 ? ~std::uint64_t{0} : 0;
    for (std::size_t byte = 0; byte < fixedLength_; ++byte) number = number << 8 | static_cast<unsigned char>(*at_++);
    to[index] = static_cast<std::int64_t>(number);
  }
  return finished(to, count);
}

bool ColumnValues::readTexts(std::size_t count, duckdb_string_t* to) {
  const char* at = at_;
  for (std::size_t index = 0; index < count; ++index) {
    std::uint32_t length = 0;
    const auto inPage = static_cast<std::size_t>(end_ - at);
    if (inPage < sizeof length) return false;
    std::memcpy(&length, at, sizeof length);
    at += sizeof length;
    if (length > inPage - sizeof length) return false;
    if (!isAscii_ && !text::isUtf8({at, length})) return false;
    to[index] = textAt(at, length);
    at += length;
  }
  at_ = at;
  return true;
}

std::size_t ColumnValues::valueBytes() const {
  switch (form_.handedOut) {
    case HandedOut::int32:
      return sizeof(std::int32_t);
    case HandedOut::int64:
    case HandedOut::real:
      return sizeof(std::int64_t);
    case HandedOut::text:
      break;
  }
  return sizeof(duckdb_string_t);
}

// Lays the values that are there into their rows.
void ColumnValues::spread(std::size_t count) {
  const std::size_t bytes = valueBytes();
  const char* from = there_.data();
  RowPresence{present_.data()}.eachStretch(0, count, [&](std::size_t first, std::size_t rows, bool areThere) {
    if (!areThere) return;
    std::memcpy(values_.data() + first * bytes, from, rows * bytes);
    from += rows * bytes;
  });
}

}  // namespace workbench::data
