// The procedure, its tables and their handles, as host/output.h declares them.
#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "host/messages.h"
#include "host/output.h"
#include "workbench/output/call_text.h"
#include "workbench/output/table_builder.h"
#include "workbench/output/text_access.h"
#include "workbench/output/text_state.h"
#include "workbench/output/value_variables.h"
#include "workbench/runtime/current_run.h"
#include "workbench/runtime/journal.h"
#include "workbench/text/wording.h"

using workbench::currentRun;
using workbench::journal;
using workbench::output::asArgument;
using workbench::output::Command;
using workbench::output::Table;
using workbench::output::TableBuilder;
using workbench::output::Text;
using workbench::output::textOf;
using workbench::text::sentence;

namespace bp {

// A table while a procedure fills it; lives as long as the procedure's BpPivotTable.
struct TableState {
  explicit TableState(Table& table) : builder(table) {}
  ~TableState() {
    for (const auto& [node, name] : names) journal().forget(&name);
  }

  // The journal's name of a dimension, group or category. Handles have no address of their own, so the names are kept
  // here.
  const std::string& nameOf(std::int32_t node, std::string_view type) {
    std::string& name = names[node];
    if (name.empty()) name = journal().created(&name, type);
    return name;
  }
  std::string name() const { return journal().nameOf(this, "BpPivotTable"); }

  TableBuilder builder;
  std::map<std::int32_t, std::string> names;
};

}  // namespace bp

namespace {

// The procedures that are open, the innermost last.
std::vector<const BpHeading*>& openHeadings() {
  static std::vector<const BpHeading*> headings;
  return headings;
}

Command& runningCommand() {
  if (currentRun().command == nullptr) throw ErrorText(sentence("Output was made while no command was running."));
  return *currentRun().command;
}

bp::TableState& opened(bp::TableState* table) {
  if (table == nullptr) throw ErrorText(sentence("A table was used after it had been moved elsewhere."));
  return *table;
}

std::uint64_t numberOf(const BpAnnotation& note) { return bp::TextAccess::of(note.text()).annotation; }

template <class... Arguments>
void logCall(const std::string& object, fmt::format_string<Arguments...> call, Arguments&&... arguments) {
  journal().line(object + "." + fmt::format(call, std::forward<Arguments>(arguments)...));
}

}  // namespace

BpProcedure::BpProcedure(std::string_view title, std::int32_t code) {
  Command& command = runningCommand();
  command.procedureTitle = std::string(title);
  command.procedureCode = code;
  openHeadings().push_back(this);
  if (!journal().isOn()) return;
  const std::string name = journal().created(this, "BpProcedure");
  journal().line(fmt::format("{} = BpProcedure({}, {})", name, workbench::Journal::quoted(title), code));
}

BpProcedure::~BpProcedure() {
  std::erase(openHeadings(), this);
  workbench::output::forgetValueVariables();
  if (journal().isOn()) journal().destroyed(this);
}

BpPivotTable BpHeading::PivotTable(const BpString& key, const BpString& defaultTitle, bool flag) {
  const std::vector<const BpHeading*>& headings = openHeadings();
  if (std::find(headings.begin(), headings.end(), this) == headings.end()) {
    throw ErrorText(
        sentence("The table ^1 cannot be opened: its heading is already closed.", {asArgument(textOf(key))}));
  }
  auto table = std::make_unique<Table>();
  table->title = textOf(key);
  table->defaultTitle = textOf(defaultTitle);
  table->flag = flag;
  auto state = std::make_unique<bp::TableState>(*table);
  runningCommand().items.emplace_back(std::move(table));
  if (journal().isOn()) {
    const std::string name = journal().created(state.get(), "BpPivotTable");
    journal().line(fmt::format("{} = {}.PivotTable({}, {}, {})", name, journal().nameOf(this, "BpProcedure"),
                               asArgument(textOf(key)), asArgument(textOf(defaultTitle)), flag));
  }
  return BpPivotTable(state.release());
}

