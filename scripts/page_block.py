#!/usr/bin/env python3
"""Prints a fenced block of a page.

  scripts/page_block.py PAGE MARK       MARK is the text of a hidden comment before the block, `<!-- MARK -->`

Fails if not exactly one block of the page has the mark.
"""

import pathlib
import sys

# Write no files next to the sources
sys.dont_write_bytecode = True

import markdown_pages  # noqa: E402


def find_blocks(text, mark):
    name, _, value = mark.partition(": ")
    return [block for block in markdown_pages.read_blocks(text) if block.hidden.get(name) == value]


def main():
    page, mark = sys.argv[1:]
    blocks = find_blocks(pathlib.Path(page).read_text(encoding="utf-8"), mark)
    if len(blocks) != 1:
        print(f"{page}: {len(blocks)} blocks have the mark {mark}, but one was expected", file=sys.stderr)
        return 1
    print(blocks[0].text, end="")
    return 0


if __name__ == "__main__":
    sys.exit(main())
