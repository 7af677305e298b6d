"""Reads the Markdown of the README and the pages in docs/: headings, links and fenced blocks."""

import re
from dataclasses import dataclass

LINK = re.compile(r"(?<!\\)\]\(([^()\s]+)\)")
_FENCE = re.compile(r"\s*```(\S*)\s*$")
_HEADING = re.compile(r"#{1,6} +(.*?)\s*$")
_HIDDEN = re.compile(r"^<!--\s*([a-z ]+?)(?::\s*(.*?))?\s*-->$", re.DOTALL | re.MULTILINE)


@dataclass
class Block:
    """A fenced block, and the information of its page about it."""

    language: str
    line: int  # of its first line of text, from 1
    lines: list[str]
    before: str  # the text between the block before, or the heading, and this one, without hidden comments
    hidden: dict[str, str]  # the hidden comments there: <!-- name: text -->

    @property
    def text(self):
        return "".join(line + "\n" for line in self.lines)


def mark_code(lines):
    """Pairs of a line and whether it is in a fenced block, the fences themselves included."""
    inside = False
    for line in lines:
        is_fence = _FENCE.match(line) is not None
        yield line, inside or is_fence
        inside ^= is_fence


def strip_code(line):
    """The line without the text between backticks."""
    return re.sub(r"`[^`]*`", "``", line)


def slug(title, taken):
    """The anchor of a heading, as forges make it, with a number if an earlier one has the same anchor."""
    text = re.sub(r"[^\w\- ]", "", title.lower()).replace(" ", "-")
    anchor, count = text, 0
    while anchor in taken:
        count += 1
        anchor = f"{text}-{count}"
    taken.add(anchor)
    return anchor


def get_title(line):
    """The title, if the line is a heading; otherwise None."""
    match = _HEADING.match(line)
    return match.group(1) if match else None


def read_blocks(text):
    """All fenced blocks of a page, in their order."""
    blocks = []
    before = []
    block = None
    for number, line in enumerate(text.splitlines(), 1):
        fence = _FENCE.match(line)
        if block is not None and fence:
            blocks.append(block)
            block = None
        elif block is not None:
            block.lines.append(line.removeprefix(indent))
        elif fence:
            words, hidden = _take_hidden("\n".join(before))
            indent = line[: len(line) - len(line.lstrip())]
            block = Block(fence.group(1), number + 1, [], words, hidden)
            before = []
        elif get_title(line) is not None:
            before = [line]
        else:
            before.append(line)
    if block is not None:
        raise ValueError(f"the block in line {block.line - 1} has no end")
    return blocks


def _take_hidden(text):
    matches = _HIDDEN.finditer(text)
    return _HIDDEN.sub("", text), {match.group(1): match.group(2) or "" for match in matches}
