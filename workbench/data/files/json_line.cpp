#include "workbench/data/files/json_line.h"

#include <fmt/format.h>
#include <simdjson.h>

#include <cstring>
#include <utility>

#include "workbench/data/files/table_scanner.h"
#include "workbench/runtime/loaded_library.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

namespace ondemand = simdjson::ondemand;
using Implementation = simdjson::internal::atomic_ptr<const simdjson::implementation>;

static_assert(readBehindJson >= simdjson::SIMDJSON_PADDING);

constexpr const char* libraryName = "libsimdjson.so.14";
constexpr LibraryDescription description{"The JSON library", "which reads JSON lines",
                                         "Install simdjson 3.0 (Debian's package libsimdjson14)."};

// The only function of the library that is called by its name; all others are members of what it gives.
struct JsonFunctions {
  Implementation& (*getImplementation)() = nullptr;
};

const Outcome<const JsonFunctions*>& jsonFunctions() {
  static const Outcome<const JsonFunctions*> loaded =
      loadFunctions<JsonFunctions>({libraryName}, description, [](LoadedLibrary& library, JsonFunctions& functions) {
        library.find(functions.getImplementation, "_ZN8simdjson25get_active_implementationEv");
      });
  return loaded;
}

}  // namespace
}  // namespace workbench::data

// What the library's header calls. We are not linked against it, or every run would start with it.
namespace simdjson {
internal::atomic_ptr<const implementation>& get_active_implementation() {
  return (*workbench::data::jsonFunctions())->getImplementation();
}
}  // namespace simdjson

namespace workbench::data {
namespace {

constexpr std::size_t deepest = 1000;

JsonFault unsound(std::string_view pattern, std::initializer_list<std::string_view> items = {}) {
  return {text::sentence(pattern, items),
          text::sentence("Correct the line, or write the file anew if it was cut off.")};
}

JsonFault faultOf(simdjson::error_code error) {
  switch (error) {
    case simdjson::INCORRECT_TYPE:
      return {text::sentence("The line is no JSON object."),
              text::sentence("Write every case as an object like {\"id\": 1} in a line of its own.")};
    case simdjson::UNCLOSED_STRING:
      return unsound("The line is no sound JSON: a text in it is never closed.");
    case simdjson::UNESCAPED_CHARS:
      return unsound("The line is no sound JSON: a control character or a NUL byte stands in it as it is.");
    case simdjson::INCOMPLETE_ARRAY_OR_OBJECT:
      return unsound("The line is no sound JSON: the object is not closed, or something follows it.");
    case simdjson::MEMALLOC:
      return {text::sentence("There is not enough memory for the line."),
              text::sentence("Part the data into shorter lines.")};
    default:
      return unsound("The line is no sound JSON: a comma, a colon, a quote or a bracket is missing or too much.");
  }
}

JsonFault unsoundValue(std::string_view key) {
  return unsound("The line is no sound JSON: what stands behind \"^1\" is no value.", {key});
}

JsonFault badEscape(std::string_view pattern, std::string_view key = {}) {
  return {text::sentence(pattern, {key}), text::sentence("Write the characters themselves, and leave NUL out.")};
}

JsonFault badEscapeInText(std::string_view key) {
  return badEscape("An escape in the text of \"^1\" stands for no character, or for NUL.", key);
}

JsonFault tooDeep(std::string_view key) {
  return {text::sentence("The value of \"^1\" is nested deeper than ^2 levels.", {key, fmt::to_string(deepest)}),
          text::sentence("Write the data with fewer objects and lists inside each other.")};
}

// Byte by byte: there is no blank in most cases, and digits are few.
std::string_view withoutBlanksBehind(std::string_view token) {
  const auto isBlank = [](char byte) { return byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n'; };
  while (!token.empty() && isBlank(token.back())) token.remove_suffix(1);
  return token;
}

std::size_t digitsAt(std::string_view text, std::size_t at) {
  std::size_t end = at;
  while (end < text.size() && text[end] >= '0' && text[end] <= '9') ++end;
  return end - at;
}

// "-12.5e+3": no plus in front, no zero before another digit, digits on both sides of the point.
bool isNumber(std::string_view text) {
  std::size_t at = text.starts_with('-') ? 1 : 0;
  const std::size_t whole = digitsAt(text, at);
  if (whole == 0 || (whole > 1 && text[at] == '0')) return false;
  at += whole;
  if (at < text.size() && text[at] == '.') {
    const std::size_t fraction = digitsAt(text, at + 1);
    if (fraction == 0) return false;
    at += 1 + fraction;
  }
  if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
    ++at;
    if (at < text.size() && (text[at] == '+' || text[at] == '-')) ++at;
    const std::size_t exponent = digitsAt(text, at);
    if (exponent == 0) return false;
    at += exponent;
  }
  return at == text.size();
}

bool isWord(std::string_view token) { return token == "true" || token == "false" || token == "null"; }

bool isText(std::string_view token) { return token.size() >= 2 && token.front() == '"' && token.back() == '"'; }

bool hasEscape(std::string_view text) { return std::memchr(text.data(), '\\', text.size()) != nullptr; }

// Half a surrogate pair comes out of the library as what is no UTF-8.
bool holdsCharacters(std::string_view text) {
  return text.find('\0') == std::string_view::npos && findNoUtf8(text) == std::string_view::npos;
}

bool isAtEnd(ondemand::document& document) { return document.current_location().error() == simdjson::OUT_OF_BOUNDS; }

// A key without escapes, which is almost every one.
std::optional<std::string_view> plainKey(const char* begin, const char* behind) {
  for (const char* next = begin; next != behind && *next != '\\'; ++next) {
    if (*next == '"') return std::string_view(begin, static_cast<std::size_t>(next - begin));
  }
  return std::nullopt;
}

}  // namespace

Outcome<Done> jsonLibrary() {
  if (!jsonFunctions()) return jsonFunctions().problem();
  return Done{};
}

struct JsonLine::Parsers {
  // One object on its way.
  struct Reading {
    Parsers& parsers;
    char* text;
    std::size_t length;
    std::vector<JsonMember>& members;

