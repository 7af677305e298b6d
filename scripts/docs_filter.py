#!/usr/bin/env python3
"""Doxygen's filter for pages: prints a Markdown file with anchors and links as Doxygen knows them.

    docs_filter.py PAGE

Doxygen 1.9 gives headings no anchors of their own, and anchors are names for all pages together: the heading
`solve` of docs/program.md becomes `docs-program-solve`. Links to files that are no pages lead to the copies
beside the pages.
"""

import os
import pathlib
import re
import sys

# No files beside the sources
sys.dont_write_bytecode = True
import markdown_pages  # noqa: E402


def label(page, anchor):
    return str(page.with_suffix("")).replace("/", "-").lower() + "-" + anchor


def rewrite_link(target, page):
    path, _, anchor = target.partition("#")
    if "://" in target:
        return target
    if anchor:
        linked = pathlib.PurePath(os.path.normpath(page.parent / path)) if path else page
        return f"#{label(linked, anchor)}"
    return target if path.endswith(".md") else f"./{pathlib.PurePath(path).name}"


def escape_signs(text):
    """Number signs and at signs of the text between pieces of code, which Doxygen takes for commands."""
    pieces = re.split(r"(`[^`]*`|\]\([^)]*\))", text)
    pieces[::2] = [re.sub(r"([#@])(?=\w)", r"\\\1", piece) for piece in pieces[::2]]
    return "".join(pieces)


def rewrite(text, page):
    taken = set()
    lines = []
    for line, is_code in markdown_pages.mark_code(text.splitlines()):
        title = None if is_code else markdown_pages.get_title(line)
        if title is not None:
            anchor = markdown_pages.slug(title, taken)
            if not line.startswith("# "):
                line = f"{line} {{#{label(page, anchor)}}}"
        elif not is_code:
            line = markdown_pages.LINK.sub(lambda link: f"]({rewrite_link(link.group(1), page)})", line)
            line = escape_signs(line)
        lines.append(line + "\n")
    return "".join(lines)


def main():
    page = pathlib.Path(os.path.relpath(sys.argv[1]))
    sys.stdout.write(rewrite(page.read_text(encoding="utf-8"), page))


if __name__ == "__main__":
    main()
