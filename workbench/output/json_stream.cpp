#include "workbench/output/json_stream.h"

#include <ostream>

namespace workbench::output {

std::string compactJson(const Json& value) { return value.dump(-1, ' ', false, Json::error_handler_t::replace); }

JsonStream::Scope JsonStream::object() {
  startElement();
  open('{');
  return Scope(*this, '}');
}

void JsonStream::elementOf(std::string_view json) {
  startElement();
  out_ << json;
}

JsonStream::Scope JsonStream::object(std::string_view key) {
  startMember(key);
  open('{');
  return Scope(*this, '}');
}

JsonStream::Scope JsonStream::array(std::string_view key) {
  startMember(key);
  open('[');
  return Scope(*this, ']');
}

void JsonStream::member(std::string_view key, const Json& value) {
  startMember(key);
  out_ << compactJson(value);
}

void JsonStream::startElement() {
  if (depth_ == 0) return;  // the document itself
  out_ << (isFirst_ ? "\n" : ",\n") << std::string(static_cast<std::size_t>(2 * depth_), ' ');
  isFirst_ = false;
}

void JsonStream::startMember(std::string_view key) {
  startElement();
  out_ << compactJson(Json(key)) << ": ";
}

void JsonStream::open(char start) {
  out_ << start;
  ++depth_;
  isFirst_ = true;
}

void JsonStream::close(char end) {
  --depth_;
  if (!isFirst_) out_ << '\n' << std::string(static_cast<std::size_t>(2 * depth_), ' ');
  out_ << end;
  isFirst_ = false;
  if (depth_ == 0) out_ << '\n';
}

}  // namespace workbench::output
