"""Pages with one fault each, and the messages of the scripts that check pages."""

import pathlib
import re
import sys
import tempfile
import unittest

sys.path.insert(0, "scripts")
# Write no files next to the sources
sys.dont_write_bytecode = True

import check_docs
import check_links
import markdown_pages
import page_block

SCRIPT = "(set-logic QF_BV)\n(declare-const p Bool)\n(assert p)\n"


def block(language, text, before=""):
    return f"{before}\n\n```{language}\n{text}```\n"


PROGRAM = block("cpp", '#include <iostream>\nint main() { std::cout << "one\\n"; }\n')

# A page, the line of its fault, and a part of the message
FAULTY_BLOCKS = [
    (block("haskell", "main = pure ()\n"), 4, "nothing checks blocks in the language 'haskell'"),
    (block("", "text\n"), 4, "nothing checks blocks in the language ''"),
    ("```text\nno end\n", None, "the block in line 1 has no end"),
    (block("console", "$ echo one\ntwo\n"), 4, "echo one prints\none\nand not\ntwo\n"),
    (block("console", "$ echo one\none\ntwo\n"), 4, "echo one prints\none\nand not\none\ntwo\n"),
    (block("console", "$ echo one; echo two >&2\none\n"), 4, "prints\none\ntwo\nand not\none\n"),
    (block("console", "$ lumo --no-such-option | wc -l\n0\n"), 4, "and not\n0\n"),
    (block("console", "output\n"), 4, "shows output before any command"),
    (block("console", ""), 4, "has no command"),
    (block("sh", "lumo invert examples/no-such-file.smt2\n"), 4, "ends with status 2"),
    (block("sh", "lumo invert examples/demo.smt2\n") + block("text", "x\n"), 4, "and not\nx\n"),
    (block("sh", "rm -r everything\n"), 4, "nothing checks the command rm"),
    (block("sh", "lumo --version; rm everything\n"), 4, "nothing checks the command lumo"),
    (block("sh", "scripts/no_such_script.sh\n"), 4, "there is no program scripts/no_such_script.sh"),
    (block("sh", "scripts/coverage_table.py\n"), 4, "nothing runs scripts/coverage_table.py"),
    (block("sh", "scripts/setup.sh run no-group\n"), 4, "does not know the group no-group"),
    (block("sh", "scripts/test.sh no-preset\n"), 4, "names the preset no-preset"),
    (block("sh", "scripts/fuzz.sh --no-option 3\n"), 4, "does not know --no-option"),
    (block("sh", "scripts/mutate.py lumo/numbers/none.cpp\n"), 4, "there is no lumo/numbers/none.cpp"),
    (block("sh", "cmake --preset no-preset\n"), 4, "names the preset no-preset"),
    (block("sh", "CXX=g++ cmake --build build/none\n"), 4, "names the preset none"),
    (block("sh", "cmake --preset debug -DLUMO_NONE=ON\n"), 4, "names the option LUMO_NONE"),
    (block("sh", "source build/none/bin/lumo\n"), 4, "names the preset none"),
    (block("sh", "source build/debug/bin/none\n"), 4, "names build/debug/bin/none, which the build does not make"),
    (PROGRAM.replace("<<", ">>"), 4, "does not compile"),
    (PROGRAM.replace("; }", "; return 1; }"), 4, "ends with status 1:\none\n"),
    (PROGRAM + block("text", "two\n"), 4, "the program prints\none\nand not\ntwo\n"),
    (block("cpp", "lumo::TermManager mgr;\nmgr.make_nonsense();\n"), None, "page.md:5:"),
    (block("cpp", "mgr.make_true();\n"), None, "page.md:4:"),
    (block("cpp", "int one = 1;\n") + block("text", "1\n"), 4, "prints something, but has no main"),
    (block("smt2", SCRIPT.replace("Bool", "Int")), 4, "lumo does not read it"),
    (block("smt2", SCRIPT, "As in `examples/demo.smt2`:"), 4, "is not what is in examples/demo.smt2"),
    (block("smt2", "(assert (bvult new old))\n"), 4, "has assertions that no example has"),
    (block("smt2", "(assert (not p1))\n(define-fun p1 () Bool true)\n"), 4, "lumo invert prints"),
    (block("cmake", "target_link_libraries(user PRIVATE)\nno_such_command()\n"), 4, "CMake does not accept it"),
    (block("text", "text\n"), 4, "nothing says what prints it"),
    (block("text", "text\n", "<!-- not run: -->"), 4, "nothing says what prints it"),
    (PROGRAM + block("text", "one\n", "\nfar\n\naway"), 13, "nothing says what prints it"),
    (PROGRAM + block("text", "one\n", "## Heading"), 10, "nothing says what prints it"),
    (block("json", "1\n", "<!-- shows: echo 2 -->"), 4, "echo 2 prints\n2\nand not\n1\n"),
]

