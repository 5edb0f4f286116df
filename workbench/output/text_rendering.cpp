#include "workbench/output/text_rendering.h"

#include <fmt/format.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <map>
#include <utility>

#include "workbench/output/pattern.h"
#include "workbench/output/sentences.h"

namespace workbench::output {
namespace {

using Values = std::vector<const ValueText*>;

std::string inPrintFormat(const ValueText& text, NumberStyle style, const text::LocaleForms& forms) {
  const double* number = std::get_if<double>(&text.value);
  if (number == nullptr) return std::get<std::string>(text.value);
  return formattedNumber(*number, text.variable->format, text.variable->width, text.variable->decimals, style, forms);
}

// Requires: the value is a number.
std::string inFull(const ValueText& text, NumberStyle style, const text::LocaleForms& forms) {
  const double number = std::get<double>(text.value);
  return style == NumberStyle::asFormatted ? fullNumber(number, text.variable->format, forms)
                                           : fullNumber(number, text.variable->format);
}

std::string exactly(double number, NumberStyle style, const text::LocaleForms& forms) {
  return style == NumberStyle::asFormatted ? fullNumber(number, FormatType::number, forms) : fullNumber(number);
}

// All numbers among the values of a text.
void collectNumbers(const Text& text, Values& numbers) {
  if (const auto* value = std::get_if<ValueText>(&text.held)) {
    if (std::holds_alternative<double>(value->value)) numbers.push_back(value);
  } else if (const auto* composite = std::get_if<CompositeText>(&text.held)) {
    for (const Text& item : composite->items) collectNumbers(item, numbers);
  } else if (const auto* list = std::get_if<ListText>(&text.held)) {
    for (const Text& item : list->items) collectNumbers(item, numbers);
  }
}

// Those that read like another one without being the same number.
Values lookalikes(const Values& numbers, auto reads) {
  const auto bits = [](const ValueText* value) { return std::bit_cast<std::uint64_t>(std::get<double>(value->value)); };
  std::map<std::string, Values> byReading;
  for (const ValueText* value : numbers) byReading[reads(*value)].push_back(value);
  Values found;
  for (const auto& [reading, alike] : byReading) {
    const bool differ = std::any_of(alike.begin(), alike.end(),
                                    [&](const ValueText* value) { return bits(value) != bits(alike.front()); });
    if (differ) found.insert(found.end(), alike.begin(), alike.end());
  }
  return found;
}

std::string withMarkedLineBreaks(const std::string& text) {
  std::string result;
  for (const char character : text) {
    if (character == '\n') {
      result += "\xE2\x90\x8A";  // the sign for a line feed
    } else {
      result += character;
    }
  }
  return result;
}

}  // namespace

TextShower::TextShower(const std::vector<const Text*>& sideBySide, const text::Wording& wording, TextStyle style)
    : wording_(wording), style_(style) {
  Values numbers;
  for (const Text* text : sideBySide) collectNumbers(*text, numbers);
  if (numbers.size() < 2) return;
  const text::LocaleForms& forms = wording_.forms();
  const Values alike =
      lookalikes(numbers, [&](const ValueText& value) { return inPrintFormat(value, style_.numbers, forms); });
  // Two moments within a millionth of a second read alike even in full: then only the plain number tells.
  const Values alikeInFull =
      lookalikes(alike, [&](const ValueText& value) { return inFull(value, style_.numbers, forms); });
  inFull_ = {alike.begin(), alike.end()};
  exact_ = {alikeInFull.begin(), alikeInFull.end()};
}

std::string TextShower::operator()(const Text& text) const {
  return std::visit([this](const auto& held) { return shownText(held); }, text.held);
}

std::string TextShower::shownText(const StringText& text) const {
  return text.translate ? wording_.resolve(text.key) : fromData(text.key);
}

std::string TextShower::shownText(const NumberText& text) const {
  const bool isPercent = text.format == BpFormat::percent;
  switch (style_.numbers) {
    case NumberStyle::full:
      return fullNumber(text.value);
    case NumberStyle::plain:
      return isPercent ? percentText(text.value) : countText(text.value);
    case NumberStyle::asFormatted:
      break;
  }
  return isPercent ? percentText(text.value, wording_.forms()) : countText(text.value, wording_.forms());
}

std::string TextShower::shownText(const VariableText& text) const {
  if (!text.label || text.label->empty() || text.show == BpVariableShow::name) return fromData(text.name);
  if (text.show == BpVariableShow::labelElseName) return fromData(*text.label);
  return fromData(fmt::format("{} ({})", text.name, *text.label));
}

std::string TextShower::shownText(const ValueText& text) const {
  if (exact_.contains(&text)) return exactly(std::get<double>(text.value), style_.numbers, wording_.forms());
  if (inFull_.contains(&text)) return inFull(text, style_.numbers, wording_.forms());
  return fromData(inPrintFormat(text, style_.numbers, wording_.forms()));
}

std::string TextShower::shownText(const CompositeText& text) const {
  std::vector<PatternItem> items;
  for (const Text& item : text.items) {
    const auto* list = std::get_if<ListText>(&item.held);
    items.push_back(list != nullptr ? PatternItem(elementsOf(*list)) : PatternItem((*this)(item)));
  }
  return filledPattern(text.translate ? wording_.resolve(text.pattern) : text.pattern, items);
}

// In its composite a list is shown by the pattern; this is the list by itself.
std::string TextShower::shownText(const ListText& text) const {
  return fmt::format("{}", fmt::join(elementsOf(text), ", "));
}

std::vector<std::string> TextShower::elementsOf(const ListText& list) const {
  const bool isShortened = style_.longestList != 0 && list.items.size() > style_.longestList;
  const std::size_t shownOnes = isShortened ? style_.longestList : list.items.size();
  std::vector<std::string> elements;
  for (std::size_t index = 0; index < shownOnes; ++index) elements.push_back((*this)(list.items[index]));
  if (isShortened) {
    elements.push_back(shownSentence(sentences::more, {std::to_string(list.items.size() - shownOnes)}, wording_));
  }
  return elements;
}

std::string TextShower::fromData(std::string text) const {
  return style_.markDataLineBreaks ? withMarkedLineBreaks(text) : text;
}

std::string shown(const Text& text, const text::Wording& wording, TextStyle style) {
  return TextShower({&text}, wording, style)(text);
}

std::vector<std::string> shownTogether(const std::vector<const Text*>& texts, const text::Wording& wording,
                                       TextStyle style) {
  const TextShower shower(texts, wording, style);
  std::vector<std::string> all;
  all.reserve(texts.size());
  for (const Text* text : texts) all.push_back(shower(*text));
  return all;
}

std::string shownSentence(std::string_view pattern, std::vector<std::string> items, const text::Wording& wording) {
  std::vector<PatternItem> filled;
  for (std::string& item : items) filled.emplace_back(std::move(item));
  return filledPattern(wording.resolve(pattern), filled);
}

}  // namespace workbench::output
