// PageReader: the pages of one column in one group of rows, unpacked, one after another.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

#include "workbench/data/parquet/kept_pages.h"
#include "workbench/data/parquet/page.h"
#include "workbench/data/parquet/parquet_layout.h"

namespace workbench::data {

class PageReader {
 public:
  // Takes pages from those that are kept; adds those that it unpacks if they are to be read once more. Both outlive it.
  PageReader(int descriptor, KeptPages& kept, bool isFirstLook, bool holdsTexts)
      : descriptor_(descriptor), kept_(kept), isFirstLook_(isFirstLook), holdsTexts_(holdsTexts) {}
  PageReader(const PageReader&) = delete;
  PageReader& operator=(const PageReader&) = delete;
  ~PageReader() { keepCurrent(); }

  // Begins with another part. What is read of its pages has to lie within it.
  void begin(const ColumnPart& part, bool mayBeMissing);
  // The next page that holds values or a dictionary; nothing when there is none that makes sense. Its bytes last until
  // the next one is read, and PageBytes::readableBehind bytes behind them can be read.
  std::optional<Page> next();
  // The bytes of the dictionary that was read last, for whoever needs them longer, in exchange for others.
  void exchange(PageBytes& bytes) { std::swap(bytes, content_); }

 private:
  struct Header;

  std::optional<Header> readHeader();
  std::optional<Page> unpacked(const Header& header);
  std::optional<Page> takeKept();
  void keepCurrent();
  bool parted(const Header& header, std::string_view bytes, Page& page) const;
  bool ensure(std::size_t bytes);
  std::int64_t position() const { return at_ - static_cast<std::int64_t>(window_.size()); }
  std::size_t left() const { return window_.size() + static_cast<std::size_t>(end_ - at_); }

  int descriptor_;
  KeptPages& kept_;
  bool isFirstLook_;
  bool holdsTexts_;
  ParquetCodec codec_ = ParquetCodec::none;
  bool mayBeMissing_ = false;
  std::int64_t at_ = 0;   // offset in the file behind the window
  std::int64_t end_ = 0;  // of the part
  PageBytes windowBytes_;
  std::string_view window_;  // bytes that were read and not used
  PageBytes content_;
  std::optional<Page> current_;  // that is to be kept when the next one is read
  std::int64_t currentBegin_ = 0;
};

}  // namespace workbench::data
