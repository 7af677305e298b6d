#!/usr/bin/env python3
"""Checks that the fenced blocks of pages do what the pages say, and lists those that do not.

    check_docs.py --lumo PROGRAM --library FILE --build FOLDER [--compiler COMMAND] [--flags=FLAGS]
                  [--needs FILES] PAGE...

Runs in the root of the sources. A block in another language than these, or one that nothing checks, is a
fault. Hidden comments add information to a block; CONTRIBUTING.md lists them.

console  Each line after `$ ` is run, all of a page in one temporary folder with a link to `examples/`, where
         `lumo` is the program. The lines that follow are its standard output and error together.
sh       As above if it uses only solvers and common tools; a `text` block after it is its output.
         Other commands are not run: their scripts, presets and options must exist, and something else must
         run them.
cpp      With a `main` it is a program, and a `text` block after it is its output. Other blocks are put
         into functions and compiled.
smt2     A script that lumo reads, and one of the examples if the text before it says so; or assertions of an
         example, followed by the definitions that `lumo invert` answers them with.
cmake    CMake accepts it in a small project.
text     The output of the block before it, or text that no test can print, for a reason that a hidden comment
         gives.
"""

import argparse
import concurrent.futures
import itertools
import json
import os
import pathlib
import re
import shlex
import subprocess
import sys
import tempfile

# Write no files next to the sources
sys.dont_write_bytecode = True
import markdown_pages  # noqa: E402

ROOT = pathlib.Path.cwd()
# Headers that are not for users
PRIVATE_HEADERS = (
    "lumo/calculators/helpers.h",
    "lumo/calculators/solver_constants.h",
    "lumo/calculators/term_access.h",
)
STANDARD_HEADERS = ("array", "iostream", "string", "utility", "vector")
ASSIGNMENT = re.compile(r"\w+=")
WARNINGS = ["-Wall", "-Wextra", "-Werror", "-Wno-unused"]

# Commands in `sh` blocks that a test can run quickly and without side effects
HARMLESS = ("build/demo/bin/lumo", "cat", "cut", "cvc5", "grep", "lumo", "sed", "tail", "z3")
# Commands that show or load a file; a file of a build folder must exist
READERS = ("man", "source")
# Scripts that .ci/run does not start, and why
NOT_IN_CI = {
    "scripts/bench.sh": "takes minutes on an idle machine; the step bench starts what it builds",
    "scripts/judge.sh": "asks solvers about files that the tests solve, too",
    "scripts/mutate.py": "takes up to an hour",
    "scripts/package.sh": "makes a build of its own; the step package makes the same packages from another",
}


class Fault(Exception):
    """What is wrong with a block."""


class Site:
    """A temporary folder in which the commands of one page run."""

    def __init__(self, folder, tools):
        self.folder = pathlib.Path(folder)
        self.tools = tools
        (self.folder / "examples").symlink_to(ROOT / "examples")
        # The README calls the program by its path in the build of the demo.
        programs = self.folder / "build/demo/bin"
        programs.mkdir(parents=True)
        (programs / "lumo").symlink_to(pathlib.Path(tools.lumo).resolve())
        self.environment = dict(os.environ, PATH=f"{programs}:{os.environ['PATH']}")

    def run(self, args, text=""):
        """The status of a command, and its standard output and error."""
        done = subprocess.run(args, cwd=self.folder, env=self.environment, input=text, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, text=True, check=False)
        return done.returncode, done.stdout

    def run_shell(self, script):
        return self.run(["/bin/sh", "-c", script])

    def compile(self, name, text, *, only_look=False):
        """Compiles a program; returns its path."""
        source = self.folder / f"{name}.cpp"
        source.write_text(text, encoding="utf-8")
        tools = self.tools
        command = [*shlex.split(tools.compiler), "-std=c++20", f"-I{ROOT}", *shlex.split(tools.flags), *WARNINGS]
        if only_look:
            command += ["-fsyntax-only", source]
        else:
            libraries = [tools.library, *shlex.split(tools.needs), f"-Wl,-rpath,{pathlib.Path(tools.library).parent}"]
            command += ["-o", source.with_suffix(""), source, *libraries]
        status, output = self.run(command)
        if status != 0:
            raise Fault(f"does not compile:\n{output}")
        return source.with_suffix("")


