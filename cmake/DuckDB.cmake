# DuckDB: the C header and the shared library.
#
#   duckdb_header    INTERFACE target: the folder of duckdb.h. The workbench opens the library with dlopen when it first
#                    needs it, so nothing of the workbench links against it.
#   duckdb_library   IMPORTED target: header and library, for programs that are linked (the benchmark's).
#
# Both come from the packages pinned in third_party/duckdb, which ./dev installs under build/npm/duckdb; where these are
# missing, from the system. The library stands as lib/libduckdb.so in the build folder afterwards.

set(duckdb_packages ${PROJECT_SOURCE_DIR}/build/npm/duckdb/node_modules)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(aarch64|arm64)$")
  set(duckdb_bindings ${duckdb_packages}/@duckdb/node-bindings-linux-arm64)
else()
  set(duckdb_bindings ${duckdb_packages}/@duckdb/node-bindings-linux-x64)
endif()

# Looked for afresh at every configuration: what ./dev installs later leads over what was found on the system before.
unset(DUCKDB_INCLUDE_DIR CACHE)
unset(DUCKDB_LIBRARY_FILE CACHE)
set(duckdb_source "the pinned packages")
find_path(DUCKDB_INCLUDE_DIR duckdb.h PATHS ${duckdb_packages}/duckdb/src/duckdb/src/include NO_DEFAULT_PATH)
find_library(DUCKDB_LIBRARY_FILE duckdb PATHS ${duckdb_bindings} NO_DEFAULT_PATH)
if(NOT DUCKDB_INCLUDE_DIR OR NOT DUCKDB_LIBRARY_FILE)
  # Header and library from one place only: they have to be of one version.
  unset(DUCKDB_INCLUDE_DIR CACHE)
  unset(DUCKDB_LIBRARY_FILE CACHE)
  set(duckdb_source "the system")
  find_path(DUCKDB_INCLUDE_DIR duckdb.h)
  find_library(DUCKDB_LIBRARY_FILE duckdb)
endif()
if(NOT DUCKDB_INCLUDE_DIR OR NOT DUCKDB_LIBRARY_FILE)
  message(FATAL_ERROR "DuckDB was found neither under ${duckdb_packages} nor on the system. "
    "Run './dev build' once: it installs the pinned packages of third_party/duckdb there.")
endif()
message(STATUS "DuckDB from ${duckdb_source}: ${DUCKDB_LIBRARY_FILE}")

file(MAKE_DIRECTORY ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
file(REAL_PATH ${DUCKDB_LIBRARY_FILE} duckdb_real_file)
file(COPY_FILE ${duckdb_real_file} ${CMAKE_LIBRARY_OUTPUT_DIRECTORY}/libduckdb.so ONLY_IF_DIFFERENT)

add_library(duckdb_header INTERFACE)
target_include_directories(duckdb_header SYSTEM INTERFACE ${DUCKDB_INCLUDE_DIR})

add_library(duckdb_library SHARED IMPORTED)
set_target_properties(duckdb_library PROPERTIES
  IMPORTED_LOCATION ${CMAKE_LIBRARY_OUTPUT_DIRECTORY}/libduckdb.so
  INTERFACE_INCLUDE_DIRECTORIES ${DUCKDB_INCLUDE_DIR})
