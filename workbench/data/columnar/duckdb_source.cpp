#include "workbench/data/columnar/duckdb_source.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

#include "workbench/data/columnar/attached_database.h"
#include "workbench/data/columnar/duckdb_tables.h"
#include "workbench/data/descriptors/find_description.h"
#include "workbench/data/files/duckdb_query.h"
#include "workbench/data/files/input_file.h"
#include "workbench/data/files/table_choice.h"
#include "workbench/data/files/table_reference.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

std::string stateOf(const std::string& path) {
  const std::optional<FileIdentity> is = identityAt(path);
  return is ? is->text() : "-";
}

class DuckDbSource final : public StoredSource {
 public:
  using Comments = std::unordered_map<std::string, std::string>;

  DuckDbSource(std::string path, std::string file, std::shared_ptr<const AttachedDatabase> database, DuckDbTable table,
               Comments comments)
      : path_(std::move(path)),
        file_(std::move(file)),
        database_(std::move(database)),
        table_(std::move(table)),
        comments_(std::move(comments)) {}

  const std::string& path() const override { return path_; }
  std::string relation() const override {
    return fmt::format("{}.{}.{}", sqlName(database_->name()), sqlName(table_.schema), sqlName(table_.name));
  }
  std::string identity() const override {
    return fmt::format("{}|{}|{}|{}", stateOf(file_), stateOf(file_ + ".wal"), table_.schema, table_.name);
  }
  std::vector<std::string> files() const override { return {file_}; }
  Outcome<std::optional<DescribedTable>> description() const override {
    return describedByStored(isResource(table_.comment) ? std::optional(table_.comment) : std::nullopt, path_);
  }
  std::string commentOn(const std::string& column) const override {
    const auto found = comments_.find(column);
    return found == comments_.end() ? std::string() : found->second;
  }

 private:
  std::string path_;
  std::string file_;
  std::shared_ptr<const AttachedDatabase> database_;
  DuckDbTable table_;
  Comments comments_;  // on columns, by their names
};

}  // namespace

Outcome<std::shared_ptr<const StoredSource>> openDuckDbTable(const std::string& path) {
  const auto [file, wanted] = tableReference(path);
  Outcome<std::shared_ptr<const AttachedDatabase>> database = AttachedDatabase::open(file);
  if (!database) return database.problem();
  const Outcome<std::vector<DuckDbTable>> tables = tablesOf((*database)->name());
  if (!tables) {
    Problem problem = tables.problem();
    problem.where = file;
    return problem;
  }
  std::vector<std::string> names;
  for (const DuckDbTable& table : *tables) names.push_back(table.shown());
  const Outcome<std::string> name = chosenTable(names, wanted, file);
  if (!name) return name.problem();
  const auto table = tables->begin() + (std::find(names.begin(), names.end(), *name) - names.begin());
  auto comments = commentsOnColumns((*database)->name(), *table);
  if (!comments) {
    Problem problem = comments.problem();
    problem.where = file;
    return problem;
  }
  return std::shared_ptr<const StoredSource>(
      std::make_shared<DuckDbSource>(path, file, std::move(*database), *table, std::move(*comments)));
}

}  // namespace workbench::data
