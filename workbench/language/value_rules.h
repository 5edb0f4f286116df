// The rules for the values of a keyword (UPSpecTypes::ParamSpec): which tokens it takes, and how that is told.
#pragma once

#include <optional>
#include <string>

#include "host/parser.h"
#include "workbench/language/grammar_state.h"

namespace workbench::language {

using Keyword = ParamDescriptor::State;

// Whether any number of values may follow, instead of one.
bool takesList(const Keyword& keyword);

// Whether the token is a value that the keyword takes.
bool takes(const Keyword& keyword, const TokenInfoObj& token);

// What the keyword takes, as a phrase in the user's language: "YES or NO", "a whole number from 1 to 10000 or NONE".
std::string expectedValue(const Keyword& keyword);

// The same in the notation of a help text: YES|NO, name ..., 'text'.
std::string valueNotation(const Keyword& keyword);

}  // namespace workbench::language
