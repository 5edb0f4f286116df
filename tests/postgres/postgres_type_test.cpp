// What the values of PostgreSQL's types become.
#include <gtest/gtest.h>

#include <fstream>

#include "tests/data/databases/sqlite_fixture.h"
#include "tests/postgres/postgres_server.h"

namespace workbench::data {
namespace {

using tests::TestDatabase;

// A table of one column "x" of that type, with these values.
SharedFile column(const TestDatabase& database, const std::string& type, const std::string& values) {
  static int number = 0;
  const std::string table = fmt::format("x{}", ++number);
  database.run(fmt::format("CREATE TABLE {0} (x {1}); INSERT INTO {0} VALUES {2}", table, type, values));
  // One run sees one state, so that it takes another name of the database to see a new table.
  return opened(fmt::format("{}&application_name={}#{}", database.reference(), table, table));
}

struct TypeCase {
  std::string type;
  std::string values;
  std::string types;
  std::string shown;
};

void expectColumns(const TestDatabase& database, const std::vector<TypeCase>& cases) {
  for (const TypeCase& one : cases) {
    const SharedFile file = column(database, one.type, one.values);
    EXPECT_EQ(types(file), one.types) << one.type << one.values;
    EXPECT_EQ(shown(file), one.shown) << one.type << one.values;
    EXPECT_EQ(warningsOf(file), "") << one.type << one.values;
  }
}

TEST(PostgresTypes, BecomeNumbersAsLongAsANumberHoldsEveryValue) {
  const TestDatabase database;
  const std::vector<TypeCase> cases{
      {"boolean", "(true), (false), (NULL)", "x F1.0", "1 / 0 / ."},
      {"smallint", "(-32768), (32767)", "x F6.0", "-32768 / 32767"},
      {"integer", "(-2147483648), (0)", "x F11.0", "-2147483648 / 0"},
      {"bigint", "(9007199254740992), (-1)", "x F16.0", "9007199254740992 / -1"},
      {"bigint", "(9007199254740993), (-1)", "x A16", "'9007199254740993' / '-1'"},
      {"oid", "(4294967295)", "x F10.0", "4294967295"},
      {"numeric", "(0.1), (-12.50), (3)", "x F6.2", "0.1 / -12.5 / 3"},
      {"numeric(30,10)", "(12345678901234567890.0123456789), (1)", "x A31",
       "'12345678901234567890.0123456789' / '1.0000000000'"},
      {"numeric", "('NaN'), (1)", "x A3", "'NaN' / '1'"},
      {"numeric", "('Infinity'), (1)", "x A8", "'Infinity' / '1'"},
      {"real", "(0.1), (16777216), (1e38)", "x E24.16", "0.10000000149011612 / 16777216 / 9.999999680285692e+37"},
      {"double precision", "(0.1), (5e-324), (-1.7976931348623157e308 + 2e292), (1e15), ('-0')", "x E24.16",
       "0.1 / 5e-324 / -1.7976931348623155e+308 / 1000000000000000 / -0"},
      {"double precision", "('NaN'), (1)", "x A3", "'NaN' / '1'"},
      {"double precision", "('-Infinity'), (1)", "x A9", "'-Infinity' / '1'"},
  };
  expectColumns(database, cases);
}

TEST(PostgresTypes, BecomeDatesAndTimesWhereThereIsSuchAValue) {
  const TestDatabase database;
  const std::vector<TypeCase> cases{
      {"date", "('1970-01-02'), ('0001-01-01'), ('9999-12-31'), (NULL)", "x DATE10.0", "1 / -719162 / 2932896 / ."},
      {"date", "('0044-03-15 BC'), ('1970-01-02')", "x A13", "'0044-03-15 BC' / '1970-01-02'"},
      {"date", "('infinity'), ('-infinity')", "x A9", "'infinity' / '-infinity'"},
      {"date", "('10000-01-01')", "x A11", "'10000-01-01'"},
      {"time", "('00:00:01.5'), ('23:59:59')", "x TIME10.1", "1.5 / 86399"},
      {"time", "('24:00:00')", "x A8", "'24:00:00'"},
      {"timestamp", "('1970-01-01 00:00:01.25'), ('1969-12-31 23:59:59')", "x DATETIME22.2", "1.25 / -1"},
      {"timestamp", "('infinity')", "x A8", "'infinity'"},
      {"timestamp", "('0044-03-15 12:00 BC')", "x A22", "'0044-03-15 12:00:00 BC'"},
  };
  expectColumns(database, cases);
}

TEST(PostgresTypes, WithAZoneAreReadInUtcWithAWarning) {
  const TestDatabase database;
  const SharedFile file = column(database, "timestamptz", "('1970-01-01 02:00:00+01'), ('infinity')");
  EXPECT_EQ(shown(file), "'1970-01-01 01:00:00' / 'infinity'");
  EXPECT_EQ(warningsOf(file), "Column \"x\": its times bear a zone; they are read as times in UTC.");
  EXPECT_EQ(shown(column(database, "timestamptz(0)", "('1970-01-01 02:00:00+01')")), "3600");
}

TEST(PostgresTypes, OfTextsStayTextsWhateverTheyLookLike) {
  const TestDatabase database;
  const std::vector<TypeCase> cases{
      {"text", "('1'), (''), (NULL), ('a  ')", "x A3", "'1' / '' / '' / 'a'"},
      {"varchar(10)", "('2026-01-01')", "x A10", "'2026-01-01'"},
      {"char(4)", "('ab'), ('')", "x A4", "'ab' / ''"},
      {"\"char\"", "('c')", "x A1", "'c'"},
      {"name", "('n')", "x A1", "'n'"},
      {"uuid", "('A0EEBC99-9C0B-4EF8-BB6D-6BB9BD380A11')", "x A36", "'a0eebc99-9c0b-4ef8-bb6d-6bb9bd380a11'"},
      {"text", "(E'tab\\tline\\nback\\\\slash\\r\\b\\f\\x0b'), ('\\N'), ('é€😀')", "x A23",
       "'tab\tline\nback\\slash\r\b\f\v' / '\\N' / 'é€😀'"},
  };
  expectColumns(database, cases);
}

TEST(PostgresTypes, OfDomainsAreThoseOfWhichTheyAreMade) {
  const TestDatabase database;
  database.run(
      "CREATE DOMAIN age AS smallint CHECK (VALUE >= 0); CREATE DOMAIN adult AS age CHECK (VALUE >= 18);"
      "CREATE TYPE mood AS ENUM ('sad', 'glad'); CREATE DOMAIN feeling AS mood;"
      "CREATE EXTENSION citext");
  EXPECT_EQ(types(column(database, "adult", "(20)")), "x F2.0");
  const SharedFile feeling = column(database, "feeling", "('glad')");
  EXPECT_EQ(types(feeling), "x A4");
  EXPECT_EQ(warningsOf(feeling), "");
  const SharedFile folded = column(database, "citext", "('1')");
  EXPECT_EQ(types(folded), "x A1");
  EXPECT_EQ(warningsOf(folded), "");
}

TEST(PostgresTypes, OfAnyOtherKindAreTextsWithAWarning) {
  const TestDatabase database;
  database.run(
      "CREATE TYPE pair AS (a int, b text); CREATE EXTENSION hstore;"
      "CREATE TYPE int4 AS ENUM ('not a number')");
  const std::vector<TypeCase> cases{
      {"integer[]", "('{1,NULL,3}')", "integer[]", "'{1,NULL,3}'"},
      {"json", "('{\"a\": 1.0}')", "json", "'{\"a\": 1.0}'"},
      {"jsonb", "('{\"a\":1.0}')", "jsonb", "'{\"a\": 1.0}'"},
      {"interval", "('1 mon 2 days 03:04:05.6')", "interval", "'1 mon 2 days 03:04:05.6'"},
      {"timetz", "('12:00:00+02')", "time with time zone", "'12:00:00+02'"},
      {"money", "(1234.5)", "money", "'$1,234.50'"},
      {"inet", "('10.0.0.1/8')", "inet", "'10.0.0.1/8'"},
      {"bit(3)", "(B'101')", "bit(3)", "'101'"},
      {"int4range", "('[1,5)')", "int4range", "'[1,5)'"},
      {"point", "('(1,0.1)')", "point", "'(1,0.1)'"},
      {"pair", "(ROW(1, 'x y'))", "pair", "'(1,\"x y\")'"},
      {"hstore", "('a=>1')", "hstore", "'\"a\"=>\"1\"'"},
      {"tsvector", "('b a')", "tsvector", "''a' 'b''"},
  };
  for (const TypeCase& one : cases) {
    const SharedFile file = column(database, one.type, one.values);
    EXPECT_EQ(shown(file), one.shown) << one.type;
    // The type's name may bear its schema.
    EXPECT_EQ(warningsOf(file).find("Column \"x\" is of the type "), 0U) << one.type;
    EXPECT_NE(warningsOf(file).find(one.types + "; its values are read as texts."), std::string::npos)
        << warningsOf(file);
  }
  const SharedFile ofOwnName = column(database, "public.int4", "('not a number')");
  EXPECT_EQ(shown(ofOwnName), "'not a number'");
}

TEST(PostgresTypes, OfBytesAreTheTextsOfTheirDigits) {
  const TestDatabase database;
  const SharedFile file = column(database, "bytea", "('\\x00ff0a'), ('')");
  EXPECT_EQ(shown(file), "'00FF0A' / ''");
  EXPECT_EQ(warningsOf(file), "Column \"x\" holds bytes; they are read as the texts of their hexadecimal digits.");
}

TEST(PostgresTypes, TellWhatColumnsWithoutValuesAre) {
  const TestDatabase database;
  database.run("CREATE TABLE t (i bigint, n numeric, v varchar(20), d date, t time, m timestamp, b boolean, j json)");
  EXPECT_EQ(types(opened(database.reference("t"))),
            "i F1.0, n F1.0, v A1, d DATE10.0, t TIME8.0, m DATETIME19.0, b F1.0, j A1");
}

TEST(PostgresTypes, AreReadAlikeWhateverTheSessionIsSetTo) {
  const TestDatabase database;
  database.run(
      "CREATE TABLE t (d date, z timestamptz, b bytea, r double precision, i interval, s text);"
      "INSERT INTO t VALUES ('2026-02-01', '2026-02-01 00:00:00+00', '\\x01', 0.1::float8 + 0.2, '1 day', "
      "E'a\\\\b');"
      "ALTER DATABASE " +
      database.name() +
      " SET datestyle = 'German';"
      "ALTER DATABASE " +
      database.name() +
      " SET timezone = 'Asia/Tokyo';"
      "ALTER DATABASE " +
      database.name() +
      " SET bytea_output = 'escape';"
      "ALTER DATABASE " +
      database.name() +
      " SET extra_float_digits = 0;"
      "ALTER DATABASE " +
      database.name() +
      " SET intervalstyle = 'iso_8601';"
      "ALTER DATABASE " +
      database.name() +
      " SET standard_conforming_strings = off;"
      "ALTER DATABASE " +
      database.name() +
      " SET client_encoding = 'LATIN1';"
      "ALTER DATABASE " +
      database.name() +
      " SET statement_timeout = '200ms';"
      "CREATE VIEW slow AS SELECT 1 AS x FROM pg_sleep(0.4)");
  const SharedFile file = opened(database.reference("t"));
  EXPECT_EQ(types(file), "d DATE10.0, z DATETIME19.0, b A2, r E24.16, i A5, s A3");
  EXPECT_EQ(shown(file), "20485 1769904000 '01' 0.30000000000000004 '1 day' 'a\\b'");
  EXPECT_EQ(shown(opened(database.reference("slow"))), "1");
}

TEST(PostgresTypes, AreReadFromDatabasesOfOtherEncodings) {
  const TestDatabase latin("ENCODING 'LATIN1' LC_COLLATE 'C' LC_CTYPE 'C' TEMPLATE template0");
  latin.run("CREATE TABLE \"é\" (\"ü\" text); INSERT INTO \"é\" VALUES ('ñ')");
  EXPECT_EQ(shown(opened(latin.reference("é"))), "'ñ'");
  EXPECT_EQ(types(opened(latin.reference("é"))), "ü A2");
  const TestDatabase unknown("ENCODING 'SQL_ASCII' LC_COLLATE 'C' LC_CTYPE 'C' TEMPLATE template0");
  unknown.run(
      "CREATE TABLE good (x text); INSERT INTO good VALUES ('ñ'); CREATE TABLE bad (x text);"
      "INSERT INTO bad SELECT convert_from('\\xff'::bytea, 'SQL_ASCII')");
  EXPECT_EQ(shown(opened(unknown.reference("good"))), "'ñ'");
  const auto bad = openDataFile(unknown.reference("bad"), {});
  ASSERT_FALSE(bad);
  EXPECT_EQ(unknown.plain(bad.problem().text()),
            "postgresql://postgres@/base#bad: PostgreSQL reports: invalid byte sequence for encoding \"UTF8\": 0xff.");
}

TEST(PostgresTypes, OfAHundredThousandRowsAreThoseOfTheSameRowsAsText) {
  const TestDatabase database;
  const std::string csv = database.file("rows.csv");
  database.run(
      "CREATE TABLE t AS SELECT i AS id, i * 7919 % 100003 AS n, (i % 1000) / 8.0 AS x, CASE WHEN i % 11 <> 0 "
      "THEN 'name ' || i % 5000 END AS s, date '2000-01-01' + i % 9000 AS d, time '00:00' + i * interval "
      "'0.25 s' AS t, timestamp '1999-12-31 00:00' + i * interval '1 min' AS m, i / 3.0::float8 AS r FROM "
      "generate_series(1, 100000) i; COPY t TO '" +
      csv + "' WITH (FORMAT csv, HEADER)");
  const SharedFile table = opened(database.reference("t"));
  const SharedFile text = opened(csv);
  EXPECT_EQ(types(table), types(text));
  EXPECT_EQ(table->caseCount(), 100000);
  EXPECT_TRUE(casesOf(*table) == casesOf(*text));
}

}  // namespace
}  // namespace workbench::data
