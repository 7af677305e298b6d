#!/usr/bin/env python3
"""Doxygen's filter for pages: prints a Markdown file with anchors and links as Doxygen knows them.

    docs_filter.py PAGE

Doxygen 1.9 gives headings no anchors, and all pages share one set of anchor names: the heading
`solve` of docs/program.md becomes `docs-program-solve`. Links to files that are not pages lead to the copies
next to the pages.
"""

import html
import os
import pathlib
import re
import sys

# Write no files next to the sources
sys.dont_write_bytecode = True
import markdown_pages  # noqa: E402


# A link to an anchor, whose label stays unchanged
LABEL = re.compile(r"\[[^\]]*\]\([^()\s]*#[^()\s]*\)")


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


def escape_code(piece):
    """The piece of code without text that has a special meaning for Doxygen; links stay unchanged.

    An apostrophe ends what a single backtick began, but not what two did. A backslash, which a bar needs in a
    table, is text between backticks.
    """
    if "\\|" in piece:
        return f"<code>{html.escape(piece[1:-1], quote=False)}</code>"
    return f"`{piece}`" if piece.startswith("`") and "'" in piece else piece


def escape(text):
    """The text without parts that have a special meaning for Doxygen.

    A number sign or an at sign before a word starts a command.
    """
    pieces = re.split(r"(`[^`]*`|\]\([^)]*\))", text)
    pieces[::2] = [re.sub(r"([#@])(?=\w)", r"\\\1", piece) for piece in pieces[::2]]
    pieces[1::2] = map(escape_code, pieces[1::2])
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
            line = LABEL.sub(lambda link: link.group().replace("`", ""), line)
            line = markdown_pages.LINK.sub(lambda link: f"]({rewrite_link(link.group(1), page)})", line)
            line = escape(line)
        lines.append(line + "\n")
    return "".join(lines)


def main():
    page = pathlib.Path(os.path.relpath(sys.argv[1]))
    sys.stdout.write(rewrite(page.read_text(encoding="utf-8"), page))


if __name__ == "__main__":
    main()
