"""usage: real_data.py PROGRAM EXAMPLES

Runs the examples on real files (folder in KVL_REAL_DATA; skipped, exit value 77, where that is unset) and checks the
results against what Python finds in the data by itself."""

import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

PROGRAM, EXAMPLES = sys.argv[1:3]
DATA = pathlib.Path(os.environ.get("KVL_REAL_DATA", ""))


def generate(example, real_file, as_name):
    """Runs a copy of the example on the real file; the generated texts by file name."""
    with tempfile.TemporaryDirectory() as folder:
        project = pathlib.Path(folder) / example
        shutil.copytree(pathlib.Path(EXAMPLES) / example, project)
        shutil.copy(DATA / real_file, project / as_name)
        run = subprocess.run(
            [PROGRAM, project / "main.kvl", "-overwrite"], stdin=subprocess.DEVNULL, capture_output=True, text=True
        )
        if run.returncode != 0:
            raise AssertionError(run.stdout)
        return {p.name: p.read_bytes().decode("utf-8") for p in (project / "out").iterdir()}


class Colours(unittest.TestCase):
    def setUp(self):
        lines = (DATA / "rgb.txt").read_text("latin-1").splitlines()
        rows = [line.split(None, 3) for line in lines if line.strip() and not line.lstrip().startswith("!")]
        self.colours = [(name.strip(), int(r), int(g), int(b)) for r, g, b, name in rows]
        self.texts = generate("colours", "rgb.txt", "rgb.txt")

    def test_header_holds_every_colour(self):
        found = re.findall(r'\{"([^"]+)", (\d+), (\d+), (\d+)\},\r\n', self.texts["colours.h"])
        self.assertEqual([(n, int(r), int(g), int(b)) for n, r, g, b in found], self.colours)
        self.assertEqual(len(found), 753)

    def test_style_sheet_holds_the_names_of_one_word(self):
        found = re.findall(r"--(\w+): rgb\((\d+), (\d+), (\d+)\);\r\n", self.texts["colours.css"])
        expected = [colour for colour in self.colours if " " not in colour[0]]
        self.assertEqual([(n, int(r), int(g), int(b)) for n, r, g, b in found], expected)
        self.assertIn(("AntiqueWhite", "250", "235", "215"), found)


class Subdivisions(unittest.TestCase):
    def setUp(self):
        self.entries = json.loads((DATA / "iso_3166-2.json").read_text("utf-8"))["3166-2"]
        self.texts = generate("subdivisions", "iso_3166-2.json", "iso_3166-2.json")

    def test_sql_holds_all_names_byte_for_byte(self):
        lines = [line for line in self.texts["subdivisions.sql"].split("\r\n") if line.startswith("INSERT")]
        expected = [
            "INSERT INTO subdivision VALUES ('{}', '{}', '{}', '{}', '{}');".format(
                e["code"], e["code"][:2], e["name"].replace("'", "''"), e["type"], e.get("parent", "")
            )
            for e in self.entries
        ]
        self.assertEqual(len(expected), 5127)
        self.assertEqual(lines, expected)

    def test_page_groups_them_by_country(self):
        groups, page = {}, {}
        for e in self.entries:
            groups.setdefault(e["code"][:2], []).append(f"{e['name']} ({e['code']})")
        for line in self.texts["subdivisions.md"].split("\r\n"):
            if line.startswith("- "):
                country = line[2:]
                self.assertNotIn(country, page)
                page[country] = []
            elif line.startswith("    - "):
                page[country].append(line[6:])
        self.assertEqual(page, groups)
        self.assertEqual(len(page), 200)


class Interfaces(unittest.TestCase):
    SCALARS = {"string": "std::string", "int32": "std::int32_t", "bool": "bool"}

    def check(self, real_file):
        source = (DATA / real_file).read_text("utf-8")
        header = generate("interfaces", real_file, "interface.proto")["interface.h"].replace("\r\n", "\n")
        self.assertEqual(re.findall(r"^ *(?:struct) (\w+) \{", header, re.M), re.findall(r"^ *message (\w+) \{", source, re.M))
        self.assertEqual(
            re.findall(r"enum class (\w+) \{", header), re.findall(r"^ *enum (\w+) \{", source, re.M)
        )
        values = re.findall(r"^ *(\w+) = (\d+)[^;]*;", re.sub(r"//.*", "", source), re.M)
        self.assertEqual(re.findall(r"^ *(\w+) = (\d+),", header, re.M), values)
        self.assertEqual(re.findall(r'return "(\w+)";', header), [name for name, _ in values])
        comments = [c.strip() for c in re.findall(r"//.*", source)]
        carried = [c.strip() for c in re.findall(r"//.*", header)][1:]  # the first one is the pattern's own
        self.assertEqual(carried, comments)
        fields = re.findall(r"^ *(repeated )?([\w.]+) (\w+) = \d+;", re.sub(r"//.*", "", source), re.M)
        expected = []
        for repeated, kind, name in fields:
            if kind in ("option", "message", "enum"):
                continue
            kind = self.SCALARS.get(kind, kind.replace(".", "::"))
            expected.append(f"std::vector<{kind}> {name};" if repeated else f"{kind} {name}{{}};")
        found = [line.strip() for line in header.splitlines() if re.match(r" +[\w:<>]+ \w+(\{\})?;$", line)]
        self.assertEqual(found, expected)
        return header

    def test_type_proto(self):
        header = self.check("type.proto")
        self.assertIn("std::vector<Field> fields;", header)
        self.assertIn('case Kind::TYPE_SINT64: return "TYPE_SINT64";', header)

    def test_addressbook_proto(self):
        self.assertIn("google::protobuf::Timestamp last_updated{};", self.check("addressbook.proto"))


if __name__ == "__main__":
    if not os.environ.get("KVL_REAL_DATA"):
        print("KVL_REAL_DATA is not set: no real files to run on")
        sys.exit(77)
    unittest.main(argv=sys.argv[:1], verbosity=1)
