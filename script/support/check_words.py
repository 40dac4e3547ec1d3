#!/usr/bin/env python3
"""Looks for words at each enumerator of the public headers: check_words.py <folder of doxygen's XML>. Doxygen itself warns
of the other names that have none."""

import pathlib
import sys
import xml.etree.ElementTree as ElementTree


def has_words(value: ElementTree.Element) -> bool:
    told = (value.find(part) for part in ("briefdescription", "detaileddescription"))
    return any("".join(each.itertext()).strip() for each in told if each is not None)


def enumerators(folder: pathlib.Path) -> dict[str, bool]:
    """Where each one stands, and whether it has words. A header and its name space tell the same ones twice."""
    found = {}
    for page in sorted(folder.glob("*.xml")):
        for kind in ElementTree.parse(page).iter("memberdef"):
            place = kind.find("location")
            if kind.get("kind") != "enum" or kind.get("prot") == "private" or place is None:
                continue
            for value in kind.iter("enumvalue"):
                name = f"{place.get('file')}:{place.get('line')}: {kind.findtext('name')}::{value.findtext('name')}"
                found[name] = has_words(value)
    return found


def main() -> None:
    found = enumerators(pathlib.Path(sys.argv[1]))
    problems = [f"{name} has no words" for name, is_told in found.items() if not is_told]
    if problems or not found:
        sys.exit("\n".join(problems or ["no enumerator found"]))
    print(f"{len(found)} enumerators have words")


if __name__ == "__main__":
    main()
