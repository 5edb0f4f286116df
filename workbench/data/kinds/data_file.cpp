#include "workbench/data/data_file.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <future>
#include <utility>

#include "workbench/data/descriptors/dictionary_place.h"
#include "workbench/data/files/type_inference.h"
#include "workbench/data/files/unlocked_dataset.h"
#include "workbench/data/kinds/changed_table.h"
#include "workbench/data/kinds/data_kind.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

Outcome<std::unique_ptr<ExaminedTable>> examined(const std::string& path, const VariableChanges& changes) {
  const Outcome<const DataKind*> kind = dataKind(path);
  if (!kind) return kind.problem();
  Outcome<std::unique_ptr<ExaminedTable>> table = (*kind)->examine(path);
  return table ? changed(std::move(*table), changes) : std::move(table);
}

// The other table on its way: it is examined on a thread of its own while this one is.
using TableInFlight = std::optional<std::future<Outcome<std::unique_ptr<ExaminedTable>>>>;

TableInFlight startExaminingPartner(const OpenOptions& options) {
  if (!options.typesWith) return std::nullopt;
  return std::async(std::launch::async, [&options] { return examined(*options.typesWith, options.typesChanges); });
}

// What is inferred is inferred over both, so that the values of both have to be known.
Outcome<Done> lookAtValues(ExaminedTable& table, ExaminedTable* partner) {
  if (partner == nullptr || table.isWhollyDescribed() == partner->isWhollyDescribed()) return Done{};
  return table.isWhollyDescribed() ? table.lookAtValues() : partner->lookAtValues();
}

// Columns that become texts because of the other table have to be measured before both know how wide they are.
Outcome<InferredTypes> typesOf(ExaminedTable& table, ExaminedTable* partner) {
  if (const Outcome<Done> looked = lookAtValues(table, partner); !looked) return looked.problem();
  const ScannedTable own = table.scanned();
  std::optional<ScannedTable> others;
  if (partner != nullptr) others.emplace(partner->scanned());
  if (Outcome<Done> measured = table.measureTexts(columnsBecomingText(own, others ? &*others : nullptr)); !measured) {
    return measured.problem();
  }
  if (others) {
    if (Outcome<Done> measured = partner->measureTexts(columnsBecomingText(*others, &own)); !measured) {
      return measured.problem();
    }
  }
  return inferTypes(own, others ? &*others : nullptr);
}

}  // namespace

Outcome<std::shared_ptr<const DataFile>> openDataFile(const std::string& path, const OpenOptions& options) {
  Outcome<UnlockedFiles> unlocked = unlockedForOpening(path, options);
  if (!unlocked) return unlocked.problem();

  // 1. Read the table once, and the other one at the same time.
  TableInFlight inFlight = startExaminingPartner(options);
  Outcome<std::unique_ptr<ExaminedTable>> table = examined(path, options.changes);
  std::optional<Outcome<std::unique_ptr<ExaminedTable>>> partner;
  if (inFlight) partner = inFlight->get();
  if (!table) return table.problem();
  if (partner && !*partner) return partner->problem();

  // 2. What nobody declared is inferred over both.
  Outcome<InferredTypes> types = typesOf(**table, partner ? (**partner).get() : nullptr);
  if (!types) return types.problem();
  Outcome<std::shared_ptr<const DataFile>> file = (*table)->open(std::move(*types));
  if (!file) return file;
  return holding(std::move(*unlocked), std::move(*file));
}

bool bringsDictionary(const std::string& path) {
  if (bringsProtectedDictionary(path)) return true;
  const Outcome<const DataKind*> kind = dataKind(path);
  return kind && (*kind)->bringsDictionary(path);
}

Outcome<std::optional<std::string>> fileWrittenBeside(const std::string& path) {
  const Outcome<const DataKind*> kind = dataKind(path);
  if (!kind) return kind.problem();
  if (!(*kind)->hasDictionaryBeside) return std::optional<std::string>();
  const Outcome<DictionaryPlace> place = dictionaryPlaceOf(path);
  if (!place) return place.problem();
  return place->isPackage ? std::nullopt : std::optional(place->path);
}

Outcome<Done> checkCanBeWritten(const std::string& path) {
  const Outcome<const DataKind*> kind = dataKind(path);
  if (kind && (*kind)->create != nullptr) return Done{};
  Problem problem =
      kind ? Problem{text::sentence("A ^1 is only read, not written.", {text::sentence((*kind)->name)}), path, ""}
           : kind.problem();
  problem.remedy = text::sentence("Use one of these: ^1.", {fmt::format("{}", fmt::join(dataEndings(true), ", "))});
  return problem;
}

Outcome<std::unique_ptr<CaseWriter>> createDataFile(const std::string& path, const Dictionary& dictionary,
                                                    const Secret& password) {
  if (const Outcome<Done> checked = checkCanBeWritten(path); !checked) return checked.problem();
  if (const Outcome<Done> usable = checkOutputPassword(path, password); !usable) return usable.problem();
  return (**dataKind(path)).create(path, dictionary, password);
}

}  // namespace workbench::data