SOUND_BLOCKS = [
    block("console", "$ echo one \\\ntwo\none two\n$ echo three > file\n") + block("console", "$ cat file\nthree\n"),
    block("sh", "lumo check --help | grep -c Usage  # a comment\n") + block("text", "1\n", "prints"),
    PROGRAM + block("text", "one\n", "prints"),
    # Only one page, since compiling all headers takes long
    block("cpp", "#include <map>\nconst std::map<int, lumo::QNumber> none;\n") +
    block("cpp", "mgr.make_true();\n", "<!-- given: lumo::TermManager mgr; -->") +
    block("cpp", "mgr.make_false();\n", "<!-- continues -->") +
    block("cpp", "struct Pair { int a; };\n", "<!-- file scope -->") + block("cpp", "Pair mgr{1};\n"),
    block("sh", "source build/debug/bin/lumo && CXX=g++ cmake --preset debug\nctest --test-dir build/debug\n"),
    block("smt2", SCRIPT),
    block("smt2", "(assert (not p1))\n(define-fun p1 () Bool false)\n"),
    block("text", "text\n", "<!-- not run: a drawing -->"),
    block("json", "1\n2\n", "<!-- shows:\necho 1\necho 2\n-->"),
]

PAGE = "# The *first* page\n\n## What `is` here?\n\n## What is here\n\n```sh\n[x](nothing.md)\n```\n`[x](nothing.md)`\n"

LINKS = [
    ("#the-first-page", None),
    ("#what-is-here", None),
    ("#what-is-here-1", None),
    ("page.md", None),
    ("other.html#there", None),
    ("https://example.org/nothing#at-all", None),
    ("#what-is-here-2", "nothing in this page has the anchor #what-is-here-2"),
    ("other.html#here", "nothing in other.html has the anchor #here"),
    ("folder/page.md", "there is no folder/page.md"),
]


class Blocks(unittest.TestCase):
    def test_faults_are_named_by_their_place(self):
        for page, line, message in FAULTY_BLOCKS:
            with self.subTest(page):
                faults = check_docs.check_page("page.md", page, TOOLS)
                self.assertEqual(len(faults), 1, faults)
                self.assertTrue(faults[0].startswith("page.md:" if line is None else f"page.md:{line}: "), faults[0])
                self.assertIn(message, faults[0])

    def test_sound_pages_have_none(self):
        for page in SOUND_BLOCKS:
            with self.subTest(page):
                self.assertEqual(check_docs.check_page("page.md", page, TOOLS), [])

    def test_scripts_without_a_step_of_the_full_check_are_there(self):
        for script in check_docs.NOT_IN_CI:
            self.assertTrue((check_docs.ROOT / script).exists(), script)
            self.assertFalse(check_docs.is_started_by_ci(script), script)

    def test_every_language_has_a_fault_here(self):
        languages = {found.language for page, line, _ in FAULTY_BLOCKS if line is not None
                     for found in markdown_pages.read_blocks(page)}
        self.assertLessEqual(set(check_docs.CHECKS), languages)


class Links(unittest.TestCase):
    def test_each_leads_to_a_file_and_an_anchor(self):
        with tempfile.TemporaryDirectory() as folder:
            page = pathlib.Path(folder, "page.md")
            page.write_text(PAGE, encoding="utf-8")
            pathlib.Path(folder, "other.html").write_text('<p id="there">', encoding="utf-8")
            for target, fault in LINKS:
                with self.subTest(target):
                    self.assertEqual(check_links.find_fault(page.resolve(), target), fault)

    def test_code_has_none(self):
        self.assertEqual(check_links.read_markdown(PAGE)[0], [])

    def test_what_stayed_text_is_none(self):
        with tempfile.TemporaryDirectory() as folder:
            page = pathlib.Path(folder, "page.html")
            page.write_text("<p>[a](b.md)</p><code>[a](c.md)</code>", encoding="utf-8")
            self.assertEqual(check_links.read_page(page)[0], [(1, "b.md (a link that stayed text)")])


class Marks(unittest.TestCase):
    def test_a_block_is_found_by_its_mark(self):
        page = (block("text", "one\n") + block("text", "two\n", "<!-- not run: a reason -->\n<!-- printed by: a step -->")
                + block("cpp", "three\n", "<!-- built by: a step -->"))
        self.assertEqual([found.text for found in page_block.find_blocks(page, "printed by: a step")], ["two\n"])
        self.assertEqual([found.text for found in page_block.find_blocks(page, "built by: a step")], ["three\n"])
        self.assertEqual(page_block.find_blocks(page, "printed by: a"), [])

    def test_the_readme_has_those_that_the_full_check_looks_for(self):
        marks = re.findall(r'readme_block "([^"$]+)"', pathlib.Path(".ci/run").read_text(encoding="utf-8"))
        self.assertEqual(len(marks), 4)
        readme = pathlib.Path("README.md").read_text(encoding="utf-8")
        for mark in marks:
            with self.subTest(mark):
                self.assertEqual(len(page_block.find_blocks(readme, mark)), 1)


if __name__ == "__main__":
    TOOLS = check_docs.parse_arguments()
    unittest.main(argv=sys.argv[:1])
