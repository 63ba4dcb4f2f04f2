"""The mutants of a few lines of C++."""

import unittest

from mutants import mutants_of


def after(kind: str, body: str) -> list[str]:
    source = f"bool Answer(int a, int b) {{\n{body}\n}}\n"
    return [mutant.after for mutant in mutants_of("Answer.cpp", source) if mutant.kind == kind]


class MutantsTest(unittest.TestCase):
    def test_a_comparison_moves_its_boundary_and_turns_round(self):
        self.assertEqual(after("operator", "return a < b;"), ["return a <= b;", "return a >= b;"])

    def test_a_list_of_template_arguments_is_no_comparison(self):
        self.assertEqual(after("operator", "std::vector<int> rows;\nT&& x = F<int>(a);"), [])

    def test_and_becomes_or(self):
        self.assertEqual(after("operator", "return a && b;"), ["return a || b;"])

    def test_a_negation_is_taken_back(self):
        self.assertEqual(after("negation", "return !a;"), ["return a;"])

    def test_a_number_is_one_more_and_one_less_and_keeps_its_suffix(self):
        self.assertEqual(after("constant", "return a + 10U;"), ["return a + (10U - 1);", "return a + 11U;"])

    def test_a_condition_is_forced_to_both_outcomes(self):
        self.assertEqual(after("condition", "if (a) return b;"), ["if (false) return b;", "if (true) return b;"])

    def test_a_choice_is_forced_to_both_outcomes(self):
        self.assertEqual(
            after("condition", "return F(a) ? a : b;"), ["return false ? a : b;", "return true ? a : b;"]
        )

    def test_a_loop_is_only_kept_from_running(self):
        self.assertEqual(
            after("condition", "for (int i = 0; i < a; ++i) F(i);"), ["for (int i = 0; false; ++i) F(i);"]
        )

    def test_a_text_is_longer_by_one_character(self):
        self.assertEqual(after("text", 'log.Note("done %s", a);'), ['log.Note("done %s~", a);'])

    def test_a_call_is_dropped(self):
        self.assertEqual(after("dropped", "log.Entering();\nreturn a;"), [";"])

    def test_a_return_is_dropped_where_control_goes_on_after_it(self):
        self.assertEqual(after("dropped", "if (a) return b;\nreturn a;"), ["if (a) ;"])

    def test_a_declaration_is_dropped_when_its_name_is_not_used(self):
        self.assertEqual(after("dropped", "const Guard guard;\nconst int c = F(a);\nreturn c;"), [";"])

    def test_two_neighbouring_calls_change_places(self):
        self.assertEqual(after("order", "F(a);\nG(b);"), ["G(b); F(a);"])

    def test_calls_that_a_decision_separates_keep_their_places(self):
        self.assertEqual(after("order", "F(a);\nif (b) G(b);\nreturn a;"), [])

    def test_an_assertion_of_the_compiler_has_no_mutant(self):
        self.assertEqual(mutants_of("Answer.cpp", "static_assert(sizeof(int) == 4, F(1) + 2);\n"), [])

    def test_a_comment_and_an_include_have_no_mutant(self):
        self.assertEqual(mutants_of("Answer.cpp", '#include "a.h"\n// a < b + 1\n'), [])

    def test_mutants_that_read_the_same_are_told_apart(self):
        mutants = mutants_of("A.cpp", "void F() {\n  G();\n  H(1);\n  G();\n}\n")
        self.assertEqual([mutant.function for mutant in mutants if mutant.before == "G();"], ["F", "F #2"])


if __name__ == "__main__":
    unittest.main()
