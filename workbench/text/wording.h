// Wording: what people see for the keys and sentences of procedures and of the workbench, in one language.
//
// A key is whatever was passed to be translated: "CD_Active", a sentence, a sentence's beginning with three points, or
// a pattern in which ^1, ^2, ... stand for items. The wording of a pattern is a pattern of the same items. The texts
// are ICU resource bundles (wording/*.txt), built into the program.
//
// Invariant: every language has the same keys.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "workbench/runtime/outcome.h"
#include "workbench/text/locale_forms.h"

namespace workbench::text {

class Wording {
 public:
  // The wording for a language tag ("de", "de-AT") or a locale's name ("de_AT.UTF-8"; "C", "POSIX" and an empty one
  // are English). A language without a wording is a problem that lists those that have one. Numbers are written as in
  // the second locale when one is named, else as in the first.
  static Outcome<std::unique_ptr<Wording>> load(std::string_view languageTag, std::string_view numberLocale = {});
  // All languages that there are, in alphabetical order.
  static std::vector<std::string> languages();

  const std::string& language() const { return language_; }
  // The language, with the region whose number forms hold where that is one of the language's: "de-AT" may be its
  // locale, and "de", where the numbers are those of another language.
  const std::string& locale() const { return locale_; }
  // How numbers and dates are written for people.
  const LocaleForms& forms() const { return forms_; }

  // The text for a key; a key without wording is returned as it is.
  std::string resolve(std::string_view key) const;
  bool has(std::string_view key) const { return texts_.find(key) != texts_.end(); }
  // All keys, in the order of their bytes.
  std::vector<std::string> keys() const;

  // A numbered text of a message catalog.
  std::optional<std::string> catalogText(std::string_view catalogFile, std::int64_t number) const;
  // The text of a numbered error of the host.
  std::optional<std::string> errorText(std::int64_t number) const;

 private:
  Wording() = default;

  std::string language_;
  std::string locale_;
  LocaleForms forms_;
  std::map<std::string, std::string, std::less<>> texts_;
  std::map<std::pair<std::string, std::int64_t>, std::string> catalogTexts_;
  std::map<std::int64_t, std::string> errorTexts_;
};

// The wording of the current run; English when none was set.
const Wording& wordingInForce();

// A sentence of the workbench itself, in the language of the current run: the wording of the pattern (an English
// sentence) with its items, which stand as they are, in the places of ^1 to ^9.
std::string sentence(std::string_view pattern, std::initializer_list<std::string_view> items = {});

}  // namespace workbench::text
