"""What the public headers declare, by a compiler's own reading of them."""

import json
import pathlib
import re
import subprocess
import tempfile
from dataclasses import dataclass, field
from typing import Any, Iterator

Node = dict[str, Any]
SPECIAL = ("ClassTemplateSpecializationDecl", "ClassTemplatePartialSpecializationDecl")
FUNCTIONS = ("FunctionDecl", "CXXMethodDecl", "CXXConstructorDecl", "CXXDestructorDecl", "CXXConversionDecl")
LONG_STRING = re.compile(r"std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> ?>")


# Clang 14 has no such thing in the library of GCC 12, whose names it otherwise makes.
PLACE_IN_SOURCE = """#include <source_location>
#if !__has_builtin(__builtin_source_location)
namespace std { struct source_location { static constexpr source_location current() noexcept { return {}; } }; }
#endif
"""


@dataclass
class Declarations:
    functions: dict[str, str] = field(default_factory=dict)  # mangled name: what it returns
    wanted: set[str] = field(default_factory=set)  # those that a library has to bring
    members: dict[str, list[str]] = field(default_factory=dict)  # data and new virtual functions of classes, in order
    templates: dict[str, list[str]] = field(default_factory=dict)  # the same of class templates, which have no one size
    finals: set[str] = field(default_factory=set)  # classes that nobody may derive from
    enumerations: dict[str, str] = field(default_factory=dict)

    def described(self, layouts: dict[str, list[str]]) -> list[str]:
        """Enumerations and classes, each with all that hosts are compiled with."""
        lines = [f"{name}: {values}" for name, values in sorted(self.enumerations.items())]
        for name in sorted(self.members):
            if name in layouts:
                lines += [f"class {name}{' final' if name in self.finals else ''}"]
                lines += [f"  {line}" for line in layouts[name] + self.members[name]]
        for name in sorted(self.templates):
            lines += [f"template {name}"] + [f"  {line}" for line in self.templates[name]]
        return lines


def read(clang: str, include: pathlib.Path, source: str) -> Declarations:
    with tempfile.TemporaryDirectory() as folder:
        file = pathlib.Path(folder) / "all.cpp"
        file.write_text(PLACE_IN_SOURCE + source, encoding="utf-8")
        words = [clang, "-std=c++20", f"-I{include}", "-fsyntax-only", "-Xclang", "-ast-dump=json"]
        words += ["-Xclang", "-ast-dump-filter=vlclientui", str(file)]
        told = subprocess.run(words, check=True, capture_output=True, text=True).stdout
    found = Declarations()
    for node in documents(told):
        if node.get("kind") == "NamespaceDecl":
            walk(node, "", found)
    return found


def documents(text: str) -> Iterator[Node]:
    decoder = json.JSONDecoder()
    place = text.find("{")
    while place != -1:
        node, end = decoder.raw_decode(text, place)
        yield node
        place = text.find("{", end)


def walk(node: Node, scope: str, found: Declarations) -> None:
    name = "::".join(part for part in (scope, node.get("name", "")) if part)
    if node["kind"] == "CXXRecordDecl" and node.get("completeDefinition"):
        found.members[name] = members_of(node)
        if is_final(node):
            found.finals.add(name)
    access = "private" if node.get("tagUsed") == "class" else "public"
    for inner in node.get("inner", []):
        kind = inner.get("kind")
        if kind == "AccessSpecDecl":
            access = inner["access"]
        elif inner.get("isImplicit"):
            continue
        elif kind in ("NamespaceDecl", "CXXRecordDecl"):
            walk(inner, name, found)
        elif kind == "ClassTemplateDecl" or kind in SPECIAL:
            note_template(inner, name, found)
        elif kind == "EnumDecl":
            note_enumeration(inner, name, found)
        elif kind in FUNCTIONS and (access != "private" or inner.get("virtual")):
            note_function(inner, found)
        elif kind == "VarDecl" and inner.get("storageClass") == "extern":
            found.functions[inner["mangledName"]] = inner["type"]["qualType"]
            found.wanted.add(inner["mangledName"])


def members_of(node: Node) -> list[str]:
    members = []
    for one in node.get("inner", []):
        if one.get("kind") == "FieldDecl":
            members.append(f"data {one.get('name', '')}: {one['type']['qualType']}")
        elif one.get("virtual") or (one.get("kind") in FUNCTIONS and is_final(one)):
            words = ["virtual"] if one.get("virtual") else []
            words += ["final"] if is_final(one) else []
            members.append(f"{' '.join(words)} {one['name']}: {one['type']['qualType']}")
    return members


def is_final(node: Node) -> bool:
    return any(one.get("kind") == "FinalAttr" for one in node.get("inner", []))


def note_template(node: Node, scope: str, found: Declarations) -> None:
    """What hosts and libraries both make classes of, each by itself. Those that they do make are left out."""
    parts = node.get("inner", [])
    parameters = ", ".join(parameter(one) for one in parts if one["kind"].endswith("ParmDecl"))
    record = node if node["kind"] in SPECIAL else next(one for one in parts if one["kind"] == "CXXRecordDecl")
    if not record.get("completeDefinition"):
        return
    arguments = ", ".join(one.get("type", {}).get("qualType", str(one.get("value", ""))) for one in parts
                          if one["kind"] == "TemplateArgument")
    name = f"<{parameters}> {scope}::{node['name']}" + (f"<{arguments}>" if node["kind"] in SPECIAL else "")
    bases = [f"base {one['type']['qualType']}" for one in record.get("bases", [])]
    found.templates[name + (" final" if is_final(record) else "")] = bases + members_of(record)


def parameter(node: Node) -> str:
    kind: str = node.get("type", {}).get("qualType", node.get("tagUsed", "template"))
    return kind + ("..." if node.get("isParameterPack") else "")


def note_enumeration(node: Node, scope: str, found: Declarations) -> None:
    values = []
    for one in node.get("inner", []):
        if one.get("kind") == "EnumConstantDecl":
            value = next((inner["value"] for inner in one.get("inner", []) if "value" in inner), "")
            values.append(f"{one['name']}={value}" if value else one["name"])
    of = node.get("fixedUnderlyingType", {})
    kind = f" : {of.get('desugaredQualType', of['qualType'])}" if of else ""
    words = " ".join(part for part in ("enum", node.get("scopedEnumTag", "")) if part)
    found.enumerations[f"{words} {scope}::{node.get('name', '')}{kind}"] = ", ".join(values)


def note_function(node: Node, found: Declarations) -> None:
    name = node.get("mangledName")
    if not name or node.get("explicitlyDeleted"):
        return
    found.functions[name] = node["type"]["qualType"].partition("(")[0].strip()
    has_body = any(one.get("kind") == "CompoundStmt" for one in node.get("inner", []))
    is_here = has_body or node.get("inline") or node.get("constexpr") or node.get("explicitlyDefaulted")
    if not is_here and not node.get("pure"):
        found.wanted.add(name)


def demangled(names: dict[str, str]) -> dict[str, str]:
    ordered = list(names)
    told = subprocess.run(["c++filt"], check=True, capture_output=True, text=True, input="\n".join(ordered)).stdout
    return {name: LONG_STRING.sub("std::string", line) for name, line in zip(ordered, told.splitlines())}
