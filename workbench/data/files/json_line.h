// JsonLine: the JSON object that stands in a line, taken apart into its members.
//
// Numbers stay the digits that were written: nothing is rounded, and none is too long. Sound is what the standard of
// JSON allows, without a key that stands twice being looked for; a text holds no NUL, and every escape in it stands for
// a character. Used by one thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/runtime/outcome.h"

namespace workbench::data {

// How many bytes behind the line can be read, whatever they are.
inline constexpr std::size_t readBehindJson = 64;

struct JsonMember {
  enum class Kind : std::uint8_t { number, text, truth, nothing, nested };

  std::string_view key;
  Kind kind = Kind::nothing;
  // The digits; the text, escapes resolved; "true" or "false"; empty; the JSON of an object or a list, without blanks.
  std::string_view value;
};

// Why a line is no such object: a sentence, and what to do.
struct JsonFault {
  std::string what;
  std::string remedy;
};

// Fails when the library that reads JSON is not there. It is loaded when the first line is to be read.
Outcome<Done> jsonLibrary();

class JsonLine {
 public:
  JsonLine();  // requires: the library is there
  ~JsonLine();

  // Takes the object apart, and gives a fault when it is none. Values lie in the text, which is changed for that; keys
  // in it or here. Requires: the text is UTF-8 or refused anyhow; from its beginning on `readable` bytes can be read,
  // of which readBehindJson are beyond its length.
  std::optional<JsonFault> read(char* text, std::size_t length, std::size_t readable);
  // Of the last object, in their order. Valid until the next one is read.
  const std::vector<JsonMember>& members() const { return members_; }

 private:
  struct Parsers;

  std::unique_ptr<Parsers> parsers_;
  std::vector<JsonMember> members_;
};

}  // namespace workbench::data
