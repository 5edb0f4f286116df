#include "engine/case_walk.h"

#include <memory>
#include <optional>

#include "driver/messages.h"
#include "engine/case_order.h"
#include "engine/case_table.h"
#include "engine/prepared_pairs.h"
#include "engine/saved_outputs.h"

namespace compdatas {

namespace {

// What the flag variable says of an active case.
constexpr double flagUnpaired = -1.0;
constexpr double flagEqual = 0.0;
constexpr double flagDifferent = 1.0;

class CaseWalk {
 public:
  CaseWalk(DatasetComparer& comparer, SavedOutputs& outputs, BpPivotTable& table)
      : comparer_(comparer), outputs_(outputs), table_(table) {}

  // Steps 1 to 5 are one walk; what the host throws leaves it to the caller.
  bool run() {
    if (!openReaders()) return false;       // 1
    outputs_.makeDictionaries();            // 2
    caseTable_.emplace(comparer_, table_);  // 3
    pairs_.emplace(comparer_);
    readFirstCases();
    joinNeighbours();
    walkPairs();  // 4
    if (inOrder_) walkLeftovers();
    complete();  // 5
    return inOrder_;
  }

  // Also after an exception. The iterators go before the outputs, the active one (opened last) first.
  void release() {
    outputs_.freeBuffer();
    for (CaseReader& reader : comparer_.readers) reader.iterator.reset();
  }

  void finishTable() {
    caseTable_->finish();
    const CaseReader& active = comparer_.readers[activeSide];
    const CaseReader& compared = comparer_.readers[compareSide];
    // Only cases left over at the end and pairs with a difference count here; a case without a partner that was met
    // inside the walk does not.
    if (comparer_.unpairedTail == 0 && active.mismatchedCases == 0 && compared.mismatchedCases == 0) {
      comparer_.casesAllMatch = true;
    }
    if (!comparer_.options.caseTable() || comparer_.casesAllMatch) table_.Destroy();
  }

 private:
  // The active iterator is made only when the comparison one could be.
  bool openReaders() {
    if (comparer_.compareSource == nullptr) return false;
    CaseReader& active = comparer_.readers[activeSide];
    CaseReader& compared = comparer_.readers[compareSide];
    compared.iterator = comparer_.compareSource->CreateCaseIterator(IteratorOptions::standard);
    if (compared.iterator == nullptr) return false;
    active.iterator = comparer_.activeSource.CreateCaseIterator(IteratorOptions::standard);
    return active.iterator != nullptr;
  }

  void readFirstCases() {
    comparer_.casesAllMatch = false;
    comparer_.caseSteps = 0;
    comparer_.casesCompared = 0;
    for (CaseReader& reader : comparer_.readers) reader.casesRead = reader.matchedCases = reader.mismatchedCases = 0;
    readActive();
    readCompared();
    comparer_.unpairedTail = 0;
    outputs_.allocateBuffer();
  }

  // What lies side by side in the first two cases does so in all.
  void joinNeighbours() {
    if (active_ != ReadStatus::current || compared_ != ReadStatus::current) return;
    pairs_->joinRuns(*comparer_.readers[activeSide].iterator, *comparer_.readers[compareSide].iterator);
  }

  void walkPairs() {
    while (true) {
      if (active_ == ReadStatus::outOfOrder) {
        reportActiveOutOfOrder();
        return;
      }
      if (active_ == ReadStatus::ended || compared_ != ReadStatus::current) break;
      const int order = compareKeys(comparer_.caseIdKeys);
      ++comparer_.caseSteps;
      if (order > 0) {
        readCompared();
      } else if (order < 0) {
        setFlag(flagUnpaired);
        readActive();
      } else {
        walkPair();
        readCompared();
        readActive();
      }
    }
    if (compared_ == ReadStatus::outOfOrder) reportComparedOutOfOrder();
  }

  void walkPair() {
    ++comparer_.casesCompared;
    if (comparePair()) {
      outputs_.writeMatched();
      for (CaseReader& reader : comparer_.readers) ++reader.matchedCases;
      setFlag(flagEqual);
    } else {
      caseTable_->show();
      outputs_.writeMismatched();
      for (CaseReader& reader : comparer_.readers) ++reader.mismatchedCases;
      setFlag(flagDifferent);
    }
  }

  bool comparePair() {
    const VRIX_InputCaseIterator& active = *comparer_.readers[activeSide].iterator;
    if (outputs_.any()) outputs_.keepCase(active);
    return pairs_->compare(active, *comparer_.readers[compareSide].iterator);
  }

  void walkLeftovers() {
    while (active_ == ReadStatus::current) {
      setFlag(flagUnpaired);
      ++comparer_.caseSteps;
      ++comparer_.unpairedTail;
      readActive();
    }
    if (active_ == ReadStatus::outOfOrder) reportActiveOutOfOrder();
    while (compared_ == ReadStatus::current) {
      ++comparer_.caseSteps;
      ++comparer_.unpairedTail;
      readCompared();
    }
    if (compared_ == ReadStatus::outOfOrder) reportComparedOutOfOrder();
  }

  void complete() {
    if (active_ == ReadStatus::ended && compared_ == ReadStatus::ended) {
      if (comparer_.flagVarIndex > 0) {
        AddNotesWithGroup(BpNoteKind::addedVariable, BpString("", false), BpString("", false),
                          BpString(comparer_.flagVarName, false));
      }
      outputs_.addNotes();
    }
    outputs_.close();
  }

  // A flag variable that is the dataset's first variable is never written.
  void setFlag(double value) {
    if (comparer_.flagVarIndex > 0) {
      comparer_.readers[activeSide].iterator->GetObsPointer(comparer_.flagVarIndex)->number = value;
    }
  }

  void readActive() { active_ = readNextCase(comparer_, activeSide); }
  void readCompared() { compared_ = readNextCase(comparer_, compareSide); }

  void reportActiveOutOfOrder() {
    inOrder_ = false;
    reportRefusal("The active dataset is not sort...");
  }
  void reportComparedOutOfOrder() {
    inOrder_ = false;
    reportRefusal("The comparison dataset is not sort...");
  }

  DatasetComparer& comparer_;
  SavedOutputs& outputs_;
  BpPivotTable& table_;
  std::optional<CaseTable> caseTable_;
  std::optional<PreparedPairs> pairs_;
  ReadStatus active_ = ReadStatus::ended;
  ReadStatus compared_ = ReadStatus::ended;
  bool inOrder_ = true;
};

}  // namespace

bool walkCases(DatasetComparer& comparer, BpPivotTable& caseTable) {
  std::unique_ptr<SavedOutputs> outputs;
  try {
    outputs = std::make_unique<SavedOutputs>(comparer);
  } catch (const ErrorText& error) {
    reportRefusal(error.GetText());
    return false;
  }

  CaseWalk walk(comparer, *outputs, caseTable);
  bool succeeded = false;
  try {
    succeeded = walk.run();
  } catch (const ErrorText& error) {
    reportRefusal(error.GetText());
  } catch (...) {
    // What else the host may throw ends the walk without a message.
  }
  walk.release();
  outputs.reset();
  if (succeeded) walk.finishTable();
  return succeeded;
}

}  // namespace compdatas
