// DuckDB does not free what its packers (gzip, zstd) hold when a COPY fails, which tests here make it do on purpose.
// Only the leak sanitizer asks for this, and only of this program.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions() {
  return "leak:duckdb_zstd::\nleak:duckdb_miniz::\n";
}
