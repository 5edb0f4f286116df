// What a run issued, written down as the comparison by hand writes it.
#pragma once

#include <string>

#include "workbench/output/document.h"

namespace workbench::tests::model {

std::string observedText(const output::Text& text);
std::string observedTable(const output::Table& table);

}  // namespace workbench::tests::model
