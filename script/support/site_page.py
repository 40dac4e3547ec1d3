#!/usr/bin/env python3
"""A Markdown page as doxygen is to read it: site_page.py <root> <folder of the site> <page>.

Links to other pages and to public headers become references, so that doxygen complains of those that lead nowhere; any
other file that a page links to is laid beside the site. What means something to doxygen and nothing to Markdown is
escaped."""

import html
import pathlib
import re
import shutil
import sys

LINK = re.compile(r"(!?)\[((?:[^][]|\[[^]]*\])*)\]\(([^)\s]+)\)")
CODE = re.compile(r"(`+)(?!`).*?(?<!`)\1(?!`)", re.DOTALL)
# Pages whose links are the branches of the tree at the side.
INDEXES = ("docs/README.md", "docs/decisions/README.md", "docs/rooms.md")


def label_of(page: pathlib.PurePath) -> str:
    """How doxygen knows a page, by its path below the root."""
    return "page_" + re.sub(r"[^a-z0-9]+", "_", str(page.with_suffix("")).lower())


def coded(span: str) -> str:
    """Code between words; doxygen takes some of its characters for commands."""
    inner = span.strip("`")
    if not re.search(r'[\\"@]', inner):
        return span
    plain = re.sub(r"([\\@])", r"\\\1", html.escape(inner.strip(), quote=False)).replace('"', "&quot;")
    return f"<code>{plain}</code>"


class Page:
    def __init__(self, root: pathlib.Path, site: pathlib.Path, page: pathlib.Path) -> None:
        self.root = root
        self.site = site
        self.folder = page.parent
        self.name = page.relative_to(root)
        self.branches: set[str] = set()

    def text(self) -> str:
        """The whole page, its heading with a label."""
        heading, _, rest = (self.root / self.name).read_text(encoding="utf-8").partition("\n")
        return f"{heading} {{#{label_of(self.name)}}}\n{self.without_fences(rest)}"

    def without_fences(self, text: str) -> str:
        pieces = re.split(r"(^```.*?^```[^\n]*$)", text, flags=re.DOTALL | re.MULTILINE)
        return "".join(piece if i % 2 else self.prose(piece) for i, piece in enumerate(pieces))

    def prose(self, text: str) -> str:
        """Lines that are indented as code, and code between words, stay what they are."""
        lines = re.split(r"((?:^(?: {4}|\t)[^\n]*\n)+)", text, flags=re.MULTILINE)
        return "".join(line if i % 2 else self.words(line) for i, line in enumerate(lines))

    def words(self, text: str) -> str:
        kept: list[str] = []

        def keep(found: str) -> str:
            kept.append(found)
            return f"\0{len(kept) - 1}\0"

        text = LINK.sub(lambda link: keep(self.linked(*link.groups())), text)
        text = CODE.sub(lambda code: keep(coded(code.group())), text)
        text = re.sub(r"([\\@])", r"\\\1", text)
        while "\0" in text:
            text = re.sub(r"\0(\d+)\0", lambda place: kept[int(place.group(1))], text)
        return text

    def linked(self, mark: str, words: str, target: str) -> str:
        if re.match(r"[a-z]+:", target):
            return f"{mark}[{words}]({target})"
        path = (self.folder / target.split("#")[0]).resolve()
        if mark:
            return f"![{words}]({path.name})"
        if path.is_dir():
            path = path / "README.md"
        name = path.relative_to(self.root)
        plain = words.replace("`", "").replace('"', "'")
        if path.suffix == ".md":
            return self.reference(label_of(name), plain)
        if path.suffix == ".h" and name.parts[0] == "src":
            return f'\\ref {"/".join(name.parts[1:])} "{plain}"'
        return self.copied(path, name, plain)

    def reference(self, label: str, words: str) -> str:
        """A page is a branch of an index where that names it first."""
        branches = str(self.name) in INDEXES and label not in self.branches
        self.branches.add(label)
        return f'{chr(92)}{"subpage" if branches else "ref"} {label} "{words}"'

    def copied(self, path: pathlib.Path, name: pathlib.PurePath, words: str) -> str:
        copy = self.site / "files" / name
        copy.parent.mkdir(parents=True, exist_ok=True)
        shutil.copyfile(path, copy)
        return f'<a href="files/{name}">{words}</a>'


def main() -> None:
    root, site, page = (pathlib.Path(word).resolve() for word in sys.argv[1:4])
    print(Page(root, site, page).text())


if __name__ == "__main__":
    main()
