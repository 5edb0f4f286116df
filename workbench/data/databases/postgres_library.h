// PostgresLibrary: the functions of PostgreSQL's C interface, libpq, that the workbench calls, in a table. The library
// is loaded when it is first needed, by its name as the system finds libraries, and stays loaded.
#pragma once

#include <libpq-fe.h>

#include "workbench/runtime/outcome.h"

namespace workbench::data {

#define WORKBENCH_POSTGRES_FUNCTIONS(ROW) \
  ROW(PQclear)                            \
  ROW(PQconnectdbParams)                  \
  ROW(PQconninfoFree)                     \
  ROW(PQconninfoParse)                    \
  ROW(PQerrorMessage)                     \
  ROW(PQexec)                             \
  ROW(PQfinish)                           \
  ROW(PQfreemem)                          \
  ROW(PQgetCopyData)                      \
  ROW(PQgetResult)                        \
  ROW(PQgetlength)                        \
  ROW(PQgetvalue)                         \
  ROW(PQnfields)                          \
  ROW(PQntuples)                          \
  ROW(PQresultErrorField)                 \
  ROW(PQresultStatus)                     \
  ROW(PQsetNoticeProcessor)               \
  ROW(PQstatus)

struct PostgresLibrary {
#define WORKBENCH_POSTGRES_MEMBER(function) decltype(&::function) function = nullptr;
  WORKBENCH_POSTGRES_FUNCTIONS(WORKBENCH_POSTGRES_MEMBER)
#undef WORKBENCH_POSTGRES_MEMBER
};

// The library, loaded at the first call. May be called on any thread.
Outcome<const PostgresLibrary*> postgresLibrary();

}  // namespace workbench::data
