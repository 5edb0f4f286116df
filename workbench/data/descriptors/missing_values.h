// Missing values: from the entries that a schema or field lists to what a variable keeps.
//
// An entry is compared with the text of a cell. One that reads as a value of the field's type is a user-missing value
// and stays in the data; any other stands for no value at all.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "workbench/data/descriptors/described_table.h"
#include "workbench/data/descriptors/descriptor_value.h"
#include "workbench/data/descriptors/field_values.h"

namespace workbench::data {

struct MissingEntry {
  std::string text;
  std::optional<std::string> label;
};

// The entries in force where neither field nor schema lists any: the empty text.
std::vector<MissingEntry> defaultMissingEntries();

// Those that a schema or field lists; nothing when it has no such property.
std::optional<std::vector<MissingEntry>> missingEntries(const DescriptorObject& schemaOrField);

// What a field's entries come to.
struct MissingReading {
  std::vector<std::string> noValueTexts;
  std::vector<FieldValue> values;          // entries that stay in the data, in their order, every value once
  std::vector<std::string> labelsLeftOut;  // texts of entries whose labels belong to no value
};

// Labels of values go to `labels`.
MissingReading readMissing(const std::vector<MissingEntry>& entries, const DescriptorObject& field,
                           const FieldValueReader& values, ValueLabels& labels);

// The user-missing values of a variable whose descriptor declares no others: the first three that a variable can keep.
// Warns of the rest, which stay ordinary values.
MissingValues userMissing(const std::vector<FieldValue>& values, const std::string& fieldName,
                          DescriptorFindings& findings);

}  // namespace workbench::data
