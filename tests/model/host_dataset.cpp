#include "tests/model/host_dataset.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <vector>

#include "workbench/data/output_set.h"
#include "workbench/data/working/handed_out.h"
#include "workbench/data/working/kept_cases.h"
#include "workbench/data/working/open_dataset.h"
#include "workbench/data/working/save.h"
#include "workbench/output/document.h"
#include "workbench/runtime/current_run.h"

namespace workbench::tests::model {

namespace {

namespace enumerations = VRIX_Variable_Enumerations;

OBS toSlot(const Value& value) {
  OBS slot{};
  if (value.index() == 0) {
    slot.number = numberOf(value);
  } else {
    std::memcpy(slot.text, ofWidth(textOf(value), sizeof slot.text).data(), sizeof slot.text);
  }
  return slot;
}

DatasourceAttributes toHost(const std::vector<Attribute>& attributes) {
  DatasourceAttributes made;
  for (const Attribute& attribute : attributes) made.Add(attribute.name, attribute.values);
  return made;
}

std::vector<Attribute> fromHost(const DatasourceAttributes& attributes) {
  std::vector<Attribute> all;
  for (std::int32_t index = 0; index < attributes.Size(); ++index) {
    all.push_back({attributes.Name(index), attributes.Values(index)});
  }
  return all;
}

data::Variable toHost(const Variable& variable) {
  data::Variable made;
  made.name = variable.name;
  made.width = variable.width;
  made.format = {static_cast<FormatType>(variable.format.type), variable.format.width, variable.format.decimals};
  made.label = variable.label;
  for (const auto& [value, label] : variable.valueLabels) {
    if (variable.isNumber()) {
      made.numberLabels.emplace_back(numberOf(value), label);
    } else {
      made.textLabels.emplace_back(textOf(value), label);
    }
  }
  made.missing.code = variable.missing.code;
  for (std::size_t place = 0; place < 3; ++place) made.missing.values[place] = toSlot(variable.missing.values[place]);
  made.displayWidth = variable.columns;
  made.alignment = static_cast<enumerations::Alignment>(variable.alignment);
  made.level = static_cast<enumerations::MeasurementLevel>(variable.level);
  made.role = static_cast<enumerations::Role>(variable.role);
  made.attributes = toHost(variable.attributes);
  return made;
}

Variable fromHost(const data::Variable& variable) {
  Variable made;
  made.name = variable.name;
  made.width = variable.width;
  made.format = {static_cast<int>(variable.format.type), variable.format.width, variable.format.decimals};
  made.label = variable.label;
  for (const auto& [value, label] : variable.numberLabels) made.valueLabels.emplace_back(value, label);
  for (const auto& [value, label] : variable.textLabels) made.valueLabels.emplace_back(value, label);
  made.missing.code = variable.missing.code;
  for (std::size_t place = 0; place < 3; ++place) {
    const OBS& slot = variable.missing.values[place];
    made.missing.values[place] = variable.width == 0 ? Value(slot.number) : Value(std::string(slot.text, 8));
  }
  made.columns = variable.displayWidth;
  made.alignment = static_cast<int>(variable.alignment);
  made.level = static_cast<int>(variable.level);
  made.role = static_cast<int>(variable.role);
  made.attributes = fromHost(variable.attributes);
  return made;
}

std::vector<Case> casesOf(const data::Dataset& dataset) {
  std::vector<Case> all;
  data::DatasetPass pass(dataset, data::CaseUse::onlyRead);
  for (data::CaseSpan block = pass.next(); block; block = pass.next()) {
    for (std::size_t row = 0; row < block.count; ++row) {
      Case one;
      for (std::int32_t index = 0; index < dataset.dictionary().size(); ++index) {
        const OBS* slot =
            block.cases + row * block.caseSlots + pass.layout().slotOfVariable[static_cast<std::size_t>(index)];
        const auto width = static_cast<std::size_t>(dataset.dictionary().at(index).width);
        one.push_back(width == 0 ? Value(slot->number) : Value(std::string(slot->text, width)));
      }
      all.push_back(one);
    }
  }
  return all;
}

// A run in which data can be read and written, as long as this lives.
class HostRun {
 public:
  explicit HostRun(data::OutputSet* outputs) {
    data::letGoOfAllHandedOut();  // as at the end of whatever command ran before
    currentRun().command = &command_;
    currentRun().outputs = outputs;
  }
  ~HostRun() { currentRun() = CurrentRun(); }

 private:
  output::Command command_;
};

}  // namespace

std::shared_ptr<data::Dataset> toHost(const Dataset& dataset) {
  data::Dictionary dictionary;
  for (const Variable& variable : dataset.variables) dictionary.add(toHost(variable));
  dictionary.attributes = toHost(dataset.attributes);
  if (dataset.filter) dictionary.filter = static_cast<std::int32_t>(*dataset.filter);
  if (dataset.weight) dictionary.weight = static_cast<std::int32_t>(*dataset.weight);
  dictionary.split.assign(dataset.split.begin(), dataset.split.end());

  const data::CaseLayout layout(dictionary);
  const std::size_t slots = std::max<std::size_t>(layout.caseSlots, 1);
  data::CaseKeeper keeper(slots);
  for (const Case& one : dataset.cases) {
    std::vector<OBS> row(slots);
    for (std::size_t place = 0; place < one.size(); ++place) {
      OBS* slot = row.data() + layout.slotOfVariable[place];
      if (one[place].index() == 0) {
        slot->number = numberOf(one[place]);
      } else {
        const std::size_t bytes = (textOf(one[place]).size() + sizeof(OBS) - 1) / sizeof(OBS) * sizeof(OBS);
        std::memcpy(slot, ofWidth(textOf(one[place]), bytes).data(), bytes);
      }
    }
    keeper.add(row.data(), 1, slots);
  }
  return std::make_shared<data::Dataset>(dictionary, keeper.finish());
}

Dataset fromHost(const data::Dataset& dataset) {
  const data::Dictionary& dictionary = dataset.dictionary();
  Dataset made;
  for (const data::Variable& variable : dictionary.variables()) made.variables.push_back(fromHost(variable));
  made.attributes = fromHost(dictionary.attributes);
  if (dictionary.filter >= 0) made.filter = static_cast<std::size_t>(dictionary.filter);
  if (dictionary.weight >= 0) made.weight = static_cast<std::size_t>(dictionary.weight);
  made.split.assign(dictionary.split.begin(), dictionary.split.end());
  made.cases = casesOf(dataset);
  made.path = dataset.path();
  return made;
}

void writeFile(const Dataset& dataset, const std::string& path) {
  data::OutputSet outputs(nullptr);
  const HostRun run(&outputs);
  const auto saved = data::saveDataset(toHost(dataset), path, "", outputs);
  if (!saved) throw std::runtime_error(saved.problem().text());
  if (const auto committed = outputs.commit(); !committed) throw std::runtime_error(committed.problem().text());
}

std::shared_ptr<data::Dataset> openFile(const std::string& path) {
  const HostRun run(nullptr);
  const auto opened = data::openDataset(path, {});
  if (!opened) throw std::runtime_error(opened.problem().text());
  return *opened;
}

}  // namespace workbench::tests::model
