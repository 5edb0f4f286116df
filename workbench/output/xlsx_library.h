// XlsxLibrary: the functions of libxlsxwriter that the workbench calls, in a table.
//
// The library is loaded when the first workbook is made. It is looked for as the system finds libraries, and stays
// loaded.
#pragma once

#include <xlsxwriter.h>

#include "workbench/runtime/outcome.h"

namespace workbench::output {

#define WORKBENCH_XLSX_FUNCTIONS(ROW) \
  ROW(format_set_align)               \
  ROW(format_set_bg_color)            \
  ROW(format_set_bold)                \
  ROW(format_set_border)              \
  ROW(format_set_border_color)        \
  ROW(format_set_font_color)          \
  ROW(format_set_font_size)           \
  ROW(format_set_hyperlink)           \
  ROW(format_set_left)                \
  ROW(format_set_left_color)          \
  ROW(format_set_num_format)          \
  ROW(format_set_right)               \
  ROW(format_set_right_color)         \
  ROW(format_set_text_wrap)           \
  ROW(format_set_underline)           \
  ROW(lxw_strerror)                   \
  ROW(lxw_workbook_free)              \
  ROW(workbook_add_format)            \
  ROW(workbook_add_worksheet)         \
  ROW(workbook_close)                 \
  ROW(workbook_new_opt)               \
  ROW(workbook_set_properties)        \
  ROW(workbook_validate_sheet_name)   \
  ROW(worksheet_autofilter)           \
  ROW(worksheet_fit_to_pages)         \
  ROW(worksheet_freeze_panes)         \
  ROW(worksheet_merge_range)          \
  ROW(worksheet_repeat_columns)       \
  ROW(worksheet_repeat_rows)          \
  ROW(worksheet_set_column)           \
  ROW(worksheet_set_landscape)        \
  ROW(worksheet_set_row)              \
  ROW(worksheet_write_blank)          \
  ROW(worksheet_write_number)         \
  ROW(worksheet_write_string)         \
  ROW(worksheet_write_url_opt)

struct XlsxLibrary {
#define WORKBENCH_XLSX_MEMBER(function) decltype(&::function) function = nullptr;
  WORKBENCH_XLSX_FUNCTIONS(WORKBENCH_XLSX_MEMBER)
#undef WORKBENCH_XLSX_MEMBER
};

// The library, loaded at the first call.
Outcome<const XlsxLibrary*> xlsxLibrary();
// Requires: it could be loaded.
const XlsxLibrary& xlsx();

}  // namespace workbench::output
