#include "workbench/data/descriptors/schema_keys.h"

#include <fmt/format.h>

#include <cstddef>
#include <optional>
#include <vector>

#include "workbench/data/descriptors/property_names.h"

namespace workbench::data {
namespace {

using FieldNames = std::unordered_set<std::string>;

enum class SingleName { allowed, refused };  // a key of one field as a plain text, as earlier descriptors have it

// How many names the key has; all are names of fields, unless none are given to hold them against.
std::optional<std::size_t> checkKey(const DescriptorValue& key, SingleName single, const FieldNames* names) {
  std::vector<DescriptorValue> entries;
  if (single == SingleName::allowed && key.isText()) {
    entries.push_back(key);
  } else {
    entries = key.list().value_or(std::vector<DescriptorValue>{});
    if (entries.empty()) key.reject("^1 names no field.", "Name at least one, or leave it out.");
  }
  FieldNames known;
  for (const DescriptorValue& entry : entries) {
    const std::optional<std::string> name = entry.text();
    if (!name) return std::nullopt;
    if (!known.insert(*name).second) entry.rejectWith("The key names \"^1\" twice.", {*name}, "Name it once.");
    if (names == nullptr || names->contains(*name)) continue;
    entry.reject("^1 is \"^2\", and no field has this name.", {*name},
                 remedyWithHint("Write the name of a field.", *name, {names->begin(), names->end()}));
  }
  return entries.size();
}

void checkForeignKey(const DescriptorValue& value, const FieldNames& names) {
  const auto key = value.object();
  const auto fields = key ? key->required(property::fields) : std::nullopt;
  const auto reference = key ? key->required(property::reference) : std::nullopt;
  const auto target = reference ? reference->object() : std::nullopt;
  const auto targetFields = target ? target->required(property::fields) : std::nullopt;
  if (!fields || !targetFields) return;
  const auto resource = target->at(property::resource);
  const std::optional<std::string> resourceName = resource ? resource->text() : std::string();
  const bool isOwnTable = resourceName && resourceName->empty();
  const auto count = checkKey(*fields, SingleName::allowed, &names);
  const auto targetCount = checkKey(*targetFields, SingleName::allowed, isOwnTable ? &names : nullptr);
  if (!count || !targetCount || *count == *targetCount) return;
  value.rejectWith("The foreign key has ^1 fields and refers to ^2.",
                   {fmt::to_string(*count), fmt::to_string(*targetCount)}, "Name as many fields on both sides.");
}

}  // namespace

void checkKeys(const DescriptorObject& schema, const FieldNames& fieldNames) {
  if (const auto key = schema.at(property::primaryKey)) (void)checkKey(*key, SingleName::allowed, &fieldNames);
  if (const auto keys = schema.at(property::uniqueKeys)) {
    const auto entries = keys->list().value_or(std::vector<DescriptorValue>{});
    if (entries.empty()) keys->reject("^1 lists no key.", "List at least one, or leave it out.");
    for (const DescriptorValue& key : entries) (void)checkKey(key, SingleName::refused, &fieldNames);
  }
  if (const auto keys = schema.at(property::foreignKeys)) {
    for (const DescriptorValue& key : keys->list().value_or(std::vector<DescriptorValue>{})) {
      checkForeignKey(key, fieldNames);
    }
  }
}

}  // namespace workbench::data
