#include "workbench/data/files/duckdb_rows.h"

#include <algorithm>
#include <new>

namespace workbench::data {
namespace {

// DuckDB's vectors have room for as many rows as it takes at once. What is not filled of them takes no memory.
std::size_t mostRowsOf(const DuckDbLibrary& library, std::size_t columns) {
  constexpr std::size_t mostCells = std::size_t{1} << 18;
  return std::clamp<std::size_t>(mostCells / columns, 1, library.duckdb_vector_size());
}

duckdb_data_chunk makeChunk(const DuckDbLibrary& library, const std::vector<DuckDbColumn>& columns) {
  std::vector<duckdb_logical_type> types;
  for (const DuckDbColumn& column : columns) types.push_back(library.duckdb_create_logical_type(column.type));
  duckdb_data_chunk chunk = library.duckdb_create_data_chunk(types.data(), types.size());
  for (duckdb_logical_type& type : types) library.duckdb_destroy_logical_type(&type);
  if (chunk == nullptr) throw std::bad_alloc();
  return chunk;
}

}  // namespace

DuckDbRows::DuckDbRows(const DuckDbLibrary& library, const std::vector<DuckDbColumn>& columns)
    : library_(library),
      vectors_(columns.size()),
      values_(columns.size()),
      presence_(columns.size()),
      mostRows_(mostRowsOf(library, columns.size())) {
  chunk_ = makeChunk(library, columns);
  for (std::size_t column = 0; column < vectors_.size(); ++column) {
    vectors_[column] = library_.duckdb_data_chunk_get_vector(chunk_, column);
  }
}

DuckDbRows::~DuckDbRows() { library_.duckdb_destroy_data_chunk(&chunk_); }

void DuckDbRows::setText(std::size_t column, std::string_view text) {
  library_.duckdb_vector_assign_string_element_len(vectors_[column], rows_, text.data(), text.size());
  textBytes_ += text.size();
}

void DuckDbRows::setMissing(std::size_t column) {
  std::uint64_t*& presence = presence_[column];
  if (presence == nullptr) {
    library_.duckdb_vector_ensure_validity_writable(vectors_[column]);
    presence = library_.duckdb_vector_get_validity(vectors_[column]);
  }
  presence[rows_ / 64] &= ~(std::uint64_t{1} << (rows_ % 64));
}

void DuckDbRows::clear() {
  library_.duckdb_data_chunk_reset(chunk_);  // every cell is present again, and the texts are freed
  std::fill(presence_.begin(), presence_.end(), nullptr);
  std::fill(values_.begin(), values_.end(), nullptr);
  rows_ = 0;
  textBytes_ = 0;
}

void DuckDbRows::handTo(duckdb_data_chunk chunk) const {
  for (std::size_t column = 0; column < vectors_.size(); ++column) {
    library_.duckdb_vector_reference_vector(library_.duckdb_data_chunk_get_vector(chunk, column), vectors_[column]);
  }
  library_.duckdb_data_chunk_set_size(chunk, rows_);
}

}  // namespace workbench::data