    std::optional<JsonFault> take(ondemand::field& field);
    std::optional<JsonFault> takeText(std::string_view token, ondemand::value& value, JsonMember& member);
    std::optional<JsonFault> takeNested(ondemand::value& value, JsonMember& member);
  };

  // What keeps the value, which stands in a text of its own, from being sound.
  std::optional<JsonFault> faultInNested(std::string_view json, std::string_view key);
  template <class Value>
  std::optional<JsonFault> faultIn(Value&& value, std::string_view key, std::size_t depth);

  ondemand::parser line;
  ondemand::parser inside;
  std::string nested;  // an object or a list
  std::string minified;
};

JsonLine::JsonLine() : parsers_(std::make_unique<Parsers>()) {}
JsonLine::~JsonLine() = default;

std::optional<JsonFault> JsonLine::read(char* text, std::size_t length, std::size_t readable) {
  members_.clear();
  ondemand::document document;
  const simdjson::padded_string_view view(text, length, readable);
  if (const auto error = parsers_->line.iterate(view).get(document)) return faultOf(error);
  ondemand::object object;
  if (const auto error = document.get_object().get(object)) return faultOf(error);
  Parsers::Reading reading{*parsers_, text, length, members_};
  for (auto each : object) {
    ondemand::field field;
    if (const auto error = std::move(each).get(field)) return faultOf(error);
    if (std::optional<JsonFault> fault = reading.take(field)) return fault;
  }
  if (!isAtEnd(document)) return faultOf(simdjson::INCOMPLETE_ARRAY_OR_OBJECT);
  return std::nullopt;
}

std::optional<JsonFault> JsonLine::Parsers::Reading::take(ondemand::field& field) {
  JsonMember member;
  if (const auto plain = plainKey(field.key().raw(), text + length)) {
    member.key = *plain;
  } else if (field.unescaped_key().get(member.key) || !holdsCharacters(member.key)) {
    return badEscape("An escape in a key stands for no character, or for NUL.");
  }

  ondemand::value& value = field.value();
  const std::string_view token = withoutBlanksBehind(value.raw_json_token());
  std::optional<JsonFault> fault;
  if (isText(token)) {
    fault = takeText(token, value, member);
  } else if (token.starts_with('{') || token.starts_with('[')) {
    fault = takeNested(value, member);
  } else if (isNumber(token)) {
    member.kind = JsonMember::Kind::number;
    member.value = token;
  } else if (!isWord(token)) {
    fault = unsoundValue(member.key);
  } else if (token != "null") {
    member.kind = JsonMember::Kind::truth;
    member.value = token;
  }
  members.push_back(member);
  return fault;
}

std::optional<JsonFault> JsonLine::Parsers::Reading::takeText(std::string_view token, ondemand::value& value,
                                                              JsonMember& member) {
  member.kind = JsonMember::Kind::text;
  member.value = token.substr(1, token.size() - 2);
  if (!hasEscape(member.value)) return std::nullopt;
  std::string_view resolved;
  if (value.get_string().get(resolved) || !holdsCharacters(resolved)) return badEscapeInText(member.key);
  // No escape is shorter than what it stands for.
  char* const place = text + (member.value.data() - text);
  std::memcpy(place, resolved.data(), resolved.size());
  member.value = {place, resolved.size()};
  return std::nullopt;
}

std::optional<JsonFault> JsonLine::Parsers::Reading::takeNested(ondemand::value& value, JsonMember& member) {
  member.kind = JsonMember::Kind::nested;
  std::string_view json;
  simdjson::error_code error = simdjson::SUCCESS;
  if (value.raw_json_token().front() == '{') {
    ondemand::object object;
    error = value.get_object().get(object);
    if (!error) error = object.raw_json().get(json);
  } else {
    ondemand::array list;
    error = value.get_array().get(list);
    if (!error) error = list.raw_json().get(json);
  }
  if (error) return faultOf(error);
  json = withoutBlanksBehind(json);
  if (std::optional<JsonFault> fault = parsers.faultInNested(json, member.key)) return fault;

  std::string& minified = parsers.minified;
  minified.resize(json.size() + simdjson::SIMDJSON_PADDING);
  std::size_t bytes = 0;
  const simdjson::implementation* const active = simdjson::get_active_implementation();
  error = active->minify(reinterpret_cast<const std::uint8_t*>(parsers.nested.data()), json.size(),
                         reinterpret_cast<std::uint8_t*>(minified.data()), bytes);
  if (error) return faultOf(error);
  char* const place = text + (json.data() - text);
  std::memcpy(place, minified.data(), bytes);
  member.value = {place, bytes};
  return std::nullopt;
}

std::optional<JsonFault> JsonLine::Parsers::faultInNested(std::string_view json, std::string_view key) {
  nested.assign(json);
  nested.resize(json.size() + simdjson::SIMDJSON_PADDING, ' ');
  ondemand::document document;
  const simdjson::padded_string_view view(nested.data(), json.size(), nested.size());
  if (const auto error = inside.iterate(view).get(document)) return faultOf(error);
  std::optional<JsonFault> fault = faultIn(document, key, 1);
  if (!fault && !isAtEnd(document)) return unsoundValue(key);
  return fault;
}

template <class Value>
std::optional<JsonFault> JsonLine::Parsers::faultIn(Value&& value, std::string_view key, std::size_t depth) {
  if (depth > deepest) return tooDeep(key);
  std::string_view token;
  if (simdjson::simdjson_result<std::string_view>(value.raw_json_token()).get(token)) return unsoundValue(key);
  token = withoutBlanksBehind(token);
  if (token.starts_with('{')) {
    ondemand::object object;
    if (value.get_object().get(object)) return unsoundValue(key);
    for (auto each : object) {
      ondemand::field field;
      std::string_view name;
      if (std::move(each).get(field)) return unsoundValue(key);
      if (field.unescaped_key().get(name) || findNoUtf8(name) != std::string_view::npos) return badEscapeInText(key);
      if (std::optional<JsonFault> fault = faultIn(field.value(), key, depth + 1)) return fault;
    }
    return std::nullopt;
  }
  if (token.starts_with('[')) {
    ondemand::array list;
    if (value.get_array().get(list)) return unsoundValue(key);
    for (auto each : list) {
      ondemand::value entry;
      if (std::move(each).get(entry)) return unsoundValue(key);
      if (std::optional<JsonFault> fault = faultIn(entry, key, depth + 1)) return fault;
    }
    return std::nullopt;
  }
  if (isText(token)) {
    std::string_view resolved;
    if (hasEscape(token) && value.get_string().get(resolved)) return badEscapeInText(key);
    return hasEscape(token) && findNoUtf8(resolved) != std::string_view::npos ? std::optional(badEscapeInText(key))
                                                                              : std::nullopt;
  }
  return isNumber(token) || isWord(token) ? std::nullopt : std::optional(unsoundValue(key));
}

}  // namespace workbench::data
