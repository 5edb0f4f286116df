#include "workbench/data/working/journaled_source.h"

#include <fmt/format.h>

#include <utility>

#include "workbench/data/working/journal_call.h"

namespace workbench::data {

JournaledSource::JournaledSource(std::unique_ptr<VRIX_DataSource> source, std::string type)
    : owned_(std::move(source)), source_(*owned_), type_(std::move(type)), speaksFor_(this) {}

JournaledSource::JournaledSource(VRIX_DataSource& source, std::string type, const void* speaksFor)
    : source_(source), type_(std::move(type)), speaksFor_(speaksFor) {}

JournaledSource::~JournaledSource() { journal().destroyed(speaksFor_); }

std::string JournaledSource::name() const { return journal().nameOf(speaksFor_, type_); }

std::int32_t JournaledSource::GetNVars() const {
  return journaledCall([&] { return source_.GetNVars(); }, [&] { return name() + ".GetNVars()"; });
}

VRIX_Variable& JournaledSource::GetVariable(std::int32_t index) const {
  return journaledCall([&]() -> VRIX_Variable& { return source_.GetVariable(index); },
                       [&] { return fmt::format("{}.GetVariable({})", name(), index); });
}

std::int32_t JournaledSource::FindVarIndex(std::string_view sought, FindOptions options) const {
  return journaledCall(
      [&] { return source_.FindVarIndex(sought, options); },
      [&] { return fmt::format("{}.FindVarIndex({}, {})", name(), inJournal(sought), static_cast<int>(options)); });
}

std::int32_t JournaledSource::GetFilterVarIndex() const {
  return journaledCall([&] { return source_.GetFilterVarIndex(); }, [&] { return name() + ".GetFilterVarIndex()"; });
}

std::int32_t JournaledSource::GetWeightVarIndex() const {
  return journaledCall([&] { return source_.GetWeightVarIndex(); }, [&] { return name() + ".GetWeightVarIndex()"; });
}

std::int32_t JournaledSource::GetNSplitVars() const {
  return journaledCall([&] { return source_.GetNSplitVars(); }, [&] { return name() + ".GetNSplitVars()"; });
}

std::int32_t JournaledSource::GetSplitVarIndex(std::int32_t position) const {
  return journaledCall([&] { return source_.GetSplitVarIndex(position); },
                       [&] { return fmt::format("{}.GetSplitVarIndex({})", name(), position); });
}

ExtNameStr JournaledSource::GetFileSpecExt() const {
  return journaledCall([&] { return source_.GetFileSpecExt(); }, [&] { return name() + ".GetFileSpecExt()"; });
}

const DatasourceAttributes& JournaledSource::GetAttributes() const {
  return journaledCall([&]() -> const DatasourceAttributes& { return source_.GetAttributes(); },
                       [&] { return name() + ".GetAttributes()"; });
}

void JournaledSource::SetAttributes(const DatasourceAttributes& attributes) {
  journaledCall([&] { source_.SetAttributes(attributes); },
                [&] { return fmt::format("{}.SetAttributes({})", name(), inJournal(attributes)); });
}

VRIX_Variable& JournaledSource::MakeVariable(std::int32_t type, std::int32_t* index) {
  return journaledCall(
      [&]() -> VRIX_Variable& { return source_.MakeVariable(type, index); },
      [&] { return fmt::format("{}.MakeVariable({}, {})", name(), type, index == nullptr ? "null" : "index"); });
}

VRIX_Variable& JournaledSource::MakeVariable(const VRIX_Variable& like, std::int32_t* index) {
  return journaledCall([&]() -> VRIX_Variable& { return source_.MakeVariable(like, index); },
                       [&] {
                         return fmt::format("{}.MakeVariable({}, {})", name(), inJournal(like),
                                            index == nullptr ? "null" : "index");
                       });
}

std::uint32_t JournaledSource::ObsIndex(std::int32_t variable) const {
  return journaledCall([&] { return source_.ObsIndex(variable); },
                       [&] { return fmt::format("{}.ObsIndex({})", name(), variable); });
}

std::unique_ptr<VRIX_InputCaseIterator> JournaledSource::CreateCaseIterator(IteratorOptions options) {
  return journaledCall([&] { return source_.CreateCaseIterator(options); },
                       [&] { return fmt::format("{}.CreateCaseIterator({})", name(), static_cast<int>(options)); });
}

void JournaledSource::CommitDictionary() {
  journaledCall([&] { source_.CommitDictionary(); }, [&] { return name() + ".CommitDictionary()"; });
}

std::size_t JournaledSource::GetCaseSize() const {
  return journaledCall([&] { return source_.GetCaseSize(); }, [&] { return name() + ".GetCaseSize()"; });
}

void JournaledSource::WriteCase(const OBS* slots) {
  journaledCall([&] { source_.WriteCase(slots); }, [&] { return name() + ".WriteCase(case)"; });
}

void JournaledSource::Close() {
  journaledCall([&] { source_.Close(); }, [&] { return name() + ".Close()"; });
}

}  // namespace workbench::data
