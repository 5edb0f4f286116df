#include "workbench/data/descriptors/json_text.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <nlohmann/json.hpp>
#include <optional>
#include <utility>
#include <vector>

#include "workbench/data/cells/decimal_text.h"
#include "workbench/data/files/input_file.h"
#include "workbench/text/utf8.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

constexpr const char* correctItThere = "Correct it there.";

// "file, line 3, column 7" of a byte of the text.
std::string whereIn(std::string_view text, std::size_t offset, const std::string& path) {
  offset = std::min(offset, text.size());
  const std::string_view before = text.substr(0, offset);
  const auto line = std::count(before.begin(), before.end(), '\n') + 1;
  const std::string_view lineBefore = before.substr(before.rfind('\n') + 1);  // all of it when there is no line end
  const auto isContinuation = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; };
  const auto column = static_cast<std::ptrdiff_t>(lineBefore.size()) -
                      std::count_if(lineBefore.begin(), lineBefore.end(), isContinuation) + 1;
  return text::sentence("^1, line ^2, column ^3", {path, fmt::to_string(line), fmt::to_string(column)});
}

// What the parser says, without the place (which is told in our own way) and without the text that it read last, which
// may be long or no UTF-8.
std::string detailOf(std::string_view message) {
  message = message.substr(0, message.find("; last read: '"));
  message = message.substr(0, message.find("; expected "));
  if (const std::size_t found = message.rfind(" - "); found != std::string_view::npos) message.remove_prefix(found + 3);
  return std::string(message);
}

// Whether another number, as written here, would give the same double.
bool isRounded(const std::string& text, double value) {
  constexpr std::int32_t mostDigitsOfDouble = 17;
  const std::optional<Decimal> number = decimalOf(text);
  if (!number || number->isZero()) return false;
  const bool isWrittenWhole = !number->hasExponent && number->lastDigit < number->wholeDigits;
  if (isWrittenWhole) return !isHeld(*number);
  return number->significantDigits() > mostDigitsOfDouble || value == 0;
}

// Builds the document from the parser's events, which stops as soon as one of them returns false.
class DocumentBuilder {
 public:
  DocumentBuilder(std::string_view text, JsonDocument& document) : text_(text), document_(document) {}

  bool null() { return add(nullptr); }
  bool boolean(bool value) { return add(value); }
  bool number_integer(std::int64_t value) { return add(value); }
  bool number_unsigned(std::uint64_t value) { return add(value); }
  bool number_float(double value, const std::string& written) {
    if (isRounded(written, value)) document_.roundedNumbers.insert(nextPointer());
    return add(value);
  }
  bool string(std::string& value) { return add(std::move(value)); }
  bool binary(Json::binary_t&) { return false; }  // never in a text
  bool start_object(std::size_t) { return open(Json::object()); }
  bool end_object() { return close(); }
  bool start_array(std::size_t) { return open(Json::array()); }
  bool end_array() { return close(); }

  bool key(std::string& name) {
    Container& container = open_.back();
    if (!container.keys.insert(name).second) {
      return reject({text::sentence("The key \"^1\" stands twice in the same object.", {name}),
                     fmt::format("{}, {}", document_.path, pointerTo(pointer(), name)),
                     text::sentence("Remove one of the two.")});
    }
    container.key = std::move(name);
    return true;
  }

  bool parse_error(std::size_t position, const std::string&, const nlohmann::json::exception& error) {
    constexpr int numberOverflow = 406;
    const std::size_t offset = position == 0 ? 0 : position - 1;
    const std::string what = error.id == numberOverflow
                                 ? text::sentence("The number is beyond the range of double numbers.")
                                 : text::sentence("This is no valid JSON: ^1.", {detailOf(error.what())});
    return reject({what, whereIn(text_, offset, document_.path), text::sentence(correctItThere)});
  }

  Json& root() { return root_; }
  const std::optional<Problem>& problem() const { return problem_; }

 private:
  // An object or a list that is not complete, and what was last begun in it.
  struct Container {
    Json* json;
    std::unordered_set<std::string> keys;
    std::string key;
  };

  bool add(Json value) {
    place(std::move(value));
    return true;
  }

  bool open(Json value) {
    if (open_.size() == deepestJson) {
      return reject(
          {text::sentence("More than ^1 objects and lists stand inside each other.", {fmt::to_string(deepestJson)}),
           fmt::format("{}, {}", document_.path, nextPointer()),
           text::sentence("No descriptor is so deep; correct it.")});
    }
    open_.push_back({place(std::move(value)), {}, {}});
    return true;
  }