def expect_equal(what, found, wanted):
    if found != wanted:
        raise Fault(f"{what} prints\n{found}and not\n{wanted}")


# ----------------------------------------------------------------------------------------------------- commands


def join_lines(lines):
    """Lines, joined with the next line if they end in a backslash."""
    joined = []
    is_open = False
    for line in lines:
        if is_open:
            joined[-1] += "\n" + line
        else:
            joined.append(line)
        is_open = line.endswith("\\")
    return joined


def check_console(site, block):
    exchanges = []
    for line in join_lines(block.lines):
        if line.startswith("$ "):
            exchanges.append((line[2:], []))
        elif exchanges:
            exchanges[-1][1].append(line + "\n")
        else:
            raise Fault("shows output before any command")
    if not exchanges:
        raise Fault("has no command")
    for command, output in exchanges:
        expect_equal(command, site.run_shell(command)[1], "".join(output))


def split_commands(text):
    """The simple commands of a script, as lists of words, without assignments before them."""
    commands = []
    for line in join_lines(text.splitlines()):
        lexer = shlex.shlex(line.replace("\\\n", " "), posix=True, punctuation_chars="|&;<>")
        lexer.whitespace_split = True
        words = []
        for token in lexer:
            if set(token) <= set("|&;"):
                commands.append(words)
                words = []
            else:
                words.append(token)
        commands.append(words)
    commands = [list(itertools.dropwhile(ASSIGNMENT.match, words)) for words in commands]
    return [words for words in commands if words]


def read_presets():
    presets = json.loads((ROOT / "CMakePresets.json").read_text(encoding="utf-8"))
    return {preset["name"] for preset in presets["configurePresets"] if not preset.get("hidden")}


def find_options(path):
    return set(re.findall(r"^option\((\w+)", (ROOT / path).read_text(encoding="utf-8"), re.MULTILINE))


def check_preset(name):
    if name not in read_presets():
        raise Fault(f"names the preset {name}, which CMakePresets.json does not have")


def check_build_tool(words):
    """cmake and ctest: presets and options exist. .ci/run and scripts/test.sh run them."""
    options = find_options("CMakeLists.txt") | find_options("tests/CMakeLists.txt")
    for i, word in enumerate(words):
        before = words[i - 1] if i else ""
        if before == "--preset":
            check_preset(word)
        elif before in ("--build", "--test-dir", "--install") and word.startswith("build/"):
            check_preset(word.split("/")[1])
        match = re.match(r"-D(LUMO_\w+)", word)
        if match and match.group(1) not in options:
            raise Fault(f"names the option {match.group(1)}, which no CMakeLists.txt has")


def check_built_files(site, words):
    for word in words[1:]:
        if word.startswith("build/"):
            _, preset, path = word.split("/", 2)
            check_preset(preset)
            if not (pathlib.Path(site.tools.build) / path).exists():
                raise Fault(f"names {word}, which the build does not make")


def is_started_by_ci(script):
    text = (ROOT / ".ci/run").read_text(encoding="utf-8")
    return re.search(rf"{re.escape(script)}(?![\w.])", text) is not None


def check_script(words):
    """A script of this repository: its options and arguments exist, and something runs it."""
    path, arguments = words[0], words[1:]
    script = ROOT / path
    if not os.access(script, os.X_OK):
        raise Fault(f"there is no program {path}")
    if path not in NOT_IN_CI and not is_started_by_ci(path):
        raise Fault(f"nothing runs {path}; .ci/run does not, and check_docs.py knows no reason why not")
    text = script.read_text(encoding="utf-8")
    for argument in arguments:
        if argument.startswith("-") and argument not in text:
            raise Fault(f"{path} does not know {argument}")
        if "/" in argument and not (ROOT / argument).exists():
            raise Fault(f"there is no {argument}")
        if path == "scripts/setup.sh" and not re.search(rf"^ *{re.escape(argument)}\) ", text, re.MULTILINE):
            raise Fault(f"{path} does not know the group {argument}")
        if path == "scripts/test.sh":
            check_preset(argument)


