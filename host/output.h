// The host's output service: texts, and pivot tables under the heading of a procedure.
//
// A procedure opens one BpProcedure, opens pivot tables under it, and fills them through the handles that a table gives
// out: dimensions, groups and categories. Everything that is passed in is copied at the call; nothing is shown before
// the command has ended. A text that the host must resolve is a key or a sentence with its translate flag set; the host
// keeps the key to the letter beside what people see. An unknown key is shown as it is.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "host/runtime.h"

class VRIX_Variable;
namespace bp {
struct TextState;   // what a text holds; the host's own
struct TableState;  // what a table holds; the host's own
struct TextAccess;  // the host's way to a text's state
}  // namespace bp

// How a number is shown. Made by BpProcedure.
enum class BpFormat : int {
  count = 1,    // a whole number
  percent = 2,  // a percentage: 12.5 is shown as 12.5%
};

// How a variable is shown.
enum class BpVariableShow : int { name = 1, nameAndLabel = 2, labelElseName = 3 };

// How a value is shown.
enum class BpValueShow : int {
  // In the variable's print format; two different values side by side that would read alike are both shown in full.
  inPrintFormat = 0,
};

// The order of the categories of a dimension or group.
enum class BpSort : int { asMade = 2 };

// Where a dimension stands in its table.
enum class BpPlace : int { rows = 0, columns = 1, layers = 2 };

// Any text that a table, a message or a note can hold. A value: copying copies the text.
class HOST_API BpCellText {
 public:
  virtual ~BpCellText();

  // A copy of this text that the caller owns; what an annotation is made of.
  std::unique_ptr<BpCellText> Replicate() const;

 protected:
  explicit BpCellText(std::unique_ptr<bp::TextState> state);
  BpCellText(const BpCellText&);
  BpCellText& operator=(const BpCellText&) = delete;

  bp::TextState& state() { return *state_; }

 private:
  friend struct bp::TextAccess;
  std::unique_ptr<bp::TextState> state_;
};

// A key or sentence to be resolved (translate true), or a text to be shown as it stands (translate false).
class HOST_API BpString final : public BpCellText {
 public:
  BpString(std::string_view text, bool translate);
  ~BpString() override;
};

// A number. The system-missing value is shown as a point.
class HOST_API BpNumber final : public BpCellText {
 public:
  BpNumber(double value, BpFormat format);
  ~BpNumber() override;
};

// A variable by its name, its label, or both.
class HOST_API BpVariable final : public BpCellText {
 public:
  BpVariable(const VRIX_Variable& variable, BpVariableShow show);
  ~BpVariable() override;
};

// A value of a variable: a number, or a text whose trailing blanks are not shown.
class HOST_API BpDataValue final : public BpCellText {
 public:
  BpDataValue(const VRIX_Variable& variable, double number, BpValueShow show);
  BpDataValue(const VRIX_Variable& variable, std::string_view text, BpValueShow show);
  ~BpDataValue() override;
};

// Several texts under one pattern. "^n" stands for the n-th item; "[first:rest:]n" for the n-th item being a sublist,
// its first element shown by `first` (in which "%1" is the element), every further one by `rest` (in which "^1" is it).
// Requires: a sublist is closed before Finish, and Finish is called before the composite is used.
class HOST_API BpComposite final : public BpCellText {
 public:
  // The flag says whether the pattern is a key to be resolved.
  BpComposite(std::string_view pattern, bool translate);
  ~BpComposite() override;

  void Add(const BpCellText& item);  // to the open sublist, else as the next item
  void Sublist();                    // opens a sublist as the next item
  void EndSublist();
  void Finish();
};

// A footnote's text. One annotation attached in many places is one footnote.
class HOST_API BpAnnotation {
 public:
  explicit BpAnnotation(std::unique_ptr<BpCellText> text);
  BpAnnotation(const BpAnnotation&) = delete;
  BpAnnotation& operator=(const BpAnnotation&) = delete;
  ~BpAnnotation();

