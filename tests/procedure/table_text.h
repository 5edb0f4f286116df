// What a table holds, as short strings in which nothing that the procedure passed is lost.
//
// A text to be resolved stands as it was passed; a text as it stands in quotes; a count as 5, a percentage as 5%; a
// variable as <name>, a value as name:5 or name:"text"; a composite as pattern{item|item}, its pattern in quotes unless
// it is to be resolved; a sublist as [item|item].
#pragma once

#include <string>

#include "workbench/output/document.h"

namespace workbench::tests {

std::string exact(const output::Text& text);

// Every dimension on a line: its title, its sort value, its position, its categories; groups in brackets, with their
// two arguments behind the title: "CD_Cases 2 (1,1,true,false) [CD_Row true,2: CD_Active CD_Compare] <x>".
std::string shapeOf(const output::Table* table);

// Every cell on a line, in the order in which they were first written: "CD_Active|0 = 2".
std::string cellsOf(const output::Table* table);

// The caption; "none".
std::string captionOf(const output::Table* table);

}  // namespace workbench::tests
