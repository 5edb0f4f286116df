#include "workbench/output/phrase.h"

#include "workbench/text/message_pattern.h"

namespace workbench::output {

std::string shownPhrase(const Phrase& phrase, const text::Wording& wording) {
  return text::filledMessage(wording.resolve(phrase.pattern), phrase.numbers, wording.locale());
}

std::string shownAnswer(const Answer& answer, const text::Wording& wording) {
  std::string sentence;
  for (const Phrase& clause : answer.clauses) {
    sentence += (sentence.empty() ? "" : "; ") + shownPhrase(clause, wording);
  }
  return sentence;
}

}  // namespace workbench::output
