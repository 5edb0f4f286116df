"""The rules for the documentation find what breaks them: each is shown a page that does."""

import json
import pathlib
import tempfile
import unittest

import documentation_rules as rules

SOURCE = "int one() {\n  return 1;\n}\n\nint two() {\n  return 2;\n}\n"


class Rules(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)
        self.put("host/numbers.cpp", SOURCE)
        (self.root / "examples").mkdir()

    def put(self, name, text):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)
        return path

    def page(self, *parts):
        return [self.put("docs/page.md", "\n".join(parts) + "\n")]

    def excerpts(self, *parts):
        return list(rules.broken_excerpts(self.root, self.page(*parts)))

    def put_program(self, script):
        program = self.put("build/bin/compare-datasets", "#!/bin/sh\n" + script + "\n")
        program.chmod(0o755)

    def transcripts(self, *parts):
        return list(rules.broken_transcripts(self.root, self.root / "build", self.page(*parts)))

    def test_an_excerpt_that_stands_in_its_file_is_well(self):
        self.assertEqual(self.excerpts("```cpp host/numbers.cpp", "  return 1;", "}", "```"), [])

    def test_an_excerpt_that_was_changed_shortened_or_joined_is_found(self):
        for lines in (["  return 3;"], ["return 1;"], ["  return 1;", "  return 2;"], ["  return"], []):
            self.assertEqual(len(self.excerpts("```cpp host/numbers.cpp", *lines, "```")), 1, lines)

    def test_an_excerpt_of_a_file_that_is_gone_is_found(self):
        self.assertEqual(len(self.excerpts("```cpp host/gone.cpp", "  return 1;", "```")), 1)

    def test_a_block_that_says_not_where_it_is_from_is_found(self):
        well = ["```cpp host/numbers.cpp", "}", "```"]
        for lines in (["```", "int three();", "```"], ["```cpp", "int three();", "```"], ["```cpp host/numbers.cpp", "}"]):
            self.assertEqual(len(self.excerpts(*well, *lines)), 1, lines)

    def test_pages_without_excerpts_or_transcripts_are_found(self):
        self.assertEqual(len(self.excerpts("Text.")), 1)
        self.assertEqual(len(self.transcripts("Text.")), 1)

    def test_a_transcript_is_what_the_command_prints_in_both_streams(self):
        self.put_program("echo first; echo $1 $2; echo last >&2")
        command = "$ ../build/release/bin/compare-datasets run 'a b.job'"
        self.assertEqual(self.transcripts("```text", command, "first", "run a b.job", "```", "```text more", "last", "```"), [])

    def test_a_transcript_that_the_command_does_not_print_is_found(self):
        self.put_program("echo first; echo second")
        command = "$ ../build/release/bin/compare-datasets run"
        for lines in (["third"], ["second", "first"], []):
            self.assertEqual(len(self.transcripts("```text", command, *lines, "```")), 1, lines)
        self.assertEqual(len(self.transcripts("```text", command, "first", "```", "```text more", "third", "```")), 1)

    def test_a_transcript_of_another_program_is_found_and_not_run(self):
        gone = self.put("examples/here", "")
        self.assertEqual(len(self.transcripts("```text", "$ rm here", "removed", "```")), 1)
        self.assertTrue(gone.exists())

    def test_names_files_and_links_that_are_not_there_are_found(self):
        well = "`one()` in `host/numbers.cpp`, a `plain` word, [a link](page.md)"
        self.put("host/more.h", "class Counter { void Add(); };")
        self.assertEqual(list(rules.unknown_names(self.root, self.page(well, "`Counter::Add`"))), [])
        for name in ("`Counter::Remove`", "`three()`", "`host/gone.h`", "`gone.md`", "[a link](gone.md)"):
            self.assertEqual(len(list(rules.unknown_names(self.root, self.page(well, name)))), 1, name)

    def test_a_member_or_word_of_the_schema_that_the_page_leaves_out_is_found(self):
        schema = self.put("schema.json", json.dumps({"properties": {"size": {"enum": ["small", "large", None]}}}))
        well, lacking = "`size`: `small` or `large`", "`size`: `small` or large"
        self.assertEqual(list(rules.unnamed_members(schema, self.page(well)[0])), [])
        self.assertEqual(len(list(rules.unnamed_members(schema, self.page(lacking)[0]))), 1)


if __name__ == "__main__":
    unittest.main()
