// JsonStream writes one JSON document piece by piece, so that a table with millions of cells is never held twice.
//
// An object or array is open as long as the Scope that opened it, which closes it. Every element stands on a line of
// its own; values are written compactly. Bytes that are not UTF-8 are replaced by U+FFFD.
#pragma once

#include <iosfwd>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace workbench::output {

using Json = nlohmann::ordered_json;

// A value on one line.
std::string compactJson(const Json& value);

class JsonStream {
 public:
  explicit JsonStream(std::ostream& out) : out_(out) {}

  class Scope {
   public:
    Scope(JsonStream& stream, char end) : stream_(stream), end_(end) {}
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;
    ~Scope() { stream_.close(end_); }

   private:
    JsonStream& stream_;
    char end_;
  };

  // The next element of an array, or the document itself.
  [[nodiscard]] Scope object();
  void element(const Json& value) { elementOf(compactJson(value)); }
  // Requires: the text is a JSON value.
  void elementOf(std::string_view json);
  // The next member of an object.
  [[nodiscard]] Scope object(std::string_view key);
  [[nodiscard]] Scope array(std::string_view key);
  void member(std::string_view key, const Json& value);

 private:
  void startElement();
  void startMember(std::string_view key);
  void open(char start);
  void close(char end);

  std::ostream& out_;
  int depth_ = 0;
  bool isFirst_ = true;  // in what is open
};

}  // namespace workbench::output
