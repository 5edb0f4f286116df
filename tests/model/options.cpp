#include "tests/model/options.h"

#include "tests/model/grammar.h"
#include "tests/model/messages.h"

namespace workbench::tests::model {

namespace {

bool isYes(const std::vector<Word>* values) { return values != nullptr && sameName(values->front().text, "yes"); }

// The one value of a keyword or list, if there is one and only one.
const Word* only(const std::vector<Word>* values) {
  return values != nullptr && values->size() == 1 ? &values->front() : nullptr;
}

class CommandReader {
 public:
  CommandReader(const Command& command, const World& world) : command_(command), world_(world) {}

  ReadCommand read() {
    ReadCommand result;
    if (readAll()) result.options = options_;
    result.messages = messages_;
    return result;
  }

 private:
  bool readAll() {
    if (!isGrammatical(command_)) return refuse(parserRefusal);
    const Subcommand* comparison = find(command_, "COMPDATASET");
    if (comparison == nullptr) return refuse(messageLine(2, 2, say::noDataset));
    if (!readComparison(*comparison)) return false;
    const Subcommand* variables = find(command_, "VARIABLES");
    if (variables == nullptr) return refuse(variablesRequired);
    if (!readVariables(*variables)) return false;
    const Subcommand* caseIds = find(command_, "CASEID");
    if (caseIds != nullptr && !readCaseIds(*caseIds)) return false;
    const Subcommand* save = find(command_, "SAVE");
    if (save != nullptr && !readSave(*save)) return false;
    const Subcommand* output = find(command_, "OUTPUT");
    return output == nullptr || readOutput(*output);
  }

  bool refuse(const std::string& message) {
    messages_.push_back(message);
    return false;
  }

  bool readComparison(const Subcommand& given) {
    const Word* name = given.values ? only(&*given.values) : nullptr;
    if (name == nullptr) return refuse(messageLine(2, 3, say::noSuchDataset));
    options_.comparison = *name;
    if (!name->isQuoted && name->text == "*") return refuse(messageLine(2, 3, say::sameDataset));
    const bool isActive = world_.activeHandle && sameName(name->text, *world_.activeHandle);
    const bool exists = name->isQuoted ? !name->text.empty() && name->text == world_.compared.path
                                       : isActive || sameName(name->text, "b");
    if (!exists) return refuse(messageLine(2, 3, hostsWords));
    const std::vector<Word>* password = find(given, "PASSWORD");
    if (password != nullptr && name->isQuoted) options_.password = password->front().text;
    return true;
  }

  bool readVariables(const Subcommand& given) {
    if (!given.values) return true;
    std::vector<Word> kept;
    for (const Word& word : *given.values) {
      const bool isKeyword = sameName(word.text, "to") || sameName(word.text, "all");
      if (isKeyword || placeOf(world_.active, word.text)) {
        kept.push_back(word);
      } else {
        options_.notInActive.push_back(word.text);
      }
    }
    const auto named = namedVariables(kept, world_.active);
    if (!named) return refuse(parserRefusal);
    options_.variables = *named;
    return true;
  }

  bool readCaseIds(const Subcommand& given) {
    if (!given.values) return true;
    const auto named = namedVariables(*given.values, world_.active);
    if (!named) return refuse(parserRefusal);
    options_.caseIds = *named;
    return true;
  }

  bool readSave(const Subcommand& given) {
    const std::vector<Word>* flag = find(given, "FLAGMISMATCHES");
    if (flag != nullptr) options_.flag = isYes(flag);
    const std::vector<Word>* flagName = find(given, "VARNAME");
    if (options_.flag && flagName != nullptr && !flagName->front().text.empty()) {
      options_.flagName = flagName->front().text;
    }
    // One memory for all four keywords: whether what was read last was a quoted string.
    bool lastWasQuoted = true;
    return readSavedCases(given, "MATCH", lastWasQuoted, options_.matched, say::matchedPasswordTooShort) &&
           readSavedCases(given, "MISMATCH", lastWasQuoted, options_.mismatched, say::mismatchedPasswordTooShort);
  }

  bool readSavedCases(const Subcommand& given, const std::string& kind, bool& lastWasQuoted, SavedCases& saved,
                      std::string_view tooShort) {
    if (!isYes(find(given, kind + "DATASET"))) return true;
    saved.isWanted = true;
    if (const Word* name = only(find(given, kind + "NAME"))) {
      saved.name = name->text;
      lastWasQuoted = name->isQuoted;
    }
    const std::vector<Word>* password = find(given, kind + "PASS");
    if (password == nullptr || !lastWasQuoted) return true;
    lastWasQuoted = password->front().isQuoted;
    if (!lastWasQuoted) return true;
    if (password->front().text.empty()) return refuse(messageLine(2, 3, tooShort));
    saved.password = password->front().text;
    return true;
  }

  bool readOutput(const Subcommand& given) {
    if (!readProperties(find(given, "VARPROPERTIES"))) return false;
    const std::vector<Word>* caseTable = find(given, "CASETABLE");
    if (caseTable != nullptr) options_.caseTable = isYes(caseTable);
    const std::vector<Word>* limit = find(given, "TABLELIMIT");
    if (limit == nullptr) return true;
    options_.limit.reset();
    if (!sameName(limit->front().text, "none")) options_.limit = std::stoul(limit->front().text);
    return true;
  }

  bool readProperties(const std::vector<Word>* words) {
    static const std::set<std::string> all = {"measure", "width", "label", "valuelabels", "columns",
                                              "missing", "align", "role",  "attributes"};
    if (words == nullptr) return true;
    if (words->size() == 1 && sameName(words->front().text, "none")) return true;
    options_.noProperties = false;
    if (words->size() == 1 && sameName(words->front().text, "all")) {
      options_.properties = all;
      return true;
    }
    for (const Word& word : *words) {
      // NONE and ALL stand alone or not at all; nothing is said about it.
      if (!all.contains(folded(word.text))) return false;
      options_.properties.insert(folded(word.text));
    }
    return true;
  }

  const Command& command_;
  const World& world_;
  Options options_;
  std::vector<std::string> messages_;
};

}  // namespace

ReadCommand read(const Command& command, const World& world) { return CommandReader(command, world).read(); }

}  // namespace workbench::tests::model
