// What the host keeps behind a BpCellText.
#pragma once

#include <cstdint>
#include <utility>

#include "host/output.h"
#include "workbench/output/document.h"

namespace bp {

struct TextState {
  explicit TextState(workbench::output::Text held) : text(std::move(held)) {}

  workbench::output::Text text;
  bool isFinished = true;  // false only of a composite before Finish
  bool isSublistOpen = false;
  // Of an annotation's text: the annotation's number, never given twice in a process. The address of an annotation is
  // no identity: another one may be made there while the table still lives. 0: the text of no annotation.
  std::uint64_t annotation = 0;
};

struct TextAccess {
  static const TextState& of(const BpCellText& text) { return *text.state_; }
  static TextState& of(BpCellText& text) { return *text.state_; }
};

}  // namespace bp
