#include "workbench/data/columnar/duckdb_source.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "workbench/data/columnar/attached_database.h"
#include "workbench/data/files/duckdb_query.h"
#include "workbench/data/files/input_file.h"
#include "workbench/data/files/table_reference.h"
#include "workbench/text/wording.h"

namespace workbench::data {
namespace {

struct NamedTable {
  std::string schema;
  std::string name;
  std::string comment;

  std::string shown() const { return schema == "main" ? name : schema + "." + name; }
};

std::string stateOf(const std::string& path) {
  const std::optional<FileIdentity> is = identityAt(path);
  return is ? is->text() : "-";
}

class DuckDbSource final : public StoredSource {
 public:
  DuckDbSource(std::string path, std::string file, std::shared_ptr<const AttachedDatabase> database, NamedTable table)
      : path_(std::move(path)), file_(std::move(file)), database_(std::move(database)), table_(std::move(table)) {}

  const std::string& path() const override { return path_; }
  std::string relation() const override {
    return fmt::format("{}.{}.{}", sqlName(database_->name()), sqlName(table_.schema), sqlName(table_.name));
  }
  std::string identity() const override {
    return fmt::format("{}|{}|{}|{}", stateOf(file_), stateOf(file_ + ".wal"), table_.schema, table_.name);
  }
  std::vector<std::string> files() const override { return {file_}; }
  Outcome<std::optional<std::string>> resource() const override {
    const bool isResource = table_.comment.starts_with('{') && table_.comment.find("\"schema\"") != std::string::npos;
    return isResource ? std::optional(table_.comment) : std::nullopt;
  }

 private:
  std::string path_;
  std::string file_;
  std::shared_ptr<const AttachedDatabase> database_;
  NamedTable table_;
};

Outcome<std::vector<NamedTable>> tablesOf(const AttachedDatabase& database) {
  const std::string name = sqlText(database.name());
  Outcome<std::unique_ptr<DuckDbQuery>> query = DuckDbQuery::start(fmt::format(
      "SELECT schema_name, table_name AS name, coalesce(comment, '') FROM duckdb_tables() WHERE database_name = {0} "
      "UNION ALL SELECT schema_name, view_name, coalesce(comment, '') FROM duckdb_views() WHERE database_name = {0} "
      "AND NOT internal ORDER BY ALL",
      name));
  if (!query) return query.problem();
  std::vector<NamedTable> tables;
  const Outcome<Done> read = (*query)->eachChunk([&](const DuckDbQuery& chunk) {
    for (std::size_t row = 0; row < chunk.rows(); ++row) {
      tables.push_back(
          {std::string(chunk.column(0)[row]), std::string(chunk.column(1)[row]), std::string(chunk.column(2)[row])});
    }
  });
  if (!read) return read.problem();
  return tables;
}

Outcome<NamedTable> chosen(const std::vector<NamedTable>& tables, const std::string& wanted, const std::string& file) {
  if (tables.empty())
    return Problem{text::sentence("The database holds no table."), file, text::sentence("Name another file.")};
  std::vector<std::string> names;
  for (const NamedTable& table : tables) names.push_back(table.shown());
  if (wanted.empty()) {
    if (tables.size() == 1) return tables.front();
    return Problem{text::sentence("The database holds ^1 tables.", {fmt::to_string(tables.size())}), file,
                   text::sentence("Name one behind \"#\": ^1.", {fmt::format("{}", fmt::join(names, ", "))})};
  }
  const auto found = std::find(names.begin(), names.end(), wanted);
  if (found != names.end()) return tables[static_cast<std::size_t>(found - names.begin())];
  return Problem{text::sentence("The database holds no table \"^1\".", {wanted}), file,
                 text::sentence("It has: ^1.", {fmt::format("{}", fmt::join(names, ", "))})};
}

}  // namespace

Outcome<std::shared_ptr<const StoredSource>> openDuckDbTable(const std::string& path) {
  const auto [file, wanted] = tableReference(path);
  Outcome<std::shared_ptr<const AttachedDatabase>> database = AttachedDatabase::open(file);
  if (!database) return database.problem();
  const Outcome<std::vector<NamedTable>> tables = tablesOf(**database);
  if (!tables) {
    Problem problem = tables.problem();
    problem.where = file;
    return problem;
  }
  const Outcome<NamedTable> table = chosen(*tables, wanted, file);
  if (!table) return table.problem();
  return std::shared_ptr<const StoredSource>(std::make_shared<DuckDbSource>(path, file, std::move(*database), *table));
}

}  // namespace workbench::data
