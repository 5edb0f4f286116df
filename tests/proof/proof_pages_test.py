"""The check of the proof pages finds what is wrong with one: each is shown a small tree in which something is."""

import pathlib
import tempfile
import unittest

import proof_pages

SOURCE = """
namespace compdatas {
constexpr auto propertyRows = std::to_array<PropertyRow>({});
struct PropertyRow {
  int width = 0;
};
// Calls what it does not define: helper(1); std::sort(a, b);
bool CaseWalk::run(int (*step)(int)) const {
  return other(step) && helper(1);
}
CaseTable::CaseTable(int table)
    : table_(table) {}
}
"""
TESTS = """
TEST(CaseWalk, PairsByPosition) {}
TEST_P(EveryRefusal, EndsTheCommand) {}
INSTANTIATE_TEST_SUITE_P(Of, EveryRefusal, Values(Refusal{"NoVariables", 1}));
RC_GTEST_PROP(Sort, AgreesWithRows, ()) {}
"""
HEAD = "# The walk\n\n| What happens | Code | Tests |\n| --- | --- | --- |\n"
GOOD = "| Cases are paired. | `engine/walk.cpp` `CaseWalk::run` | `CaseWalk.PairsByPosition` |\n"


class ProofPages(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)
        self.put("engine/walk.cpp", SOURCE)
        self.put("host/data.h", "class HOST_API Source {\n  virtual int Count(int a) const = 0;\n  void Close();\n};\n")
        self.put("plugin/exports.map", "{}")
        self.put("tests/engine/walk_test.cpp", TESTS)
        self.put("tests/boundary/CMakeLists.txt", "boundary_test(OneName a.py)\nadd_test(NAME Leaks.AreTwo COMMAND)\n")
        self.put("docs/proof/README.md", "[the walk](walk.md)")

    def put(self, name, text):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)

    def faults(self, rows):
        self.put("docs/proof/walk.md", HEAD + rows)
        return list(proof_pages.broken(self.root))

    def row(self, code="`engine/walk.cpp` `CaseWalk::run`", tests="`CaseWalk.PairsByPosition`"):
        return self.faults(GOOD + f"| It happens. | {code} | {tests} |\n")

    def test_a_page_whose_rows_name_what_is_there_is_right(self):
        self.assertEqual(self.faults(GOOD), [])

    def test_every_kind_of_name_is_found_where_it_is_defined(self):
        for name in ("CaseWalk::run", "run", "propertyRows", "PropertyRow", "CaseTable"):
            self.assertEqual(self.row(f"`engine/walk.cpp` `{name}`"), [], name)
        for name in ("Source", "Count", "Close"):
            self.assertEqual(self.row(f"`host/data.h` `{name}`"), [], name)
        self.assertEqual(self.row("`plugin/exports.map`"), [])

    def test_a_function_that_is_only_called_or_not_there_is_found(self):
        for name in ("helper", "sort", "other", "CaseWalk::show", "width"):
            fault = f"walk.md:6: there is no {name} in engine/walk.cpp"
            self.assertEqual(self.row(f"`engine/walk.cpp` `{name}`"), [fault])

    def test_a_file_that_is_not_there_is_found(self):
        self.assertIn("walk.md:6: there is no file engine/gone.cpp", self.row("`engine/gone.cpp` `run`"))

    def test_a_file_without_a_function_and_a_row_without_a_file_are_found(self):
        for code in ("`engine/walk.cpp`", "`engine/walk.cpp`, `host/data.h` `Close`"):
            self.assertEqual(self.row(code), ["walk.md:6: engine/walk.cpp without a name in it"], code)
        self.assertEqual(self.row("somewhere"), ["walk.md:6: a row without code"])

    def test_every_kind_of_test_is_found(self):
        instance = "EveryRefusal.EndsTheCommand/NoVariables"
        for name in (instance, "Sort.AgreesWithRows", "Boundary.OneName", "Leaks.AreTwo"):
            self.assertEqual(self.row(tests=f"`{name}`"), [], name)

    def test_a_test_that_is_not_there_is_found(self):
        instance = "EveryRefusal.EndsTheCommand/NoDataset"
        for name in ("CaseWalk.Pairs", "Walk.PairsByPosition", instance, "Boundary.TwoNames"):
            self.assertEqual(self.row(tests=f"`{name}`"), [f"walk.md:6: there is no test {name}"])

    def test_a_row_without_a_test_or_with_one_named_twice_is_found(self):
        self.assertEqual(self.row(tests="by hand"), ["walk.md:6: a row without a test"])
        self.assertEqual(self.row(tests="`Leaks.AreTwo`, `Leaks.AreTwo`"), ["walk.md:6: Leaks.AreTwo is named twice"])

    def test_a_row_of_too_few_or_too_many_cells_is_found(self):
        self.assertEqual(len(self.faults(GOOD + "| It happens. | `Leaks.AreTwo` |\n")), 1)
        self.assertEqual(self.faults(GOOD.replace("paired.", "paired \\| walked.")), [])

    def test_a_page_without_rows_or_outside_the_index_is_found(self):
        self.put("docs/proof/tables.md", HEAD)
        faults = self.faults(GOOD)
        self.assertEqual(faults, ["tables.md: there is no row", "README.md does not lead to tables.md"])

    def test_a_source_of_the_plug_in_that_no_row_names_is_found(self):
        self.put("tables/new.cpp", "")
        self.assertEqual(self.faults(GOOD), ["no row names tables/new.cpp"])


if __name__ == "__main__":
    unittest.main()
