"""The draw of the mutation check is the same for the same seed, comes from the whole product, and
changes one place at a time. Run as: mutants_test.py"""

import collections
import pathlib
import sys
import unittest

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parent.parent
sys.dont_write_bytecode = True
sys.path.insert(0, str(HERE))

from mutants import FOLDERS, LEAST, Draw, code_of, folder_of, sources, tables_of  # noqa: E402
from named import NAMED  # noqa: E402

SEEDS = [1, 2, 3]

SAMPLE = '''#include <vector>
// {1, "not code"}, a < b
constexpr Row kRows[] = {
    {1, "one, {", true},
    {2, "two", false},  // 2 < 3
};
/* a && b */ const bool less = a < b && !std::less<int>()(c, '"');
'''


def changes(text):
    """What the draw may do to a file of this text, as (kind, line before, line after)."""
    draw = Draw({"app/sample.cc": text})
    places = draw.places["app"]
    return {(m.kind, *m.told(text)) for part in places.values() for ms in part.values() for m in ms}


class Reading(unittest.TestCase):
    def test_code_is_told_from_comments_and_texts(self):
        code = code_of(SAMPLE)
        self.assertEqual(len(code), len(SAMPLE))
        for word in ("include", "not code", "one", "&& b", "2 < 3"):
            self.assertNotIn(word, code)
        self.assertIn("a < b &&", code)

    def test_a_table_is_its_rows_and_a_row_its_columns(self):
        rows = [[SAMPLE[a:b] for a, b in columns] for _, columns in tables_of(code_of(SAMPLE))[0]]
        self.assertEqual(rows, [["1", '"one, {"', "true"], ["2", '"two"', "false"]])

    def test_each_kind_of_change_is_made_where_it_can_be(self):
        line = "/* a && b */ const bool less = a < b && !std::less<int>()(c, '\"');"
        row = '{1, "one, {", true},'
        made = changes(SAMPLE)
        for change in [
            ("table number", row, '{2, "one, {", true},'),
            ("table flag", row, '{1, "one, {", false},'),
            ("table name", row, '{1, "pne, {", true},'),
            ("table column", row, '{1, "two", true},'),
            ("table row dropped", row, ""),
            ("ordering", line, line.replace("a < b", "a <= b")),
            ("logic", line, line.replace("b && !", "b || !")),
            ("negation", line, line.replace("!std", "std")),
        ]:
            self.assertIn(change, made)
        self.assertTrue(any(kind == "table rows swapped" for kind, _, _ in made))
        self.assertFalse([after for kind, _, after in made if "<=int" in after or "not codf" in after])


class TheDraw(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.files = sources(ROOT)
        cls.draw = Draw(cls.files)
        cls.drawn = {seed: cls.draw.first(seed) for seed in SEEDS}

    def test_the_same_seed_draws_the_same(self):
        again = Draw(sources(ROOT))
        for seed in SEEDS:
            self.assertEqual(again.first(seed), self.drawn[seed])
        self.assertNotEqual(self.drawn[1], self.drawn[2])

    def test_a_seed_has_sixty_of_which_a_third_are_in_tables(self):
        for mutants in self.drawn.values():
            self.assertEqual(len(mutants), 60)
            self.assertGreaterEqual(sum(m.kind.startswith("table") for m in mutants), 20)
            self.assertGreaterEqual(len({m.kind for m in mutants}), 18)

    def test_every_folder_is_drawn_from(self):
        for mutants in self.drawn.values():
            folders = collections.Counter(folder_of(m.file) for m in mutants)
            for folder in FOLDERS:
                self.assertGreaterEqual(folders[folder], LEAST, folder)

    def test_every_change_is_of_one_place_and_changes_it(self):
        for places in self.draw.places.values():
            for part in places.values():
                for mutants in part.values():
                    for mutant in mutants[::97]:
                        text = self.files[mutant.file]
                        after = mutant.applied(text)
                        self.assertNotEqual(text, after, mutant)
                        self.assertTrue(after.startswith(text[: mutant.start]))
                        self.assertTrue(after.endswith(text[mutant.end :]))

    def test_no_comment_or_directive_is_changed(self):
        for mutants in self.drawn.values():
            for mutant in mutants:
                text = self.files[mutant.file]
                if mutant.kind.startswith("named"):
                    continue
                self.assertNotEqual(text[mutant.start : mutant.end].strip(), "")
                self.assertNotIn(mutant.told(text)[0][:2], ("//", "#i"), mutant)

    def test_what_is_named_stands_where_it_is_named(self):
        for group, file, before, after in NAMED:
            self.assertEqual(self.files[file].count(before), 1, f"{group}: {before}")
            self.assertNotEqual(before, after)
        self.assertGreaterEqual({row[0] for row in NAMED},
                                {"presence", "truncation", "odd key", "swapped conversion"})

    def test_what_is_explained_stands_where_it_is_explained(self):
        for line in (HERE / "survivors.txt").read_text(encoding="utf-8").splitlines():
            if not line or line.startswith("#"):
                continue
            change, mark, reason = line.rpartition(" – ")
            file, _, lines = change.partition(": ")
            before, arrow, after = lines.partition(" => ")
            self.assertTrue(mark and arrow and reason and before != after, line)
            self.assertIn(before, " ".join(self.files[file].split()), line)


if __name__ == "__main__":
    unittest.main()
