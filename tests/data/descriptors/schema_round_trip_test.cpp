// The law of descriptors: a dictionary that was written is read back as the equal dictionary.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "tests/data/descriptors/random_dictionary.h"
#include "workbench/data/descriptors/schema_writer.h"

namespace workbench::data {
namespace {

TEST(WrittenDictionary, IsReadBackAsTheEqualDictionary) {
  EXPECT_TRUE(rc::check([] {
    const Dictionary dictionary = someDictionary();
    const Outcome<std::string> text = schemaText(dictionary);
    if (!text) RC_FAIL(text.problem().text());
    const Outcome<DescribedTable> table = readSchemaText(*text);
    if (!table) RC_FAIL(table.problem().text() + "\n" + *text);
    RC_ASSERT(table->warnings.empty());
    RC_ASSERT(table->fields.size() == dictionary.variables().size());
    for (std::int32_t index = 0; index < dictionary.size(); ++index) {
      const DescribedField& field = table->fields[static_cast<std::size_t>(index)];
      const std::string differs = difference(dictionary.at(index), field.variable);
      if (!differs.empty()) RC_FAIL(differs + " of " + *text);
      RC_ASSERT(field.format && field.displayWidth && field.alignment);
      RC_ASSERT(field.width.has_value() != dictionary.at(index).isNumeric());
      RC_ASSERT(field.reading.noValueTexts == std::vector<std::string>{""});
    }
    RC_ASSERT(table->filter == nameOf(dictionary, dictionary.filter));
    RC_ASSERT(table->weight == nameOf(dictionary, dictionary.weight));
    RC_ASSERT(table->split.size() == dictionary.split.size());
    for (std::size_t index = 0; index < table->split.size(); ++index) {
      RC_ASSERT(table->split[index] == nameOf(dictionary, dictionary.split[index]));
    }
    RC_ASSERT(table->attributes == dictionary.attributes);
  }));
}

}  // namespace
}  // namespace workbench::data
