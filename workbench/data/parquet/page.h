// Page: some values of a column, as a Parquet file stores them, unpacked.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>

#include "workbench/data/parquet/parquet_layout.h"

namespace workbench::data {

struct Page {
  bool isDictionary = false;
  ParquetEncoding encoding = ParquetEncoding::plain;
  std::size_t values = 0;   // missing ones among them
  std::string_view levels;  // where values may be missing: runs of bits that tell which are there
  std::string_view content;
  bool isAscii = false;  // all of the content, where it holds texts
};

// Bytes that grow and are used again, for values of any type. What is not written of them takes no memory.
class PageBytes {
 public:
  static constexpr std::size_t readableBehind = 16;

  PageBytes() = default;
  PageBytes(PageBytes&& other) noexcept
      : bytes_(std::move(other.bytes_)), capacity_(std::exchange(other.capacity_, 0)) {}
  PageBytes& operator=(PageBytes&& other) noexcept {
    bytes_ = std::move(other.bytes_);
    capacity_ = std::exchange(other.capacity_, 0);
    return *this;
  }

  // Room for so many bytes and readableBehind more, with what the first `kept` held.
  char* reserve(std::size_t bytes, std::size_t kept);
  char* data() { return bytes_.get(); }
  std::size_t capacity() const { return capacity_; }

 private:
  std::shared_ptr<char> bytes_;
  std::size_t capacity_ = 0;
};

}  // namespace workbench::data
