// Holds a results document against docs/results.schema.json, and against what a schema cannot say: that places and
// footnotes are there, that no two cells share a place, that the verdict is that of the commands.
//
// The harnesses of the tests call expectValidResults for every document that a run leaves, so that a writer that breaks
// the format fails the test of the run that it broke it in.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace workbench::tests {

// What is wrong with the document, each fault with its place ("/commands/0/items/3/title: ..."); none when it is valid.
std::vector<std::string> faultsOf(const nlohmann::json& document);
// The same of a text: it has to be JSON in UTF-8, and no object may name a member twice.
std::vector<std::string> faultsOfText(std::string_view text);

// Fails the running test when the text is no valid results document.
void expectValidResults(std::string_view text);

// The schema as it is shipped, and faults of a document against any schema.
const nlohmann::json& resultsSchema();
std::vector<std::string> schemaFaultsOf(const nlohmann::json& document, const nlohmann::json& schema);

}  // namespace workbench::tests
