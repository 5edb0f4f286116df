#include "workbench/data/kinds/changed_table.h"

#include <algorithm>
#include <optional>
#include <unordered_map>
#include <utility>

#include "workbench/data/kinds/changed_file.h"
#include "workbench/text/folding.h"
#include "workbench/text/nearest_word.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

// Works out the columns that are kept, and their names.
class ColumnChanges {
 public:
  explicit ColumnChanges(const ScannedTable& table)
      : path_(table.path), formerNames_(table.names), names_(table.names), isDropped_(table.names.size(), false) {
    for (std::size_t column = 0; column < formerNames_.size(); ++column) {
      byName_.emplace(text::foldedName(formerNames_[column]), column);
    }
  }

  Outcome<KeptColumns> apply(const VariableChanges& changes) {
    if (const auto dropped = drop(changes); !dropped) return dropped.problem();
    if (const auto renamed = rename(changes); !renamed) return renamed.problem();
    KeptColumns kept;
    for (std::size_t column = 0; column < names_.size(); ++column) {
      if (isDropped_[column]) continue;
      kept.columns.push_back(column);
      kept.names.push_back(names_[column]);
    }
    if (kept.columns.empty()) {
      return Problem{text::sentence("All variables are dropped."), path_, text::sentence("Keep one at least.")};
    }
    if (const auto unique = checkUnique(kept); !unique) return unique.problem();
    return kept;
  }

 private:
  Outcome<Done> drop(const VariableChanges& changes) {
    for (const std::string& name : changes.dropped) {
      const auto column = columnOf(name, "There is no variable \"^1\" to drop.");
      if (!column) return column.problem();
      isDropped_[*column] = true;
    }
    return Done{};
  }

  Outcome<Done> rename(const VariableChanges& changes) {
    std::vector<bool> isRenamed(names_.size(), false);
    for (const auto& [former, name] : changes.renamed) {
      const auto column = columnOf(former, "There is no variable \"^1\" to rename.");
      if (!column) return column.problem();
      if (isDropped_[*column]) {
        return Problem{text::sentence("The variable \"^1\" is both renamed and dropped.", {former}), path_,
                       text::sentence("Do one of them.")};
      }
      if (isRenamed[*column]) {
        return Problem{text::sentence("The variable \"^1\" is renamed twice.", {former}), path_,
                       text::sentence("Give it one name.")};
      }
      // A dictionary without variables takes a name as it is when all its characters may stand in one.
      if (name.empty() || Dictionary().goodName(name) != name) {
        return Problem{text::sentence("\"^1\" is no name that a variable can have.", {name}), path_,
                       text::sentence("Leave out characters that cannot be seen.")};
      }
      isRenamed[*column] = true;
      names_[*column] = name;
    }
    return Done{};
  }

  Outcome<std::size_t> columnOf(const std::string& name, std::string_view ifNone) const {
    const auto found = byName_.find(text::foldedName(name));
    if (found != byName_.end()) return found->second;
    const auto nearest = text::nearestWord(name, formerNames_);
    return Problem{text::sentence(ifNone, {name}), path_,
                   nearest ? text::sentence("Did you mean \"^1\"?", {*nearest})
                           : text::sentence("Name one of the file's columns.")};
  }

  Outcome<Done> checkUnique(const KeptColumns& kept) const {
    std::unordered_map<std::string, std::size_t> taken;
    for (std::size_t index = 0; index < kept.columns.size(); ++index) {
      const auto [other, isNew] = taken.emplace(text::foldedName(kept.names[index]), kept.columns[index]);
      if (isNew) continue;
      return Problem{
          text::sentence("The variables \"^1\" and \"^2\" would both be named \"^3\".",
                         {formerNames_[other->second], formerNames_[kept.columns[index]], kept.names[index]}),
          path_, text::sentence("Rename or drop one of them.")};
    }
    return Done{};
  }

  const std::string path_;
  const std::vector<std::string> formerNames_;
  std::vector<std::string> names_;
  std::vector<bool> isDropped_;
  std::unordered_map<std::string, std::size_t> byName_;
};

class ChangedTable final : public ExaminedTable {
 public:
  ChangedTable(std::unique_ptr<ExaminedTable> table, KeptColumns kept)
      : table_(std::move(table)), kept_(std::move(kept)) {
    takeEvidence();
  }

  bool isWhollyDescribed() const override { return table_->isWhollyDescribed(); }
  Outcome<Done> lookAtValues() override {
    Outcome<Done> looked = table_->lookAtValues();
    takeEvidence();
    return looked;
  }

  ScannedTable scanned() const override {
    const ScannedTable whole = table_->scanned();
    ScannedTable kept{whole.path, whole.place, kept_.names, evidence_, {}};
    for (const std::size_t column : kept_.columns) kept.fields.push_back(whole.fields[column]);
    return kept;
  }

  Outcome<Done> measureTexts(const std::vector<std::size_t>& columns) override {
    std::vector<std::size_t> ofWhole;
    for (const std::size_t column : columns) ofWhole.push_back(kept_.columns[column]);
    Outcome<Done> measured = table_->measureTexts(ofWhole);
    takeEvidence();
    return measured;
  }

  Outcome<std::shared_ptr<const DataFile>> open(InferredTypes types) override {
    Outcome<std::shared_ptr<const DataFile>> file = table_->open(ofWholeTable(std::move(types)));
    if (!file) return file;
    return changedFile(std::move(*file), std::move(kept_));
  }

 private:
  // Who was given scanned() refers to it.
  void takeEvidence() {
    const ScannedTable whole = table_->scanned();
    evidence_.clear();
    for (const std::size_t column : kept_.columns) evidence_.push_back(whole.columns[column]);
  }

  // The table knows its columns by their former names, and wants a variable for each; those of dropped ones are never
  // read.
  InferredTypes ofWholeTable(InferredTypes kept) const {
    const ScannedTable whole = table_->scanned();
    InferredTypes all;
    all.variables = inferTypes(whole, nullptr).variables;
    for (std::size_t index = 0; index < kept_.columns.size(); ++index) {
      const std::size_t column = kept_.columns[index];
      all.variables[column] = std::move(kept.variables[index]);
      all.variables[column].name = whole.names[column];
    }
    all.warnings = std::move(kept.warnings);
    return all;
  }

  std::unique_ptr<ExaminedTable> table_;
  KeptColumns kept_;
  std::vector<ColumnEvidence> evidence_;  // of the kept columns
};

}  // namespace

Outcome<std::unique_ptr<ExaminedTable>> changed(std::unique_ptr<ExaminedTable> table, const VariableChanges& changes) {
  if (changes.renamed.empty() && changes.dropped.empty()) return table;
  Outcome<KeptColumns> kept = ColumnChanges(table->scanned()).apply(changes);
  if (!kept) return kept.problem();
  return std::unique_ptr<ExaminedTable>(std::make_unique<ChangedTable>(std::move(table), std::move(*kept)));
}

}  // namespace workbench::data
