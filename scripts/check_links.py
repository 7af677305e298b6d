#!/usr/bin/env python3
"""Checks that every link of pages to a file or a heading has a target, and lists those that do not.

    check_links.py PAGE...

A page is Markdown, or HTML that was made from it, in which no link may be left as text. Links to other
machines are not followed.
"""

import functools
import html.parser
import pathlib
import sys
import urllib.parse

# Write no files next to the sources
sys.dont_write_bytecode = True
import markdown_pages  # noqa: E402

# Elements whose text is not text of the page
CODE = ("code", "pre", "script", "style")


class HtmlPage(html.parser.HTMLParser):
    """Collects links and anchors."""

    def __init__(self):
        super().__init__()
        self.links = []
        self.anchors = set()
        self._depth_of_code = 0

    def handle_starttag(self, tag, attrs):
        for name, value in attrs:
            if name in ("href", "src") and tag != "base":
                self.links.append((self.getpos()[0], value or ""))
            elif name == "id" or (name == "name" and tag == "a"):
                self.anchors.add(value)
        self._depth_of_code += tag in CODE

    def handle_endtag(self, tag):
        self._depth_of_code -= tag in CODE

    def handle_data(self, data):
        if self._depth_of_code == 0:
            self.links += [(self.getpos()[0], f"{target} (a link that stayed text)")
                           for target in markdown_pages.LINK.findall(data)]


def read_markdown(text):
    links, anchors = [], set()
    for number, (line, is_code) in enumerate(markdown_pages.mark_code(text.splitlines()), 1):
        if is_code:
            continue
        title = markdown_pages.get_title(line)
        if title is not None:
            markdown_pages.slug(title, anchors)
        for target in markdown_pages.LINK.findall(markdown_pages.strip_code(line)):
            links.append((number, target))
    return links, anchors


@functools.cache
def read_page(path):
    """The links of a page with their lines, and its anchors."""
    text = path.read_text(encoding="utf-8")
    if path.suffix == ".md":
        return read_markdown(text)
    page = HtmlPage()
    page.feed(text)
    return page.links, page.anchors


def find_fault(page, target):
    """What is wrong with a link, or None."""
    url = urllib.parse.urlsplit(target)
    if url.scheme or url.netloc:
        return None
    path = page.parent / urllib.parse.unquote(url.path) if url.path else page
    if not path.exists():
        return f"there is no {target}"
    anchor = urllib.parse.unquote(url.fragment)
    if anchor and path.suffix in (".md", ".html") and anchor not in read_page(path.resolve())[1]:
        return f"nothing in {url.path or 'this page'} has the anchor #{anchor}"
    return None


def main():
    faults = 0
    for page in map(pathlib.Path, sys.argv[1:]):
        for line, target in read_page(page.resolve())[0]:
            fault = find_fault(page, target)
            if fault:
                faults += 1
                print(f"{page}:{line}: {fault}")
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
