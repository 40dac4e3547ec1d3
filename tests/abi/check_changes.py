#!/usr/bin/env python3
"""Each change of a header that a host can feel shows in the tables. check_changes.py CLANG COMPILER"""

import pathlib
import sys
import tempfile

import declarations
import layout

HEADER = """
#include <string>
namespace vlclientui {
enum class Answer { Yes, No };
class Base { public: virtual ~Base(); virtual int first() = 0; virtual int second() = 0; };
class Window : public Base {
 public:
  int first() override; int second() override;
  std::string title(int width) const;
 private:
  void paint();
  int width_; double height_;
};
}
"""

CHANGES = {
    "a value between two others": ("Yes, No", "Yes, Perhaps, No"),
    "virtual functions that change places": (
        "virtual int first() = 0; virtual int second() = 0;",
        "virtual int second() = 0; virtual int first() = 0;",
    ),
    "one more virtual function": ("virtual int second() = 0;", "virtual int second() = 0; virtual int third();"),
    "members that change places": ("int width_; double height_;", "double height_; int width_;"),
    "a member of another size": ("int width_", "long width_"),
    "an override that goes": ("int second() override;", ""),
    "another base": (": public Base", ": virtual public Base"),
    "another argument": ("title(int", "title(long"),
    "another result": ("std::string title", "int title"),
    "a function that goes": ("std::string title(int width) const;", ""),
}
UNFELT = {
    "a private function": ("void paint();", "void paint(); void paintAgain();"),
    "another name of an argument": ("int width)", "int w)"),
}


def tables(header: str, clang: str, compiler: str) -> tuple[list[str], list[str]]:
    with tempfile.TemporaryDirectory() as folder:
        found = declarations.read(clang, pathlib.Path(folder), header)
        readable = declarations.demangled(found.functions)
        functions = sorted(f"{readable[name]} -> {kind}" for name, kind in found.functions.items())
        return functions, found.described(layout.read(compiler, pathlib.Path(folder), header))


def main() -> int:
    kept = tables(HEADER, *sys.argv[1:3])
    problems = [] if all(kept) else ["nothing was read at all"]
    for changes, is_felt in ((CHANGES, True), (UNFELT, False)):
        for what, (before, after) in changes.items():
            assert before in HEADER, before
            if (tables(HEADER.replace(before, after, 1), *sys.argv[1:3]) != kept) != is_felt:
                problems.append(what + (" does not show" if is_felt else " shows"))
    print("\n".join(problems))
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