  bool close() {
    open_.pop_back();
    return true;
  }

  Json* place(Json value) {
    if (open_.empty()) {
      root_ = std::move(value);
      return &root_;
    }
    Json& container = *open_.back().json;
    if (container.is_array()) {
      container.push_back(std::move(value));
      return &container.back();
    }
    // Its own insertion would look through all keys once more.
    Json::object_t::Container& members = container.get_ref<Json::object_t&>();
    return &members.emplace_back(open_.back().key, std::move(value)).second;
  }

  std::string pointer() const {
    std::string pointer;
    for (std::size_t depth = 0; depth + 1 < open_.size(); ++depth) {
      const Container& container = open_[depth];
      pointer = container.json->is_array() ? pointerTo(pointer, container.json->size() - 1)
                                           : pointerTo(pointer, container.key);
    }
    return pointer;
  }

  // Of the value that comes next.
  std::string nextPointer() const {
    if (open_.empty()) return {};
    const Container& container = open_.back();
    return container.json->is_array() ? pointerTo(pointer(), container.json->size())
                                      : pointerTo(pointer(), container.key);
  }

  bool reject(Problem problem) {
    problem_ = std::move(problem);
    return false;
  }

  std::string_view text_;
  JsonDocument& document_;
  Json root_;
  std::vector<Container> open_;
  std::optional<Problem> problem_;
};

std::optional<Problem> bytesProblem(std::string_view text, const std::string& path) {
  if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF")) {
    return Problem{text::sentence("This is UTF-16."), path, text::sentence("Save the file as UTF-8.")};
  }
  for (std::size_t at = 0; at < text.size();) {
    const text::Character character = text::characterAt(text, at);
    if (character.codePoint < 0) {
      return Problem{
          text::sentence("The byte ^1 is no UTF-8.", {fmt::format("0x{:02X}", static_cast<unsigned char>(text[at]))}),
          whereIn(text, at, path), text::sentence("Save the file as UTF-8.")};
    }
    // The parser would take it for the text's end.
    if (character.codePoint == 0) {
      return Problem{text::sentence("A NUL byte stands in the text."), whereIn(text, at, path),
                     text::sentence("Remove it.")};
    }
    at += character.bytes;
  }
  return std::nullopt;
}

Problem sizeProblem(const std::string& path) {
  return {text::sentence("The file has more than ^1 MiB, and no descriptor is that large.",
                         {fmt::to_string(largestJsonFile >> 20)}),
          path, text::sentence("Is it the right file?")};
}

Outcome<std::string> bytesOf(const InputFile& file, const std::string& path) {
  if (file.identity().size > static_cast<std::int64_t>(largestJsonFile)) return sizeProblem(path);
  std::string bytes;
  std::vector<char> chunk(std::size_t{1} << 16);
  while (true) {
    const ssize_t count = ::read(file.descriptor(), chunk.data(), chunk.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) {
      return Problem{text::sentence("The file cannot be read (^1).", {std::strerror(errno)}), path, ""};
    }
    if (count == 0) return bytes;
    bytes.append(chunk.data(), static_cast<std::size_t>(count));
    if (bytes.size() > largestJsonFile) return sizeProblem(path);  // it grew
  }
}

}  // namespace

Outcome<JsonDocument> readJsonFile(const std::string& path) {
  const Outcome<InputFile> file = InputFile::open(path);
  if (!file) {
    return Problem{file.problem().what, path, text::sentence("A descriptor has to be a JSON file that can be read.")};
  }
  const Outcome<std::string> bytes = bytesOf(*file, path);
  if (!bytes) return bytes.problem();
  return jsonDocument(*bytes, path);
}

Outcome<JsonDocument> jsonDocument(std::string_view text, const std::string& path) {
  if (std::optional<Problem> problem = bytesProblem(text, path)) return *std::move(problem);
  JsonDocument document{path, nullptr, {}};
  DocumentBuilder builder(text, document);
  if (!Json::sax_parse(text, &builder)) return *builder.problem();
  document.root = std::make_shared<const Json>(std::move(builder.root()));
  return document;
}

std::string pointerTo(std::string_view parent, std::string_view key) {
  std::string pointer(parent);
  pointer += '/';
  for (const char character : key) {
    if (character == '~') {
      pointer += "~0";
    } else if (character == '/') {
      pointer += "~1";
    } else {
      pointer += character;
    }
  }
  return pointer;
}

std::string pointerTo(std::string_view parent, std::size_t index) { return fmt::format("{}/{}", parent, index); }

}  // namespace workbench::data
