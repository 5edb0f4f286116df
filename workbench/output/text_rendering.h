// What people see of a text of the document, in one language.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/output/document.h"
#include "workbench/output/value_format.h"
#include "workbench/text/wording.h"

namespace workbench::output {

struct TextStyle {
  NumberStyle numbers = NumberStyle::asFormatted;
  // Line breaks in texts that came from data are shown as signs, so that only those of patterns and of wording break a
  // line.
  bool markDataLineBreaks = false;
  // Of a longer list so many elements are shown, and how many more there are. 0: all are.
  std::size_t longestList = 0;
};

// TextShower resolves texts that stand side by side: the items of one composite, the categories of one group. Values
// among them, however deep, that differ but would read alike in their print formats are shown in full.
//
// Requires: the texts and the wording outlive it.
class TextShower {
 public:
  TextShower(const std::vector<const Text*>& sideBySide, const text::Wording& wording, TextStyle style = {});

  // What people see of one of these texts, or of any item within them.
  std::string operator()(const Text& text) const;

 private:
  std::string shownText(const StringText& text) const;
  std::string shownText(const NumberText& text) const;
  std::string shownText(const VariableText& text) const;
  std::string shownText(const ValueText& text) const;
  std::string shownText(const CompositeText& text) const;
  std::string shownText(const ListText& text) const;
  std::vector<std::string> elementsOf(const ListText& list) const;
  std::string fromData(std::string text) const;

  const text::Wording& wording_;
  TextStyle style_;
  std::set<const ValueText*> inFull_;  // shown in full, as their formats do
  std::set<const ValueText*> exact_;   // shown as plain numbers, since even that reads alike
};

// A single text, or several that stand side by side.
std::string shown(const Text& text, const text::Wording& wording, TextStyle style = {});
std::vector<std::string> shownTogether(const std::vector<const Text*>& texts, const text::Wording& wording,
                                       TextStyle style = {});

// The wording of a sentence of our own, with its items, which stand as they are, in the places of ^1 to ^9.
std::string shownSentence(std::string_view pattern, std::vector<std::string> items, const text::Wording& wording);

}  // namespace workbench::output
