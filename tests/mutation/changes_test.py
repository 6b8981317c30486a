"""Which changes scripts/mutate makes of a source, and whether its list of unseen ones is up to date."""
import unittest

from changes import UNSEEN, changes, listed_unseen, mutants_of, sources, unseen


def changed(text):
    """The text after each of its changes."""
    return {text[:start] + new + text[end:] for start, end, new in changes(text)}


class Changes(unittest.TestCase):
    def test_operator_is_replaced(self):
        self.assertEqual(changed("x = a < b;"), {"x = a <= b;", "x = a >= b;"})
        self.assertEqual(changed("x = a + b;"), {"x = a - b;"})
        self.assertEqual(changed("x = a && b;"), {"x = a || b;"})
        self.assertEqual(changed("x = a && !b;"), {"x = a || !b;", "x = a && b;"})
        self.assertEqual(changed("++x;"), {"--x;"})

    def test_sign_that_is_no_operator_stays(self):
        self.assertEqual(changed("std::vector<int*> f(const char& c);"), set())
        self.assertEqual(changed("bool operator==(a, b);"), set())

    def test_number_is_raised(self):
        self.assertEqual(changed("x = 0x1F;"), {"x = 32;"})
        self.assertEqual(changed("x = 1'000U;"), {"x = 1001;"})
        self.assertEqual(changed("x = true;"), {"x = false;"})

    def test_number_with_a_fraction_stays(self):
        self.assertEqual(changed("x = 1.5;"), set())

    def test_condition_is_negated(self):
        self.assertEqual(changed("if (f(a)) x = y;"), {"if (!(f(a))) x = y;"})

    def test_comparison_is_not_negated_besides(self):
        self.assertEqual(changed("while (a == b) x = y;"), {"while (a != b) x = y;"})

    def test_call_is_dropped(self):
        self.assertEqual(changed("{ list.clear(); }"), {"{ ; }"})
        self.assertEqual(changed("{ a::f(b, g(c)); }"), {"{ ; }"})

    def test_call_whose_result_is_used_stays(self):
        self.assertEqual(changed("{ x = f(); }"), set())

    def test_result_is_emptied(self):
        self.assertEqual(changed("return f(a);"), {"return {};"})
        self.assertEqual(changed("return nullptr;"), set())

    def test_comment_text_and_directive_stay(self):
        self.assertEqual(changed('// a < b\n#define A 1\n/* 2 */ s = "3 < 4"; static_assert(a == b);\n'), set())

    def test_source_of_the_library_has_changes(self):
        self.assertTrue(sources())
        for file in sources():
            text = (UNSEEN.parents[2] / file).read_text()
            for mutant in mutants_of(file):
                self.assertEqual(text[mutant.start:mutant.end], mutant.old)
                self.assertNotEqual(mutant.old, mutant.new)


class UnseenChanges(unittest.TestCase):
    def test_each_entry_names_a_change_that_is_made(self):
        listed = listed_unseen()
        made = {unseen(mutant, listed) for file in sources() for mutant in mutants_of(file)}
        self.assertEqual(listed - made, set(), "such a line, or such a change of it, is no more")

    def test_each_entry_has_a_reason_and_stands_once(self):
        entries = [line.split(" | ") for line in UNSEEN.read_text().splitlines() if " | " in line]
        self.assertEqual([entry for entry in entries if len(entry) != 4 or not entry[3].strip()], [])
        self.assertEqual(len({tuple(entry[:3]) for entry in entries}), len(entries))


if __name__ == "__main__":
    unittest.main()
