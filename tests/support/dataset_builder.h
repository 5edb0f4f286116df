// Builds small datasets for tests: dataset().numeric("id", {1, 2, 3}).text("town", 8, {"Ghent", "Mons", ""}).build().
#pragma once

#include <cfloat>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "workbench/data/working/dataset.h"

namespace workbench::tests {

inline constexpr double missing = -DBL_MAX;

class DatasetBuilder {
 public:
  using Change = std::function<void(data::Variable&)>;

  DatasetBuilder& numeric(const std::string& name, std::vector<double> values, const Change& change = {}) {
    data::Variable variable;
    variable.name = name;
    add(variable, change);
    columns_.push_back({std::move(values), {}});
    return *this;
  }
  DatasetBuilder& text(const std::string& name, std::int32_t width, std::vector<std::string> values,
                       const Change& change = {}) {
    data::Variable variable;
    variable.name = name;
    variable.width = width;
    variable.format = {FormatType::text, width, 0};
    variable.level = VRIX_Variable_Enumerations::MeasurementLevel::nominal;
    variable.alignment = VRIX_Variable_Enumerations::Alignment::left;
    add(variable, change);
    columns_.push_back({{}, std::move(values)});
    return *this;
  }
  // Anything else about the dictionary: filter, weight, split, attributes.
  DatasetBuilder& with(const std::function<void(data::Dictionary&)>& change) {
    change(dictionary_);
    return *this;
  }

  std::shared_ptr<data::Dataset> build() const {
    const data::CaseLayout layout(dictionary_);
    data::CaseKeeper keeper(std::max<std::size_t>(layout.caseSlots, 1));
    std::vector<OBS> row(std::max<std::size_t>(layout.caseSlots, 1));
    for (std::size_t index = 0; index < cases(); ++index) {
      fill(row, layout, index);
      keeper.add(row.data(), 1, row.size());
    }
    return std::make_shared<data::Dataset>(dictionary_, keeper.finish());
  }
  const data::Dictionary& dictionary() const { return dictionary_; }

 private:
  struct Column {
    std::vector<double> numbers;
    std::vector<std::string> texts;
  };

  void add(data::Variable& variable, const Change& change) {
    if (change) change(variable);
    dictionary_.add(variable);
  }
  std::size_t cases() const {
    return columns_.empty() ? 0 : std::max(columns_[0].numbers.size(), columns_[0].texts.size());
  }
  void fill(std::vector<OBS>& row, const data::CaseLayout& layout, std::size_t index) const {
    for (std::size_t column = 0; column < columns_.size(); ++column) {
      const data::Variable& variable = dictionary_.at(static_cast<std::int32_t>(column));
      OBS* value = row.data() + layout.slotOfVariable[column];
      if (variable.isNumeric()) {
        value->number = columns_[column].numbers[index];
        continue;
      }
      std::string text = columns_[column].texts[index];
      text.resize(std::size_t{variable.slots()} * sizeof(OBS), ' ');
      std::memcpy(value, text.data(), text.size());
    }
  }

  data::Dictionary dictionary_;
  std::vector<Column> columns_;
};

inline DatasetBuilder dataset() { return {}; }

}  // namespace workbench::tests