def check_sh(site, block):
    commands = split_commands(block.text)
    if all(words[0] in HARMLESS for words in commands):
        status, output = site.run_shell("set -e\n" + block.text)
        return check_printed(block, "the block", output, status)
    for words in commands:
        if words[0].startswith("scripts/"):
            check_script(words)
        elif words[0] in ("cmake", "ctest"):
            check_build_tool(words)
        elif words[0] in READERS:
            check_built_files(site, words)
        else:
            raise Fault(f"nothing checks the command {words[0]}")
    return None


def check_printed(block, what, output, status):
    """A block prints the text that follows it; without such a text, it must only succeed."""
    if block.printed is not None:
        expect_equal(what, output, block.printed.text)
    elif status != 0:
        raise Fault(f"ends with status {status}:\n{output}")


# ------------------------------------------------------------------------------------------------------ sources


def check_program(site, block):
    program = site.compile(f"program_{block.line}", block.text)
    status, output = site.run([program])
    if status != 0:
        raise Fault(f"ends with status {status}:\n{output}")
    check_printed(block, "the program", output, status)


def write_snippets(page, snippets):
    """A source with a function for each block, after includes of all public headers."""
    headers = [path.relative_to(ROOT) for folder in ("numbers", "terms", "model", "calculators", "elimination")
               for path in sorted((ROOT / "lumo" / folder).glob("*.h"))]
    lines = [f"#include <{header}>" for header in STANDARD_HEADERS]
    lines += [f'#include "{header}"' for header in headers if str(header) not in PRIVATE_HEADERS]
    bodies = []
    for block in snippets:
        own = [line for line in block.lines if line.startswith("#include ")]
        lines += own
        body = [f'#line {block.line} "{page}"', *("" if line in own else line for line in block.lines)]
        if "file scope" in block.hidden:
            bodies.append(body)
        elif "continues" in block.hidden and bodies and bodies[-1][-1] == "}":
            bodies[-1][-1:] = [*body, "}"]
        else:
            bodies.append([f"void snippet_{block.line}()", "{", block.hidden.get("given", ""), *body, "}"])
    return "\n".join([*lines, *(line for body in bodies for line in body), ""])


def check_smt2(site, block):
    if "(declare-" not in block.text and "(assert " in block.text:
        return check_requests(site, block)
    named = re.findall(r"`(examples/[^`]*)`", block.before)
    if named:
        paths = [path for name in named
                 for path in ([ROOT / name] if name.endswith(".smt2") else (ROOT / name).rglob("*.smt2"))]
        if not any(path.exists() and path.read_text(encoding="utf-8") == block.text for path in paths):
            raise Fault(f"is not what is in {' or '.join(named)}")
    subcommand = "shell" if "(push " in block.text else "simplify"
    status, output = site.run(["lumo", subcommand, "-"], block.text)
    if status != 0:
        raise Fault(f"lumo does not read it:\n{output}")
    return None


def check_requests(site, block):
    """Single assertions of an example, with the definitions that answer them."""
    assertions = [line for line in block.lines if line.startswith("(assert ")]
    answer = [line + "\n" for line in block.lines if line not in assertions]
    for path in sorted((ROOT / "examples").rglob("*.smt2")):
        lines = path.read_text(encoding="utf-8").splitlines()
        if all(assertion in lines for assertion in assertions):
            script = [line for line in lines if not line.startswith("(assert ") or line in assertions]
            output = site.run(["lumo", "invert", "-"], "\n".join(script))[1]
            return expect_equal("lumo invert", output, "".join(answer))
    raise Fault("has assertions that no example has")


