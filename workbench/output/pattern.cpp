#include "workbench/output/pattern.h"

#include <charconv>
#include <cstddef>
#include <optional>

namespace workbench::output {
namespace {

// A number at the start of the text and how many characters it takes.
struct Number {
  std::size_t value = 0;
  std::size_t characters = 0;
};

std::optional<Number> numberAt(std::string_view text) {
  Number number;
  const std::from_chars_result end = std::from_chars(text.data(), text.data() + text.size(), number.value);
  if (end.ec != std::errc() || number.value == 0) return std::nullopt;
  number.characters = static_cast<std::size_t>(end.ptr - text.data());
  return number;
}

template <class Kind>
const Kind* itemAt(const std::vector<PatternItem>& items, std::size_t number) {
  return number <= items.size() ? std::get_if<Kind>(&items[number - 1]) : nullptr;
}

std::string withElement(std::string_view pattern, std::string_view mark, std::string_view element) {
  std::string result;
  for (std::size_t start = 0;;) {
    const std::size_t place = pattern.find(mark, start);
    result += pattern.substr(start, place - start);
    if (place == std::string_view::npos) return result;
    result += element;
    start = place + mark.size();
  }
}

// What was recognised at the start of a text: what it shows, and how many characters of the pattern it took.
struct Part {
  std::string shown;
  std::size_t characters = 0;
};

std::optional<Part> itemPart(std::string_view pattern, const std::vector<PatternItem>& items) {
  const std::optional<Number> number = numberAt(pattern.substr(1));
  if (!number) return std::nullopt;
  const std::string* item = itemAt<std::string>(items, number->value);
  if (item == nullptr) return std::nullopt;
  return Part{*item, 1 + number->characters};
}

std::optional<Part> listPart(std::string_view pattern, const std::vector<PatternItem>& items) {
  const std::size_t firstEnd = pattern.find(':');
  if (firstEnd == std::string_view::npos) return std::nullopt;
  const std::size_t restEnd = pattern.find(":]", firstEnd + 1);
  if (restEnd == std::string_view::npos) return std::nullopt;
  const std::optional<Number> number = numberAt(pattern.substr(restEnd + 2));
  if (!number) return std::nullopt;
  const auto* list = itemAt<std::vector<std::string>>(items, number->value);
  if (list == nullptr) return std::nullopt;

  const std::string_view first = pattern.substr(1, firstEnd - 1);
  const std::string_view rest = pattern.substr(firstEnd + 1, restEnd - firstEnd - 1);
  Part part{"", restEnd + 2 + number->characters};
  for (std::size_t element = 0; element < list->size(); ++element) {
    part.shown += element == 0 ? withElement(first, "%1", (*list)[0]) : withElement(rest, "^1", (*list)[element]);
  }
  return part;
}

}  // namespace

std::string filledPattern(std::string_view pattern, const std::vector<PatternItem>& items) {
  std::string result;
  for (std::size_t place = 0; place < pattern.size();) {
    const std::string_view rest = pattern.substr(place);
    std::optional<Part> part;
    if (rest[0] == '^') part = itemPart(rest, items);
    if (rest[0] == '[') part = listPart(rest, items);
    result += part ? part->shown : std::string(rest.substr(0, 1));
    place += part ? part->characters : 1;
  }
  return result;
}

}  // namespace workbench::output
