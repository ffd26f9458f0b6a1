#!/usr/bin/env python3
"""Tests of tools/mutations.py: which changes are found in a line, and which are not.

Usage: mutations_test.py FOLDER_OF_THE_TOOLS
"""
import sys
import unittest


def found(text, kind=None):
    """The new texts of the first changed line of each mutation of that kind."""
    return [change.after[0].strip() for change in mutations.mutations("a.cpp", text) if kind in (None, change.kind)]


class Mutations(unittest.TestCase):
    def test_a_comparison_is_shifted_or_turned(self):
        self.assertEqual(found("  return a < b;", "comparison"), ["return a <= b;"])
        self.assertEqual(found("  return a == b;", "comparison"), ["return a != b;"])

    def test_brackets_of_templates_and_arrows_are_no_comparisons(self):
        self.assertEqual(found("  std::vector<int> a = b->c();", "comparison"), [])
        self.assertEqual(found("  out << a;", "comparison"), [])

    def test_a_constant_grows_by_one(self):
        self.assertEqual(found("  x = 1'024U;", "constant"), ["x = 1025U;"])
        self.assertEqual(found("  x = 0xFFu;", "constant"), ["x = 0x100u;"])

    def test_names_fractions_and_octal_numbers_are_no_constants(self):
        self.assertEqual(found("  x1 = k2;", "constant"), [])
        self.assertEqual(found("  x = 0.5;", "constant"), [])
        self.assertEqual(found("  x = 0644;", "constant"), [])

    def test_a_condition_is_negated(self):
        self.assertEqual(found("  if (a && b) return;", "negated condition"), ["if (!(a && b)) return;"])
        self.assertEqual(found("  while (a) {", "negated condition"), ["while (!(a)) {"])
        self.assertEqual(found("  return a ? b : c;", "negated condition"), ["return !(a) ? b : c;"])

    def test_a_condition_that_declares_something_is_left_alone(self):
        self.assertEqual(found("  if (const auto a = b()) return;", "negated condition"), [])
        self.assertEqual(found("  if (f(); a) return;", "negated condition"), [])

    def test_neighbouring_statements_are_swapped(self):
        changes = [
            change
            for change in mutations.mutations("a.cpp", "  a = 1;\n  b();\n")
            if change.kind == "swapped statements"
        ]
        self.assertEqual([change.after for change in changes], [("  b();", "  a = 1;")])
        self.assertEqual((changes[0].first, changes[0].last), (1, 2))

    def test_declarations_and_returns_are_not_swapped(self):
        self.assertEqual(found("  int a = 1;\n  b();\n", "swapped statements"), [])
        self.assertEqual(found("  b();\n  return;\n", "swapped statements"), [])
        self.assertEqual(found("  b();\n    c();\n", "swapped statements"), [])

    def test_a_call_is_dropped(self):
        self.assertEqual(found("  file->close();", "dropped call"), [";"])
        self.assertEqual(found("  const int a = f();", "dropped call"), [])

    def test_two_arguments_are_swapped(self):
        self.assertEqual(found("  x = f(a, b + c);", "swapped arguments"), ["x = f(b + c, a);"])
        self.assertEqual(found("  x = f(a, a);", "swapped arguments"), [])

    def test_comments_and_texts_are_left_alone(self):
        self.assertEqual(found("  // if (a == 1) f(a, b);"), [])
        self.assertEqual(found('  x = "a == 1";'), [])
        self.assertEqual(found("  /* a < 1\n b < 2 */"), [])

    def test_a_mutation_is_made_at_its_place_only(self):
        text = "  a = 1;\n  a = 1;\n"
        second = [change for change in mutations.mutations("a.cpp", text) if change.first == 2][0]
        self.assertEqual(mutations.applied(text, second), "  a = 1;\n  a = 2;\n")

    def test_a_mutation_of_another_text_is_refused(self):
        change = next(mutations.mutations("a.cpp", "  a = 1;"))
        with self.assertRaises(ValueError):
            mutations.applied("  b = 1;", change)


if __name__ == "__main__":
    sys.path.insert(0, sys.argv.pop())
    import mutations

    unittest.main()