def check_cmake(site, block):
    project = site.folder / f"project_{block.line}"
    project.mkdir()
    (project / "lumo").symlink_to(ROOT)
    (project / "main.cpp").write_text("int main() {}\n", encoding="utf-8")
    lines = [] if "project(" in block.text else ["cmake_minimum_required(VERSION 3.25)", "project(user LANGUAGES CXX)"]
    for target in re.findall(r"target_link_libraries\((\w+)", block.text):
        if not re.search(rf"add_(executable|library)\({target}\b", block.text):
            lines.append(f"add_executable({target} main.cpp)")
    (project / "CMakeLists.txt").write_text("\n".join([*lines, block.text]), encoding="utf-8")
    prefix = site.folder / "prefix"
    if "find_package(lumo" in block.text and not prefix.exists():
        status, output = site.run(["cmake", "--install", site.tools.build, "--prefix", prefix])
        if status != 0:
            raise Fault(f"lumo cannot be installed for it:\n{output}")
    status, output = site.run(["cmake", "-G", "Ninja", "-S", project, "-B", project / "build",
                               f"-DCMAKE_CXX_COMPILER={site.tools.compiler}", f"-DCMAKE_PREFIX_PATH={prefix}"])
    if status != 0:
        raise Fault(f"CMake does not accept it:\n{output}")


# -------------------------------------------------------------------------------------------------------- pages


def attach_texts(blocks):
    """Assigns to each block that prints something the `text` block with its output."""
    for block in blocks:
        block.printed = None
        block.is_output = False
    for maker, block in zip(blocks, blocks[1:]):
        is_near = len([line for line in block.before.splitlines() if line.strip()]) <= 1
        is_heading = block.before.startswith("#")
        if block.language == "text" and maker.language in ("cpp", "sh") and is_near and not is_heading \
                and not block.hidden.keys() & {"shows", "not run"}:
            maker.printed = block
            block.is_output = True


def is_snippet(block):
    return block.language == "cpp" and not re.search(r"\bint main\(", block.text) and "shows" not in block.hidden


def check_text(_site, block):
    if not block.is_output and not block.hidden.get("not run"):
        raise Fault("nothing says what prints it")


def check_shown(site, block):
    """`<!-- shows: COMMAND -->`"""
    command = block.hidden["shows"]
    expect_equal(command, site.run_shell(command)[1], block.text)


CHECKS = {"console": check_console, "sh": check_sh, "cpp": check_program, "smt2": check_smt2, "cmake": check_cmake,
          "text": check_text}


def check_block(site, block):
    if "shows" in block.hidden:
        return check_shown(site, block)
    if is_snippet(block):
        if block.printed is not None:
            raise Fault("prints something, but has no main")
        return None
    if block.language not in CHECKS:
        raise Fault(f"nothing checks blocks in the language '{block.language}'")
    return CHECKS[block.language](site, block)


def check_page(name, text, tools):
    """The faults of a page, as lines of text."""
    faults = []
    try:
        blocks = markdown_pages.read_blocks(text)
    except ValueError as e:
        return [f"{name}: {e}"]
    attach_texts(blocks)
    with tempfile.TemporaryDirectory() as folder:
        site = Site(folder, tools)
        for block in blocks:
            try:
                check_block(site, block)
            except Fault as e:
                faults.append(f"{name}:{block.line}: {e}")
        snippets = [block for block in blocks if is_snippet(block)]
        if snippets:
            try:
                site.compile("snippets", write_snippets(name, snippets), only_look=True)
            except Fault as e:
                faults.append(f"{name}: a block {e}")
    return faults


def parse_arguments():
    parser = argparse.ArgumentParser(description="Checks the fenced blocks of pages.")
    parser.add_argument("--lumo", required=True, help="the program")
    parser.add_argument("--library", required=True, help="the library")
    parser.add_argument("--build", required=True, help="the folder in which both were built")
    parser.add_argument("--compiler", default="c++")
    parser.add_argument("--flags", default="", help="with which the library was compiled")
    parser.add_argument("--needs", default="-lgmp", help="libraries that the library needs")
    parser.add_argument("pages", nargs="*", metavar="PAGE")
    return parser.parse_args()


def main():
    tools = parse_arguments()
    with concurrent.futures.ThreadPoolExecutor(max_workers=2) as pool:
        found = pool.map(lambda page: check_page(page, (ROOT / page).read_text(encoding="utf-8"), tools), tools.pages)
        faults = [fault for page in found for fault in page]
    for fault in faults:
        print(fault)
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
