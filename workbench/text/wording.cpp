#include "workbench/text/wording.h"

#include <fmt/format.h>
#include <unicode/resbund.h>
#include <unicode/udata.h>
#include <unicode/uloc.h>
#include <unicode/ures.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <stdexcept>

#include "workbench/runtime/current_run.h"
#include "workbench/text/wording_package.h"

namespace workbench::text {

namespace {

// The bundles are part of the program: one that cannot be read is a mistake of the build, not of a user.
void require(UErrorCode status, std::string_view what) {
  if (U_FAILURE(status)) throw std::logic_error(fmt::format("wording: {}: {}", what, u_errorName(status)));
}

struct CloseBundle {
  void operator()(UResourceBundle* bundle) const { ures_close(bundle); }
};
using Bundle = std::unique_ptr<UResourceBundle, CloseBundle>;

constexpr const char* packageName = "wording";

// What the workbench itself says, the language's name behind it.
constexpr auto sentenceBundles =
    std::to_array({"sentences_", "sentences_command_line_", "sentences_descriptors_", "sentences_files_"});

// The keys of what a language says of dates: patterns of year, month and day, and of a date and a time of day.
constexpr const char* dateForm = "date: ^1 (year), ^2 (month), ^3 (day)";
constexpr const char* momentForm = "moment: ^1 (date), ^2 (time of day)";

Bundle openBundle(const char* name) {
  static const bool isRegistered = [] {
    UErrorCode status = U_ZERO_ERROR;
    udata_setAppData(packageName, wordingPackage, &status);
    require(status, "the package");
    return true;
  }();
  (void)isRegistered;
  UErrorCode status = U_ZERO_ERROR;
  Bundle bundle(ures_openDirect(packageName, name, &status));
  require(status, name);
  return bundle;
}

std::string textAt(const UResourceBundle* row, std::int32_t index) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::UnicodeString wide = icu::ures_getUnicodeStringByIndex(row, index, &status);
  require(status, "a text");
  std::string text;
  wide.toUTF8String(text);
  return text;
}

// Hands the texts of every row of a bundle's array to the visitor.
template <std::size_t columns, class Visit>
void forEachRow(const UResourceBundle* bundle, const char* arrayName, Visit visit) {
  UErrorCode status = U_ZERO_ERROR;
  const Bundle array(ures_getByKey(bundle, arrayName, nullptr, &status));
  require(status, arrayName);
  for (std::int32_t index = 0; index < ures_getSize(array.get()); ++index) {
    const Bundle row(ures_getByIndex(array.get(), index, nullptr, &status));
    require(status, arrayName);
    std::array<std::string, columns> texts;
    for (std::size_t column = 0; column < columns; ++column) {
      texts[column] = textAt(row.get(), static_cast<std::int32_t>(column));
    }
    visit(std::move(texts));
  }
}

std::int64_t numberOf(const std::string& text) {
  std::int64_t number = 0;
  const auto end = text.data() + text.size();
  if (std::from_chars(text.data(), end, number).ptr != end) throw std::logic_error("wording: no number: " + text);
  return number;
}

std::string join(const std::vector<std::string>& words) {
  std::string all;
  for (const std::string& word : words) all += (all.empty() ? "" : ", ") + word;
  return all;
}

// The language of a tag or of a locale's name, as ICU writes it; empty when it names none.
std::string languageOf(std::string_view tag) {
  const std::string name(tag.substr(0, tag.find('.')));
  if (name.empty() || name == "C" || name == "POSIX") return "en";
  char language[ULOC_LANG_CAPACITY] = "";
  UErrorCode status = U_ZERO_ERROR;
  uloc_getLanguage(name.c_str(), language, sizeof language, &status);
  return U_SUCCESS(status) ? language : "";
}

}  // namespace

std::vector<std::string> Wording::languages() {
  const Bundle index = openBundle("res_index");
  UErrorCode status = U_ZERO_ERROR;
  const Bundle locales(ures_getByKey(index.get(), "InstalledLocales", nullptr, &status));
  require(status, "InstalledLocales");
  std::vector<std::string> names;
  for (std::int32_t at = 0; at < ures_getSize(locales.get()); ++at) {
    const Bundle locale(ures_getByIndex(locales.get(), at, nullptr, &status));
    require(status, "InstalledLocales");
    names.emplace_back(ures_getKey(locale.get()));
  }
  return names;
}

Outcome<std::unique_ptr<Wording>> Wording::load(std::string_view languageTag, std::string_view numberLocale) {
  const std::vector<std::string> known = languages();
  const std::string language = languageOf(languageTag);
  if (std::find(known.begin(), known.end(), language) == known.end()) {
    return Problem{sentence("There is no wording for the language \"^1\".", {languageTag}), "",
                   sentence("Choose one of these: ^1.", {join(known)})};
  }
  std::unique_ptr<Wording> wording(new Wording);
  wording->language_ = language;
  const Bundle bundle = openBundle(language.c_str());
  const auto addTexts = [&](std::array<std::string, 2> row) {
    if (!wording->texts_.emplace(row[0], std::move(row[1])).second) {
      throw std::logic_error("wording: twice in " + language + ": " + row[0]);
    }
  };
  forEachRow<2>(bundle.get(), "wording", addTexts);
  for (const char* const sentences : sentenceBundles) {
    forEachRow<2>(openBundle((sentences + language).c_str()).get(), "wording", addTexts);
  }
  forEachRow<3>(bundle.get(), "catalogs", [&](std::array<std::string, 3> row) {
    wording->catalogTexts_[{std::move(row[0]), numberOf(row[1])}] = std::move(row[2]);
  });
  forEachRow<2>(bundle.get(), "errors",
                [&](std::array<std::string, 2> row) { wording->errorTexts_[numberOf(row[0])] = std::move(row[1]); });
  const std::string_view ofNumbers = numberLocale.empty() ? languageTag : numberLocale;
  wording->forms_ = numberFormsOf(ofNumbers);
  const bool isOfLanguage = languageOf(ofNumbers) == language && ofNumbers.starts_with(language);
  wording->locale_ = isOfLanguage ? std::string(ofNumbers.substr(0, ofNumbers.find('.'))) : language;
  wording->forms_.date = wording->resolve(dateForm);
  wording->forms_.moment = wording->resolve(momentForm);
  return wording;
}

std::string Wording::resolve(std::string_view key) const {
  const auto text = texts_.find(key);
  return text != texts_.end() ? text->second : std::string(key);
}

std::vector<std::string> Wording::keys() const {
  std::vector<std::string> all;
  for (const auto& [key, text] : texts_) all.push_back(key);
  return all;
}

std::optional<std::string> Wording::catalogText(std::string_view catalogFile, std::int64_t number) const {
  const auto text = catalogTexts_.find({std::string(catalogFile), number});
  if (text == catalogTexts_.end()) return std::nullopt;
  return text->second;
}

std::optional<std::string> Wording::errorText(std::int64_t number) const {
  const auto text = errorTexts_.find(number);
  if (text == errorTexts_.end()) return std::nullopt;
  return text->second;
}

// Threads of the host ask as well. What is in force changes between commands only, when none of them is at work.
const Wording& wordingInForce() {
  if (currentRun().wording != nullptr) return *currentRun().wording;
  static const std::unique_ptr<Wording> english = std::move(*Wording::load("en"));
  return *english;
}

std::string sentence(std::string_view pattern, std::initializer_list<std::string_view> items) {
  return filledForm(wordingInForce().resolve(pattern), items);
}

}  // namespace workbench::text
