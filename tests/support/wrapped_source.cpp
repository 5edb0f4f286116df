#include "tests/support/wrapped_source.h"

#include <utility>

namespace workbench::tests {

WrappedIterator::WrappedIterator(std::unique_ptr<VRIX_InputCaseIterator> inner, std::vector<std::uint32_t> slots)
    : inner_(std::move(inner)), slots_(std::move(slots)) {
  slotOfVariable_ = slots_.data();
}

WrappedIterator::~WrappedIterator() {
  if (whenDestroyed) whenDestroyed();
}

bool WrappedIterator::NextBlock() {
  const std::int64_t ordinal = ordinal_++;
  if (beforeCase) beforeCase(ordinal);
  if (!inner_->NextCase()) return false;
  case_ = inner_->GetObsPointer(0);
  next_ = end_ = case_;
  position_ = position ? position(ordinal) : ordinal;
  return true;
}

std::int32_t WrappedSource::FindVarIndex(std::string_view name, FindOptions options) const {
  const std::int32_t found = inner_.FindVarIndex(name, options);
  return found >= 0 && found == added_ && placeOfAdded >= 0 ? placeOfAdded : found;
}

VRIX_Variable& WrappedSource::MakeVariable(std::int32_t type, std::int32_t* index) {
  VRIX_Variable& made = inner_.MakeVariable(type, &added_);
  placeAdded(index);
  return made;
}

VRIX_Variable& WrappedSource::MakeVariable(const VRIX_Variable& like, std::int32_t* index) {
  VRIX_Variable& made = inner_.MakeVariable(like, &added_);
  placeAdded(index);
  return made;
}

void WrappedSource::placeAdded(std::int32_t* index) {
  if (index != nullptr) *index = placeOfAdded >= 0 ? placeOfAdded : added_;
}

std::unique_ptr<VRIX_InputCaseIterator> WrappedSource::CreateCaseIterator(IteratorOptions options) {
  if (withoutIterators) return nullptr;
  std::vector<std::uint32_t> slots;
  for (std::int32_t index = 0; index < GetNVars(); ++index) slots.push_back(ObsIndex(index));
  auto wrapped = std::make_unique<WrappedIterator>(inner_.CreateCaseIterator(options), std::move(slots));
  if (onIterator) onIterator(*wrapped);
  return wrapped;
}

class DatasetsWithOne::Shown final : public SvrDMDataset {
 public:
  explicit Shown(MakeView makeView) : makeView_(std::move(makeView)) {}

  void Retain() override {}
  void Release() override {}
  std::string GetHandle() const override { return "b"; }
  std::unique_ptr<VRIX_DataSource> OpenView(bool) override { return makeView_(); }

 private:
  MakeView makeView_;
};

DatasetsWithOne::DatasetsWithOne(ServerDataManager& others, MakeView makeView)
    : others_(others), shown_(std::make_unique<Shown>(std::move(makeView))) {}

DatasetsWithOne::~DatasetsWithOne() = default;

SvrDMItemPtr DatasetsWithOne::GetDataSet(std::string_view name) {
  return name == "b" ? SvrDMItemPtr(shown_.get()) : others_.GetDataSet(name);
}

}  // namespace workbench::tests
