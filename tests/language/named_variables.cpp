#include "tests/language/named_variables.h"

#include "host/messages.h"
#include "workbench/text/folding.h"

namespace workbench::language {

namespace {

[[noreturn]] void refuse() { throw ErrorText("This dataset has nothing but the names of its variables."); }

class NamedVariable final : public VRIX_Variable {
 public:
  explicit NamedVariable(std::string name) : name_(std::move(name)) {}

  const std::string& GetName() const override { return name_; }
  std::int32_t GetType() const override { return 0; }
  void GetFormatEx(FormatType&, std::int32_t&, std::int32_t&) const override { refuse(); }
  VRIX_Variable_Enumerations::MeasurementLevel GetMeasurementLevel() const override { refuse(); }
  const std::string* GetLabel() const override { return nullptr; }
  RefCountPtr<VRIX_ValueLabelMap> GetValueLabels() const override { return {}; }
  std::int32_t GetMissingValues(const OBS*&, const OBS*&, const OBS*&) const override { return 0; }
  std::int32_t GetDisplayWidth() const override { return 8; }
  VRIX_Variable_Enumerations::Alignment GetAlignment() const override { refuse(); }
  VRIX_Variable_Enumerations::Role GetRole() const override { refuse(); }
  const DatasourceAttributes& GetAttributes() const override { refuse(); }
  void SetName(std::string_view) override { refuse(); }
  void SetFormat(FormatType, std::int32_t, std::int32_t) override { refuse(); }
  void SetMeasurementLevel(VRIX_Variable_Enumerations::MeasurementLevel) override { refuse(); }
  void SetLabel(std::string_view) override { refuse(); }
  void AddValueLabel(double, std::string_view) override { refuse(); }

 private:
  std::string name_;
};

class NamedVariables final : public VRIX_DataSource {
 public:
  explicit NamedVariables(const std::vector<std::string>& names) {
    for (const std::string& name : names) variables_.push_back(std::make_unique<NamedVariable>(name));
  }

  std::int32_t GetNVars() const override { return static_cast<std::int32_t>(variables_.size()); }
  VRIX_Variable& GetVariable(std::int32_t index) const override {
    return *variables_.at(static_cast<std::size_t>(index));
  }
  std::int32_t FindVarIndex(std::string_view name, FindOptions) const override {
    for (std::int32_t index = 0; index < GetNVars(); ++index) {
      if (text::sameName(GetVariable(index).GetName(), name)) return index;
    }
    return -1;
  }
  std::int32_t GetFilterVarIndex() const override { return -1; }
  std::int32_t GetWeightVarIndex() const override { return -1; }
  std::int32_t GetNSplitVars() const override { return 0; }
  std::int32_t GetSplitVarIndex(std::int32_t) const override { refuse(); }
  ExtNameStr GetFileSpecExt() const override { return ExtNameStr(""); }
  const DatasourceAttributes& GetAttributes() const override { refuse(); }
  void SetAttributes(const DatasourceAttributes&) override { refuse(); }
  VRIX_Variable& MakeVariable(std::int32_t, std::int32_t*) override { refuse(); }
  VRIX_Variable& MakeVariable(const VRIX_Variable&, std::int32_t*) override { refuse(); }
  std::uint32_t ObsIndex(std::int32_t) const override { refuse(); }
  std::unique_ptr<VRIX_InputCaseIterator> CreateCaseIterator(IteratorOptions) override { return nullptr; }
  void CommitDictionary() override { refuse(); }
  std::size_t GetCaseSize() const override { refuse(); }
  void WriteCase(const OBS*) override { refuse(); }
  void Close() override { refuse(); }

 private:
  std::vector<std::unique_ptr<NamedVariable>> variables_;
};

}  // namespace

std::unique_ptr<VRIX_DataSource> namedVariables(const std::vector<std::string>& names) {
  return std::make_unique<NamedVariables>(names);
}

}  // namespace workbench::language
