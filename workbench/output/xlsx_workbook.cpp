#include "workbench/output/xlsx_workbook.h"

#include <fmt/format.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <ostream>
#include <utility>

#include "workbench/output/sentences.h"
#include "workbench/output/text_rendering.h"

namespace workbench::output {
namespace {

constexpr lxw_color_t headerColor = 0xE7ECF2;
constexpr lxw_color_t noteColor = 0x555555;
constexpr lxw_color_t ruleColor = 0xA0A8B0;
constexpr double titleSize = 14;

std::string temporaryFolder() {
  const char* const named = std::getenv("TMPDIR");
  return named != nullptr && *named != '\0' ? named : "/tmp";
}

time_t creationTime(std::optional<std::int64_t> date) {
  constexpr std::int64_t firstOfZip = 315532800;    // 1980-01-01T00:00:00Z
  constexpr std::int64_t lastOfAll = 253402300799;  // 9999-12-31T23:59:59Z
  // The library takes 0 for the present.
  return std::clamp<std::int64_t>(date.value_or(firstOfZip), 1, lastOfAll);
}

void makeHeader(lxw_format* format) {
  xlsx().format_set_bold(format);
  xlsx().format_set_text_wrap(format);
  xlsx().format_set_bg_color(format, headerColor);
  xlsx().format_set_border(format, LXW_BORDER_THIN);
  xlsx().format_set_border_color(format, ruleColor);
}

void apply(lxw_format* format, XlsxLook look) {
  switch (look) {
    case XlsxLook::title:
      xlsx().format_set_bold(format);
      xlsx().format_set_font_size(format, titleSize);
      break;
    case XlsxLook::heading:
      xlsx().format_set_bold(format);
      break;
    case XlsxLook::columnHeader:
      makeHeader(format);
      xlsx().format_set_align(format, LXW_ALIGN_CENTER);
      xlsx().format_set_align(format, LXW_ALIGN_VERTICAL_BOTTOM);
      break;
    case XlsxLook::headerSpace:
      xlsx().format_set_bg_color(format, headerColor);
      xlsx().format_set_left(format, LXW_BORDER_THIN);
      xlsx().format_set_left_color(format, ruleColor);
      xlsx().format_set_right(format, LXW_BORDER_THIN);
      xlsx().format_set_right_color(format, ruleColor);
      break;
    case XlsxLook::rowHeader:
      makeHeader(format);
      xlsx().format_set_align(format, LXW_ALIGN_LEFT);
      xlsx().format_set_align(format, LXW_ALIGN_VERTICAL_TOP);
      break;
    case XlsxLook::body:
      xlsx().format_set_text_wrap(format);
      xlsx().format_set_align(format, LXW_ALIGN_VERTICAL_TOP);
      xlsx().format_set_border(format, LXW_BORDER_THIN);
      xlsx().format_set_border_color(format, ruleColor);
      break;
    case XlsxLook::note:
      xlsx().format_set_font_color(format, noteColor);
      break;
    case XlsxLook::link:
      xlsx().format_set_hyperlink(format);
      xlsx().format_set_font_color(format, LXW_COLOR_BLUE);
      xlsx().format_set_underline(format, LXW_UNDERLINE_SINGLE);
      break;
    case XlsxLook::plain:
      xlsx().format_set_text_wrap(format);
      xlsx().format_set_align(format, LXW_ALIGN_VERTICAL_TOP);
      break;
  }
}

}  // namespace

XlsxWorkbook::XlsxWorkbook(std::optional<std::int64_t> date, const text::Wording& wording)
    : wording_(wording), folder_(temporaryFolder()), descriptor_(memfd_create("workbook", MFD_CLOEXEC)) {
  if (const Outcome<const XlsxLibrary*> library = xlsxLibrary(); !library) {
    error_ = library.problem();
    return;
  }
  // The library would take another folder where it cannot use this one.
  if (descriptor_ < 0 || ::access(folder_.c_str(), W_OK | X_OK) != 0) {
    error_ = problem(std::strerror(errno));
    return;
  }
  lxw_workbook_options options{};
  options.tmpdir = folder_.data();
  workbook_ = xlsx().workbook_new_opt(fmt::format("/proc/self/fd/{}", descriptor_).c_str(), &options);
  if (workbook_ == nullptr) {
    error_ = problem(std::strerror(ENOMEM));
    return;
  }
  lxw_doc_properties properties{};
  properties.created = creationTime(date);
  note(xlsx().workbook_set_properties(workbook_, &properties));
}

XlsxWorkbook::~XlsxWorkbook() {
  if (workbook_ != nullptr) xlsx().lxw_workbook_free(workbook_);
  if (descriptor_ >= 0) ::close(descriptor_);
}

lxw_worksheet* XlsxWorkbook::addSheet(const std::string& name) {
  if (workbook_ == nullptr) return nullptr;
  note(xlsx().workbook_validate_sheet_name(workbook_, name.c_str()));
  if (error_) return nullptr;
  lxw_worksheet* const sheet = xlsx().workbook_add_worksheet(workbook_, name.c_str());
  if (sheet == nullptr) note(LXW_ERROR_MEMORY_MALLOC_FAILED);
  return sheet;
}

lxw_format* XlsxWorkbook::format(XlsxLook look, const std::string& numberFormat) {
  if (workbook_ == nullptr) return nullptr;
  lxw_format*& format = formats_[{look, numberFormat}];
  if (format != nullptr) return format;
  format = xlsx().workbook_add_format(workbook_);
  if (format == nullptr) {
    note(LXW_ERROR_MEMORY_MALLOC_FAILED);
    return nullptr;
  }
  apply(format, look);
  if (!numberFormat.empty()) xlsx().format_set_num_format(format, numberFormat.c_str());
  return format;
}

void XlsxWorkbook::note(lxw_error error) {
  if (error != LXW_NO_ERROR && !error_) error_ = problem(xlsx().lxw_strerror(error));
}

Outcome<Done> XlsxWorkbook::finish(std::ostream& out) {
  // Closing writes all of it, and frees the workbook also when it fails.
  if (workbook_ != nullptr) note(xlsx().workbook_close(std::exchange(workbook_, nullptr)));
  if (error_) return *error_;
  if (!copyTo(out)) return problem(std::strerror(errno));
  return Done{};
}

Problem XlsxWorkbook::problem(const std::string& reason) const {
  return {shownSentence(sentences::workbookFailed, {reason}, wording_), "",
          shownSentence(sentences::roomForWorkbook, {folder_}, wording_)};
}

// False when it cannot be read; a stream that fails tells by itself.
bool XlsxWorkbook::copyTo(std::ostream& out) const {
  std::array<char, 65536> bytes;
  for (off_t place = 0; out;) {
    const ssize_t taken = ::pread(descriptor_, bytes.data(), bytes.size(), place);
    if (taken < 0 && errno == EINTR) continue;
    if (taken < 0) return false;
    if (taken == 0) break;
    out.write(bytes.data(), taken);
    place += taken;
  }
  return true;
}

}  // namespace workbench::output