  const BpCellText& text() const { return *text_; }

 private:
  std::unique_ptr<BpCellText> text_;
};

// The handles below look at a table; they are cheap to copy and valid as long as the table lives.

// One leaf category of a dimension.
class HOST_API BpCategory {
 public:
  // Writes the cell that lies at this category and at the current category of every other dimension. A cell that is
  // written again is replaced. A dimension without a category cannot be addressed: that throws ErrorText.
  void Cell(const BpCellText& content);
  // Attaches a footnote to the cell that Cell would write; it stays when the cell is written again. Takes no ownership.
  void CellNote(const BpAnnotation& note);
  // Attaches a footnote to the category itself. Takes no ownership.
  void Note(const BpAnnotation& note);

 private:
  friend class BpGroup;
  BpCategory(bp::TableState& table, std::int32_t node) : table_(&table), node_(node) {}
  bp::TableState* table_;
  std::int32_t node_;
};

// A group of categories; a dimension is the outermost one.
class HOST_API BpGroup {
 public:
  // A category of this group, which becomes the dimension's current one. Asked for again with the same text (the same
  // kind, key, translate flag, variable and bits of the value) it is the same category.
  BpCategory Category(const BpCellText& title);
  // A group within this one; asked for again with the same text it is the same group.
  BpGroup Group(const BpCellText& title, bool showTitle, BpSort sort);

 protected:
  friend class BpPivotTable;
  BpGroup(bp::TableState& table, std::int32_t node) : table_(&table), node_(node) {}
  bp::TableState* table_;
  std::int32_t node_;
};

class HOST_API BpDimension final : public BpGroup {
 public:
  // Puts the dimension into a place, by index, then by time of making. The last call counts; without one: innermost in
  // the rows. The flag is for renderers: the rows are cases, told apart by the groups before all other columns.
  void Position(BpPlace place, std::int32_t index, bool hideTitle, bool flag);

 private:
  friend class BpPivotTable;
  using BpGroup::BpGroup;
};

// A pivot table. It is part of the output from the moment at which it was opened; it is finished when this object is
// destroyed, and taken out again by Destroy.
class HOST_API BpPivotTable {
 public:
  BpPivotTable(BpPivotTable&& other) noexcept;
  BpPivotTable(const BpPivotTable&) = delete;
  BpPivotTable& operator=(const BpPivotTable&) = delete;
  BpPivotTable& operator=(BpPivotTable&&) = delete;
  ~BpPivotTable();

  // Requires: no cell has been written; later that throws ErrorText.
  BpDimension Dimension(const BpCellText& title, BpSort sort);
  void Caption(const BpCellText& text);
  void MinDataColumnWidth(std::int32_t points);
  // Takes the table out of the output. The object stays until it goes out of scope, but is not used again.
  void Destroy();

 private:
  friend class BpHeading;
  explicit BpPivotTable(bp::TableState* table) : table_(table) {}
  bp::TableState* table_;  // the host's; null after a move
};

// Something in the output under which tables stand.
class HOST_API BpHeading {
 public:
  // Opens a table under this heading, from its key and its default title. Thrown to the caller as ErrorText when the
  // heading is already closed.
  BpPivotTable PivotTable(const BpString& key, const BpString& defaultTitle, bool flag);

 protected:
  BpHeading() = default;
  ~BpHeading() = default;
};

// The output of one run of a procedure. Made first and destroyed last.
class HOST_API BpProcedure final : public BpHeading {
 public:
  BpProcedure(std::string_view title, std::int32_t code);
  BpProcedure(const BpProcedure&) = delete;
  BpProcedure& operator=(const BpProcedure&) = delete;
  ~BpProcedure();

  static BpFormat Count() { return BpFormat::count; }
  static BpFormat Percent() { return BpFormat::percent; }
};
