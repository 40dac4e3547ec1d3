#!/usr/bin/env python3
"""Follows every link of a site, and looks for every picture of it: check_site.py <folder>. Addresses elsewhere are left
alone."""

import html.parser
import pathlib
import sys
import urllib.parse


class Links(html.parser.HTMLParser):
    """What a page leads to, and the places in it that others can lead to."""

    def __init__(self, page: pathlib.Path) -> None:
        super().__init__()
        self.targets: list[str] = []
        self.places: set[str] = set()
        self.feed(page.read_text(encoding="utf-8"))

    def handle_starttag(self, tag: str, attributes: list[tuple[str, str | None]]) -> None:
        for name, value in attributes:
            if value and name in ("id", "name"):
                self.places.add(value)
            if value and (name == "src" or (name == "href" and tag in ("a", "link"))):
                self.targets.append(value)


def problems_of(folder: pathlib.Path) -> tuple[int, list[str]]:
    """How many links there are, and those that lead nowhere."""
    pages = {page: Links(page) for page in sorted(folder.glob("*.html"))}
    count, problems = 0, []
    for page, links in pages.items():
        for target in links.targets:
            address = urllib.parse.urlsplit(target)
            if address.scheme or address.netloc:
                continue
            count += 1
            path = folder / urllib.parse.unquote(address.path) if address.path else page
            place = urllib.parse.unquote(address.fragment)
            # Doxygen leads to a list of private classes that it then leaves out.
            if place == "nested-classes":
                continue
            if not path.is_file() or (place and path in pages and place not in pages[path].places):
                problems.append(f"{page.name}: {target} leads nowhere")
    return count, problems


def main() -> None:
    count, problems = problems_of(pathlib.Path(sys.argv[1]))
    if problems or not count:
        sys.exit("\n".join(problems or ["no link found"]))
    print(f"{count} links and pictures followed")


if __name__ == "__main__":
    main()
