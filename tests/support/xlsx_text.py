#!/usr/bin/env python3
"""A workbook as text: what stands in its sheets, as the files within it say.

Usage: xlsx_text.py WORKBOOK. One line per cell: its place, a text in quotes or a number as written, the number format.
Before the cells of a sheet stand its name and how it is looked at: frozen panes, filter, merged cells, widths, heights, links.
xlsx_text.py --cells WORKBOOK writes the cells alone as JSON: {sheet: {place: text or number}}.
"""

import json
import re
import sys
import zipfile
from xml.etree import ElementTree

MAIN = "{http://schemas.openxmlformats.org/spreadsheetml/2006/main}"
RELATION = "{http://schemas.openxmlformats.org/officeDocument/2006/relationships}id"
CORE = "{http://purl.org/dc/terms/}created"
# The number formats that have a number of their own; 0 is none.
BUILT_IN = {0: "", 1: "0", 2: "0.00", 3: "#,##0", 4: "#,##0.00", 9: "0%", 10: "0.00%", 11: "0.00E+00", 49: "@"}
ESCAPED = re.compile(r"_x([0-9A-Fa-f]{4})_")


class Workbook:
    def __init__(self, path):
        self.zip = zipfile.ZipFile(path)
        assert self.zip.testzip() is None
        self.strings = self.shared_strings()
        self.formats = self.number_formats()

    def xml(self, name):
        return ElementTree.fromstring(self.zip.read(name))

    def shared_strings(self):
        if "xl/sharedStrings.xml" not in self.zip.namelist():
            return []
        return [text_of(item) for item in self.xml("xl/sharedStrings.xml").iter(MAIN + "si")]

    def number_formats(self):
        """Per cell style its number format."""
        styles = self.xml("xl/styles.xml")
        named = {int(one.get("numFmtId")): one.get("formatCode") for one in styles.iter(MAIN + "numFmt")}
        named = BUILT_IN | named
        return [named[int(one.get("numFmtId"))] for one in styles.find(MAIN + "cellXfs")]

    def sheets(self):
        relations = self.xml("xl/_rels/workbook.xml.rels")
        targets = {one.get("Id"): one.get("Target") for one in relations}
        for sheet in self.xml("xl/workbook.xml").iter(MAIN + "sheet"):
            yield sheet.get("name"), self.xml("xl/" + targets[sheet.get(RELATION)])

    def created(self):
        return self.xml("docProps/core.xml").find(CORE).text

    def cells(self, sheet):
        """Place, text or number as written, number format: of the cells that hold something."""
        for cell in sheet.iter(MAIN + "c"):
            assert cell.find(MAIN + "f") is None, "a formula at " + cell.get("r")
            value = cell.find(MAIN + "v")
            if value is None:
                continue
            if cell.get("t") == "s":
                yield cell.get("r"), json.dumps(self.strings[int(value.text)], ensure_ascii=False), ""
            else:
                assert cell.get("t") in (None, "n"), cell.get("t")
                yield cell.get("r"), value.text, self.formats[int(cell.get("s", "0"))]


def text_of(item):
    text = "".join(piece.text or "" for piece in item.iter(MAIN + "t"))
    return ESCAPED.sub(lambda found: chr(int(found.group(1), 16)), text)


def view_of(sheet):
    for pane in sheet.iter(MAIN + "pane"):
        assert pane.get("state") == "frozen"
        yield "frozen above and left of " + pane.get("topLeftCell")
    for filtered in sheet.iter(MAIN + "autoFilter"):
        yield "filter over " + filtered.get("ref")
    merged = [one.get("ref") for one in sheet.iter(MAIN + "mergeCell")]
    if merged:
        yield "merged " + " ".join(merged)
    widths = [f"{one.get('min')}-{one.get('max')}: {one.get('width')}" for one in sheet.iter(MAIN + "col")]
    yield "widths " + ", ".join(widths)
    heights = [f"{one.get('r')}: {one.get('ht')}" for one in sheet.iter(MAIN + "row") if one.get("ht")]
    if heights:
        yield "heights " + ", ".join(heights)
    for link in sheet.iter(MAIN + "hyperlink"):
        assert RELATION not in link.attrib, "a link out of the workbook"
        yield f"link {link.get('ref')} to {link.get('location')}"


def main(arguments):
    if arguments[0] == "--cells":
        workbook = Workbook(arguments[1])
        cells = {name: {at: json.loads(value) for at, value, _ in workbook.cells(sheet)} for name, sheet in workbook.sheets()}
        json.dump(cells, sys.stdout)
        return
    workbook = Workbook(arguments[0])
    print("created", workbook.created())
    for name, sheet in workbook.sheets():
        print()
        print("sheet", json.dumps(name, ensure_ascii=False))
        for line in view_of(sheet):
            print(line)
        for at, value, number_format in workbook.cells(sheet):
            print(f"{at} {value}" + (f" as {number_format}" if number_format else ""))


sys.stdout.reconfigure(encoding="utf-8")
main(sys.argv[1:])
