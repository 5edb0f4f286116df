#include "workbench/output/xlsx_writer.h"

#include <fmt/format.h>

#include <map>
#include <vector>

#include "workbench/output/message_text.h"
#include "workbench/output/phrase.h"
#include "workbench/output/sentences.h"
#include "workbench/output/shown_results.h"
#include "workbench/output/xlsx_sheet.h"
#include "workbench/output/xlsx_sheet_names.h"
#include "workbench/output/xlsx_workbook.h"

namespace workbench::output {
namespace {

constexpr double overviewWidth = 100;

std::optional<std::int64_t> givenMoment(const TextOptions& options) {
  return options.moment && options.moment->isGiven ? std::optional(options.moment->seconds) : std::nullopt;
}

class WorkbookWriter {
 public:
  WorkbookWriter(const TextOptions& options, const XlsxLimits& limits)
      : wording_(options.wording),
        limits_(limits),
        workbook_(givenMoment(options), wording_),
        names_(wording_.resolve(sentences::table)) {}

  Outcome<Done> write(std::ostream& out, const std::vector<ShownCommand>& commands) {
    startOverview();
    for (const ShownCommand& shown : commands) {
      if (commands.size() > 1) writeLine(shown.command->name, XlsxLook::heading);
      writeSentences(shown);
      writeTables(shown);
      ++row_;
    }
    if (commands.empty()) writeLine(wording_.resolve(sentences::nothingToShow), XlsxLook::plain);
    for (const XlsxRemark remark : XlsxRemarks(remarks_)) {
      writeLine(remarkSentence(remark, limits_, wording_), XlsxLook::note);
    }
    return workbook_.finish(out);
  }

 private:
  void startOverview() {
    const std::string title = wording_.resolve(sentences::overview);
    overview_ = workbook_.addSheet(names_.nameFor(title));
    if (overview_ == nullptr) return;
    workbook_.note(xlsx().worksheet_set_column(overview_, 0, 0, overviewWidth, nullptr));
    xlsx().worksheet_fit_to_pages(overview_, 1, 0);
    writeLine(title, XlsxLook::title);
    ++row_;
  }

  void writeSentences(const ShownCommand& shown) {
    if (shown.answer != nullptr) writeLine(shownAnswer(*shown.answer, wording_), XlsxLook::heading);
    for (const Item* item : shown.items) {
      if (const auto* message = std::get_if<Message>(item)) {
        writeLine(fmt::format("{}: {}", messageLabel(*message, wording_), textOf(message->text)), XlsxLook::plain);
      } else if (const auto* note = std::get_if<Note>(item)) {
        writeLine(noteSentence(*note, wording_, xlsxStyle), XlsxLook::plain);
      }
    }
  }

  std::string textOf(const Text& text) const { return shown(text, wording_, xlsxStyle); }

  // A sheet for each grid, and a link to it.
  void writeTables(const ShownCommand& shown) {
    bool isFirst = true;
    for (const Item* item : shown.items) {
      const Table* const table = tableOf(*item);
      if (table == nullptr) continue;
      if (isFirst) writeLine(wording_.resolve(sentences::tables), XlsxLook::heading);
      isFirst = false;
      for (const TableLayout& layout : layoutsOf(*table, wording_, xlsxStyle)) writeGrid(layout);
    }
  }

  void writeGrid(const TableLayout& layout) {
    const std::string name = names_.nameFor(layout.title);
    std::string label = layout.title;
    for (const std::string& layer : layout.layers) label += ", " + layer;
    if (const int times = ++linked_[label]; times > 1) label += fmt::format(" ({})", times);
    writeLink(label, name);
    if (lxw_worksheet* const sheet = workbook_.addSheet(name)) {
      drawSheet(workbook_, sheet, layout, wording_, limits_);
    }
  }

  void writeLine(const std::string& text, XlsxLook look) {
    if (overview_ == nullptr || isFull()) return;
    const std::string shown = xlsxText(text, limits_, remarks_);
    workbook_.note(xlsx().worksheet_write_string(overview_, row_++, 0, shown.c_str(), workbook_.format(look)));
  }

  // Requires: the name has no apostrophe, which would end it within the link.
  void writeLink(const std::string& label, const std::string& sheetName) {
    if (overview_ == nullptr || isFull()) return;
    const std::string target = fmt::format("internal:'{}'!A1", sheetName);
    const std::string shown = xlsxText(label, limits_, remarks_);
    workbook_.note(xlsx().worksheet_write_url_opt(overview_, row_++, 0, target.c_str(),
                                                  workbook_.format(XlsxLook::link), shown.c_str(), nullptr));
  }

  bool isFull() const { return row_ >= static_cast<lxw_row_t>(limits_.rows); }

  const text::Wording& wording_;
  const XlsxLimits& limits_;
  XlsxWorkbook workbook_;
  XlsxSheetNames names_;
  lxw_worksheet* overview_ = nullptr;
  lxw_row_t row_ = 0;                  // of the overview, the next one
  std::map<std::string, int> linked_;  // how often a table of a heading was
  XlsxRemarks remarks_;                // of the overview
};

}  // namespace

Outcome<Done> writeXlsx(std::ostream& out, const Document& document, const TextOptions& options) {
  return writeXlsx(out, document, options, XlsxLimits{});
}

Outcome<Done> writeXlsx(std::ostream& out, const Document& document, const TextOptions& options,
                        const XlsxLimits& limits) {
  return WorkbookWriter(options, limits).write(out, shownCommands(document, options.onlyTable));
}

}  // namespace workbench::output
