#!/usr/bin/env python3
"""Each change of a header that a host can feel shows in the tables. check_changes.py CLANG COMPILER"""

import pathlib
import subprocess
import sys
import tempfile

import declarations
import interface
import layout

HEADER = """
#include <string>
namespace vlclientui {
enum class Answer { Yes, No };
enum Kind { Grid, Image };
class Base { public: virtual ~Base(); virtual int first() = 0; virtual int second() = 0; };
template <class... Args> class Event { int handlers_; long last_; virtual void raise(Args... args); };
template <class T, int Size> struct Row { T first; };
template <> struct Row<int, 3> { int first; int second; };
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
    "an enumeration in another type": ("enum class Answer", "enum class Answer : long"),
    "an enumeration in a type of its own": ("enum Kind", "enum Kind : unsigned char"),
    "an enumeration with a scope": ("enum Kind", "enum class Kind : unsigned"),
    "members of a template that change places": ("int handlers_; long last_;", "long last_; int handlers_;"),
    "a virtual function of a template": ("virtual void raise", "void raise"),
    "a base of a template": ("class Event {", "class Event : public Base {"),
    "another parameter of a template": ("<class T, int Size>", "<class T, int Size, class More = int>"),
    "a member of a special template": ("int first; int second;", "int second; int first;"),
    "a class that nobody derives from any more": ("class Window :", "class Window final :"),
    "a template that nobody derives from any more": ("class Event {", "class Event final {"),
    "a function that nobody overrides any more": ("int second() override;", "int second() final;"),
}
UNFELT = {
    "a private function": ("void paint();", "void paint(); void paintAgain();"),
    "another name of an argument": ("int width)", "int w)"),
    "a type that is there anyway": ("enum class Answer", "enum class Answer : int"),
    "a class made of a template": ("double height_;\n", "double height_;\n static void show(Row<int, 7> row) { (void)row.first; }\n"),
}


def tables(header: str, clang: str, compiler: str) -> tuple[list[str], list[str]]:
    with tempfile.TemporaryDirectory() as folder:
        found = declarations.read(clang, pathlib.Path(folder), header)
        readable = declarations.demangled(found.functions)
        functions = sorted(f"{readable[name]} -> {kind}" for name, kind in found.functions.items())
        return functions, found.described(layout.read(compiler, pathlib.Path(folder), header))


def unseen_twin(clang: str, compiler: str) -> list[str]:
    """A library that lacks what its twin has, and one more name that no header declares."""
    with tempfile.TemporaryDirectory() as folder:
        sources = {"whole": "int shown() { return 1; } int hidden() { return 2; }", "less": ""}
        for name, text in sources.items():
            words = [compiler, "-shared", "-fPIC", "-x", "c++", "-", "-o", f"{folder}/{name}"]
            subprocess.run(words, check=True, text=True, input=f"namespace vlclientui {{ {text} }}")
        declared = set(declarations.read(clang, pathlib.Path(folder), "namespace vlclientui { int shown(); }").functions)
        seen = [interface.alone(f"{folder}/{one},{folder}/{other}", declared)
                for one, other in (("whole", "less"), ("less", "whole"), ("whole", "whole"))]
    return [] if seen == [declared, declared, set()] and declared else ["what one of two libraries lacks does not show"]


REFERENCES = """
namespace vlclientui {
class Taken {
 public:
  Taken(); ~Taken();
  int kept() &; int kept() &&; int kept() const &; int kept() const &&;
  int plain(); int plain() const; operator int() const; Taken& operator+=(int); static int shared();
};
bool operator==(const Taken& one, const Taken& other);
namespace host { int within(); }
}
"""


def unseen_hidden(clang: str) -> list[str]:
    """Functions of any shape are exported, and one is seen that is not."""
    shown = interface.MAP.read_text(encoding="utf-8")
    with tempfile.TemporaryDirectory() as folder:
        names = declarations.read(clang, pathlib.Path(folder), REFERENCES).wanted
    problems = [f"cmake/exports.map hides {name}" for name in sorted(interface.hidden(shown, names))]
    without = interface.hidden(shown.replace("_ZNKO10vlclientui*;", ""), names | {"_ZN5other5shownEv"})
    if len(names) < 12 or len(without) != 2:
        problems.append("what is hidden does not show")
    return problems


def main() -> int:
    kept = tables(HEADER, *sys.argv[1:3])
    problems = [] if all(kept) else ["nothing was read at all"]
    for changes, is_felt in ((CHANGES, True), (UNFELT, False)):
        for what, (before, after) in changes.items():
            assert before in HEADER, before
            if (tables(HEADER.replace(before, after, 1), *sys.argv[1:3]) != kept) != is_felt:
                problems.append(what + (" does not show" if is_felt else " shows"))
    problems += unseen_twin(*sys.argv[1:3]) + unseen_hidden(sys.argv[1])
    print("\n".join(problems))
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
