// XlsxWorkbook: a workbook that is being written, by the library libxlsxwriter.
//
// The library writes into files only: the finished workbook goes into memory, from where it is copied to a stream; what
// it writes meanwhile goes into nameless files in the folder that TMPDIR names, else in /tmp. The bytes depend on what
// is written and on the date alone. The library's errors are collected; finish() tells the first.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <map>
#include <optional>
#include <string>

#include "workbench/output/xlsx_library.h"
#include "workbench/runtime/outcome.h"
#include "workbench/text/wording.h"

namespace workbench::output {

// What a cell looks like beside its number format.
enum class XlsxLook { plain, title, heading, columnHeader, headerSpace, rowHeader, body, note, link };

class XlsxWorkbook {
 public:
  // The date is what the workbook says of its making, in seconds since 1970; without one it is 1980-01-01, the first
  // day that a ZIP archive, which a workbook is, can name.
  XlsxWorkbook(std::optional<std::int64_t> date, const text::Wording& wording);
  XlsxWorkbook(const XlsxWorkbook&) = delete;
  XlsxWorkbook& operator=(const XlsxWorkbook&) = delete;
  ~XlsxWorkbook();

  // Null when the workbook has failed; cells are then written nowhere.
  lxw_worksheet* addSheet(const std::string& name);
  // Owned by the workbook.
  lxw_format* format(XlsxLook look, const std::string& numberFormat = {});
  // Remembers an error of the library.
  void note(lxw_error error);

  // Completes the workbook and copies it. Nothing may be written afterwards.
  Outcome<Done> finish(std::ostream& out);

 private:
  Problem problem(const std::string& reason) const;
  bool copyTo(std::ostream& out) const;

  const text::Wording& wording_;
  std::string folder_;   // of the files that the library writes meanwhile
  int descriptor_ = -1;  // of the finished workbook, in memory
  lxw_workbook* workbook_ = nullptr;
  std::map<std::pair<XlsxLook, std::string>, lxw_format*> formats_;
  std::optional<Problem> error_;
};

}  // namespace workbench::output
