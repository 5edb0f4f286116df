// The results document: all that the commands of a job issued, kept as it was passed.
//
// The functions of host/output.h and host/messages.h fill it; renderers read it; nothing else knows a renderer. Texts
// are kept as what they are (key and flag, number and format, variable, value), never as what people see: a renderer
// resolves them, with the wording of its language.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "host/data.h"
#include "host/messages.h"
#include "host/output.h"

namespace workbench::output {

struct Text;

// A key or sentence to be resolved, or a text as it stands.
struct StringText {
  std::string key;
  bool translate = false;
};

struct NumberText {
  double value = 0;
  BpFormat format = BpFormat::count;
};

struct VariableText {
  std::string name;
  std::optional<std::string> label;
  BpVariableShow show = BpVariableShow::nameAndLabel;
};

// What a value needs of its variable to be shown. Shared by all values of one variable.
struct ValueVariable {
  std::string name;
  FormatType format = FormatType::number;
  std::int32_t width = 8;
  std::int32_t decimals = 0;
};

struct ValueText {
  std::shared_ptr<const ValueVariable> variable;
  std::variant<double, std::string> value;
  std::optional<std::string> label;
  BpValueShow show = BpValueShow::inPrintFormat;
};

struct CompositeText {
  std::string pattern;
  bool translate = false;
  std::vector<Text> items;
};

// A sublist among a composite's items.
struct ListText {
  std::vector<Text> items;
};

struct Text {
  std::variant<StringText, NumberText, VariableText, ValueText, CompositeText, ListText> held;
};

struct Message {
  enum class Source { procedure, parser, host };

  Source source = Source::procedure;
  int show = 0;                        // BpErrorShow; of a numbered error the first code
  int level = 0;                       // BpErrorLevel; of a numbered error the second code
  std::optional<std::int64_t> number;  // of a numbered host error
  std::optional<int> line;             // of an error of the parser: its place in the job, from 1
  std::optional<int> column;           // counts characters
  Text text;
};

struct Note {
  int group = 0;
  Text texts[3];
};

// One node of a dimension: a group or a leaf category. Node 0 of a dimension is the dimension itself.
struct Category {
  Text title;
  bool isGroup = false;
  bool showTitle = false;              // of a group
  int sort = 0;                        // of a group
  std::vector<std::int32_t> children;  // nodes, in the order in which they were made
  std::vector<std::int32_t> notes;     // footnotes, of a leaf
};

struct Position {
  int place = 0;
  int index = 0;
  bool flags[2] = {false, false};
};

struct Dimension {
  Text title;
  int sort = 0;
  std::optional<Position> position;
  std::vector<Category> nodes;

  // The leaf nodes in the order shown.
  std::vector<std::int32_t> leaves() const;
  // Per node the leaf's position in that order; -1 for a group.
  std::vector<std::int32_t> leafPositions() const;
};

// A table can have millions of cells, most of them alike and empty: contents that are the same may be one object.
struct Cell {
  std::shared_ptr<const Text> content;  // never null
  std::vector<std::int32_t> notes;
};

// Invariant: no two cells have the same address.
struct Table {
  Text title;
  Text defaultTitle;
  bool flag = false;
  bool destroyed = false;
  std::optional<Text> caption;
  std::optional<int> minDataColumnWidth;
  std::vector<Dimension> dimensions;
  std::vector<Cell> cells;              // in the order in which they were first written
  std::vector<std::int32_t> addresses;  // of the cells, one after another: per dimension the leaf's node
  std::vector<Text> footnotes;

  // Where the cell of this index lies: per dimension the leaf's node.
  std::span<const std::int32_t> at(std::size_t cell) const {
    return std::span(addresses).subspan(cell * dimensions.size(), dimensions.size());
  }
};

enum class Verdict { same, different, trouble };

// A phrase of the workbench about numbers, in no language yet: the key of its wording, which is a message pattern, and
// the numbers in the places of {0}, {1}, ...
struct Phrase {
  std::string pattern;
  std::vector<double> numbers;
};

// What a command's results come to, in one sentence.
struct Answer {
  Verdict verdict = Verdict::same;
  std::vector<Phrase> clauses;  // at least one; semicolons join them
};

// Pictures of a command's results, as numbers: a renderer for people may draw them.

// How many of a whole fall on each of several things. Those that none falls on are not among the bars.
struct BarChart {
  struct Bar {
    Text label;
    double count = 0;
  };
  Phrase title;
  double whole = 0;
  std::vector<Bar> bars;  // the largest first
  std::size_t empty = 0;  // things without a bar
};

// Where along a sequence of cases something lies: how often in each of several stretches, which are of equal length but
// for a case.
struct StripChart {
  Phrase title;
  std::int64_t cases = 0;      // stretch i of n begins behind the first cases * i / n of them
  std::vector<double> counts;  // per stretch
  std::optional<Phrase> note;  // what has to be known of it
};

// Several wholes, each divided into the same parts.
struct PartsChart {
  struct Whole {
    Phrase label;
    std::vector<double> counts;  // per part
  };
  Phrase title;
  std::vector<Phrase> parts;
  std::vector<Whole> wholes;
};

using Chart = std::variant<PartsChart, BarChart, StripChart>;

// A table stands at the place at which it was opened.
using Item = std::variant<Message, Note, std::unique_ptr<Table>>;

struct Command {
  enum class Outcome { completed, refused, failed };

  std::string name;
  std::string syntax;  // as written, passwords hidden
  Outcome outcome = Outcome::completed;
  std::optional<std::string> procedureTitle;
  int procedureCode = 0;
  std::vector<Item> items;
  std::optional<Answer> answer;  // drawn from the items, as the charts are
  std::vector<Chart> charts;

  // Whether a table was opened, be it that it was destroyed afterwards.
  bool openedTable() const;
};

struct Document {
  std::vector<std::unique_ptr<Command>> commands;
  std::optional<Verdict> verdict;
};

// A message of the workbench itself among the diagnostics: a plain sentence, already in the user's language.
Message hostMessage(BpErrorLevel level, std::string sentence);
// An error of the command parser, at its place in the job.
Message parserMessage(std::string sentence, int line, int column);

}  // namespace workbench::output
