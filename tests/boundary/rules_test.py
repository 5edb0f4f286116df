"""The boundary rules find what breaks them: each is shown a small tree or table that does."""

import pathlib
import tempfile
import unittest

import binary_rules
import host_declarations
import source_rules

HEADER = """
// A class of the host. class HOST_API Commented {};
#define HOST_API __attribute__((visibility("default")))
class HOST_API Table final : public Shown {
 public:
  enum class Kind { word };
  explicit Table(std::string_view name);
  Table(const Table&) = delete;
  Table& operator=(const Table& other);
  virtual ~Table();
  virtual void Draw() = 0;
  const std::string& GetName() const { return name_; }
  std::string Title(int level) const;
  friend HOST_API bool operator==(const Table& left, const Table& right);

 private:
  struct State;
};
class NotExported {
  void Hidden();
};
HOST_API int Count(const Table& table);
"""


class Rules(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)

    def put(self, name, text):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)

    def test_a_plug_in_folder_may_include_host_itself_and_the_standard_library(self):
        self.put("engine/walk.cpp", '#include "engine/walk.h"\n#include "host/data.h"\n#include <vector>\n')
        self.assertEqual(list(source_rules.broken_includes(self.root)), [])

    def test_a_plug_in_folder_that_includes_the_workbench_or_a_library_is_found(self):
        self.put("engine/walk.cpp", '#include "workbench/data/dictionary.h"\n#include <fmt/format.h>\n#include "near.h"\n')
        self.assertEqual(len(list(source_rules.broken_includes(self.root))), 3)

    def test_a_workbench_that_includes_a_plug_in_is_found(self):
        self.put("workbench/app/main.cpp", '#include "engine/walk.h"\n#include "procedures/profile/walk.h"\n')
        self.assertEqual(len(list(source_rules.broken_includes(self.root))), 2)

    def test_procedures_share_nothing_but_host(self):
        self.put("procedures/profile/walk.cpp", '#include "procedures/profile/walk.h"\n#include "host/data.h"\n')
        self.assertEqual(list(source_rules.broken_includes(self.root)), [])
        self.put("procedures/other/walk.cpp", '#include "procedures/profile/walk.h"\n#include "engine/walk.h"\n')
        self.assertEqual(len(list(source_rules.broken_includes(self.root))), 2)

    def test_a_host_header_that_includes_the_workbench_is_found(self):
        self.put("host/data.h", '#include "workbench/data/dictionary.h"\n')
        self.assertEqual(len(list(source_rules.broken_includes(self.root))), 1)

    def test_words_of_the_procedure_are_found_outside_their_places_only(self):
        self.put("workbench/text/en.txt", "CD_Active COMPARE DATASETS")
        self.put("workbench/app/verdict.cpp", '"CD_Active"')
        self.put("workbench/app/verdict_figures.cpp", '"CD_Active"')
        self.put("workbench/app/compare_job.cpp", '"COMPARE DATASETS" "PROFILE DIFFERENCES"')
        self.assertEqual(list(source_rules.words_out_of_place(self.root)), [])
        self.put("workbench/app/main.cpp", 'find("CD_Active");\nload("COMPDATAS");\n')
        self.put("workbench/app/compare_job.h", '"CD_Active"')
        self.put("workbench/output/terminal_table.cpp", '"PD_Change"')
        self.assertEqual(len(list(source_rules.words_out_of_place(self.root))), 4)

    def test_an_outdated_export_list_is_found(self):
        self.put("host/table.h", HEADER)
        self.put("cmake/host_exports.map", "{ };\n")
        self.assertEqual(len(list(source_rules.outdated_export_list(self.root))), 1)

    def test_declarations_are_the_functions_that_are_neither_inline_nor_pure(self):
        self.put("host/table.h", HEADER)
        declared = host_declarations.declarations_of(self.root / "host")
        self.assertEqual(
            sorted(declared.functions),
            ["Count", "Table::Table", "Table::Title", "Table::operator=", "Table::~Table", "operator=="],
        )
        self.assertEqual(declared.polymorphic, ["Table"])

    def test_an_export_too_many_and_one_too_few_are_found(self):
        declared = host_declarations.Declarations({"Table::Title": [], "Count": []}, ["Table"])
        exported = {"Table::Title[abi:cxx11](int) const", "Count(Table const&)", *declared.symbols_of_classes()}
        self.assertEqual(list(binary_rules.wrong_exports(exported, declared)), [])
        exported -= {"Count(Table const&)", "vtable for Table"}
        exported |= {"Table::State::State()"}
        self.assertEqual(len(list(binary_rules.wrong_exports(exported, declared))), 3)


if __name__ == "__main__":
    unittest.main()