BpPivotTable::BpPivotTable(BpPivotTable&& other) noexcept : table_(std::exchange(other.table_, nullptr)) {}

BpPivotTable::~BpPivotTable() {
  if (table_ == nullptr) return;
  if (journal().isOn()) journal().destroyed(table_);
  delete table_;
}

BpDimension BpPivotTable::Dimension(const BpCellText& title, BpSort sort) {
  bp::TableState& table = opened(table_);
  const Text& text = textOf(title);
  const std::int32_t node = table.builder.addDimension(text, sort);
  if (journal().isOn()) {
    journal().line(fmt::format("{} = {}.Dimension({}, {})", table.nameOf(node, "BpDimension"), table.name(),
                               asArgument(text), static_cast<int>(sort)));
  }
  return BpDimension(table, node);
}

void BpPivotTable::Caption(const BpCellText& text) {
  bp::TableState& table = opened(table_);
  if (journal().isOn()) logCall(table.name(), "Caption({})", asArgument(textOf(text)));
  table.builder.setCaption(textOf(text));
}

void BpPivotTable::MinDataColumnWidth(std::int32_t points) {
  bp::TableState& table = opened(table_);
  if (journal().isOn()) logCall(table.name(), "MinDataColumnWidth({})", points);
  table.builder.setMinDataColumnWidth(points);
}

void BpPivotTable::Destroy() {
  bp::TableState& table = opened(table_);
  if (journal().isOn()) logCall(table.name(), "Destroy()");
  table.builder.destroy();
}

void BpDimension::Position(BpPlace place, std::int32_t index, bool hideTitle, bool flag) {
  if (journal().isOn()) {
    logCall(table_->nameOf(node_, "BpDimension"), "Position({}, {}, {}, {})", static_cast<int>(place), index, hideTitle,
            flag);
  }
  table_->builder.position(node_, {static_cast<int>(place), index, {hideTitle, flag}});
}

BpCategory BpGroup::Category(const BpCellText& title) {
  const Text& text = textOf(title);
  const std::int32_t node = table_->builder.category(node_, text);
  if (journal().isOn()) {
    journal().line(fmt::format("{} = {}.Category({})", table_->nameOf(node, "BpCategory"),
                               table_->nameOf(node_, "BpGroup"), asArgument(text)));
  }
  return BpCategory(*table_, node);
}

BpGroup BpGroup::Group(const BpCellText& title, bool showTitle, BpSort sort) {
  const Text& text = textOf(title);
  const std::int32_t node = table_->builder.group(node_, text, showTitle, sort);
  if (journal().isOn()) {
    journal().line(fmt::format("{} = {}.Group({}, {}, {})", table_->nameOf(node, "BpGroup"),
                               table_->nameOf(node_, "BpGroup"), asArgument(text), showTitle, static_cast<int>(sort)));
  }
  return BpGroup(*table_, node);
}

void BpCategory::Cell(const BpCellText& content) {
  const Text& text = textOf(content);
  if (journal().isOn()) logCall(table_->nameOf(node_, "BpCategory"), "Cell({})", asArgument(text));
  table_->builder.writeCell(node_, text);
}

void BpCategory::CellNote(const BpAnnotation& note) {
  if (journal().isOn()) {
    logCall(table_->nameOf(node_, "BpCategory"), "CellNote({})", journal().nameOf(&note, "BpAnnotation"));
  }
  table_->builder.noteCell(node_, numberOf(note), textOf(note.text()));
}

void BpCategory::Note(const BpAnnotation& note) {
  if (journal().isOn()) {
    logCall(table_->nameOf(node_, "BpCategory"), "Note({})", journal().nameOf(&note, "BpAnnotation"));
  }
  table_->builder.noteCategory(node_, numberOf(note), textOf(note.text()));
}
