#include "workbench/app/spoken_language.h"

#include <cstdlib>
#include <utility>

#include "workbench/runtime/current_run.h"

namespace workbench::app {

namespace {

using text::Wording;

// The locale that the environment names for one purpose.
std::string localeFromEnvironment(const char* purpose) {
  for (const char* name : {"LC_ALL", purpose, "LANG"}) {
    const char* value = std::getenv(name);
    if (value != nullptr && *value != '\0') return value;
  }
  return {};
}

Outcome<std::unique_ptr<Wording>> wordingOfEnvironment() {
  const std::string numbers = localeFromEnvironment("LC_NUMERIC");
  auto fromEnvironment = Wording::load(localeFromEnvironment("LC_MESSAGES"), numbers);
  if (fromEnvironment) return fromEnvironment;
  return Wording::load("en", numbers);
}

}  // namespace

Outcome<std::unique_ptr<Wording>> wordingAskedFor(const std::string& language) {
  if (language.empty()) return wordingOfEnvironment();
  if (auto wording = Wording::load(language)) return wording;
  const auto own = wordingOfEnvironment();
  if (!own) return own.problem();
  const WordingInForce inForce(**own);
  return Wording::load(language);  // the same problem, in words that whoever asked may know
}

WordingInForce::WordingInForce(const Wording& wording) : before_(std::exchange(currentRun().wording, &wording)) {}

WordingInForce::~WordingInForce() { currentRun().wording = before_; }

}  // namespace workbench::app
