// Outcome: a value, or the problem that stood in its way.
//
// Expected errors in the workbench are values: what went wrong, where, and what to do. Exceptions are for what ends a
// command (the host's ErrorText) and for our own mistakes.
#pragma once

#include <string>
#include <utility>
#include <variant>

namespace workbench {

// One sentence each; `where` names the file, line or option and may be empty.
struct Problem {
  std::string what;
  std::string where;
  std::string remedy;

  // All of it as people read it: "where: what remedy".
  std::string text() const {
    std::string all = where.empty() ? what : where + ": " + what;
    return remedy.empty() ? all : all + " " + remedy;
  }
};

template <class Value>
class [[nodiscard]] Outcome {
 public:
  Outcome(Value value) : held_(std::in_place_index<0>, std::move(value)) {}
  Outcome(Problem problem) : held_(std::in_place_index<1>, std::move(problem)) {}

  explicit operator bool() const { return held_.index() == 0; }
  // Requires: it holds a value.
  Value& operator*() { return std::get<0>(held_); }
  const Value& operator*() const { return std::get<0>(held_); }
  Value* operator->() { return &std::get<0>(held_); }
  const Value* operator->() const { return &std::get<0>(held_); }
  // Requires: it holds none.
  const Problem& problem() const { return std::get<1>(held_); }

 private:
  std::variant<Value, Problem> held_;
};

// For operations that yield nothing but success.
struct Done {};

}  // namespace workbench
