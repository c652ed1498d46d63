#!/usr/bin/env python3
"""Checks the shape of the sources: includes run downward only, GTK stays in its folders, every
#include "..." of ours exists, no C++ file is longer than 600 lines, no two texts have one name.

usage: check_includes.py [tree]     the tree to check, by default the one this script lies in
       check_includes.py --self-test    makes small bad trees and expects each to be refused
"""

import re
import sys
import tempfile
from pathlib import Path

LONGEST_FILE = 600

# What each folder may include beside itself: the levels below it, never one of its own level. The
# longest name that fits the path of a file is its folder.
MAY_INCLUDE = {
    "platform": set(),
    "platform/gtk": {"platform"},
    "model": {"platform"},
    "app/settings": {"platform"},
    "library": {"platform", "model", "app/settings"},
    "markdown": {"platform", "model", "app/settings"},
    "themes": {"platform", "model", "app/settings"},
    "export": {"platform", "model", "app/settings", "library", "markdown", "themes"},
    "ai": {"platform", "model", "app/settings", "library", "markdown", "themes"},
    "app": {"platform", "model", "app/settings", "library", "markdown", "themes", "export", "ai"},
}
MAY_INCLUDE["ui"] = set(MAY_INCLUDE)
MAY_INCLUDE["main"] = set(MAY_INCLUDE)

WITH_TOOLKIT = {"platform/gtk", "ui", "main"}
TOOLKIT_HEADER = re.compile(
    r"^(gtk|gdk|gsk|gtkmm|gdkmm|gskmm|adwaita|libadwaita|webkit|jsc|gtksourceview)([/.\-0-9]|$)")
# Drawing needs no display: documents may be drawn where they are made.
WITH_DRAWING = WITH_TOOLKIT | {"export"}
DRAWING_HEADER = re.compile(r"^(cairo|cairomm|pango|pangomm)([/.\-0-9]|$)")
TEXT = re.compile(r"^inline constexpr Text (\w+)", re.MULTILINE)
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')


def folder_of(path):
    """The folder of a path relative to src/, None when it belongs to none."""
    parts = Path(path).parts
    if len(parts) == 1:
        return "main" if parts[0].startswith("main.") else None
    for length in (2, 1):
        name = "/".join(parts[:length])
        if len(parts) > length and name in MAY_INCLUDE:
            return name
    return None


def includes_of(file):
    for number, line in enumerate(file.read_text(encoding="utf-8").splitlines(), 1):
        match = INCLUDE.match(line)
        if match:
            yield number, match[1] == '"', match[2]


def fault_of_include(folder, ours, header, src):
    if not ours:
        if folder not in WITH_TOOLKIT and TOOLKIT_HEADER.match(header):
            return f"the toolkit's header <{header}> is not for {folder}/"
        if folder not in WITH_DRAWING and DRAWING_HEADER.match(header):
            return f"the drawing header <{header}> is not for {folder}/"
        if (src / header).is_file():
            return f'our own header is included as <{header}>, write "{header}"'
        return None
    if not (src / header).is_file():
        return f'"{header}" does not exist in src/'
    target = folder_of(header)
    if target != folder and target not in MAY_INCLUDE[folder]:
        return f'{folder}/ may not include "{header}"'
    return None


def faults_in_src(src):
    for file in cpp_files(src):
        relative = file.relative_to(src)
        folder = folder_of(relative)
        if folder is None:
            yield f"src/{relative}: stands in no known folder"
            continue
        for number, ours, header in includes_of(file):
            fault = fault_of_include(folder, ours, header, src)
            if fault:
                yield f"src/{relative}:{number}: {fault}"


def faults_around(tree):
    """Tests and benchmarks may include anything, but only what exists."""
    for name in ("tests", "bench"):
        roots = [tree / name, tree / "src"]
        for file in cpp_files(tree / name):
            for number, ours, header in includes_of(file):
                found = (root / header for root in roots + [file.parent])
                if ours and not any(path.is_file() for path in found):
                    yield f'{file.relative_to(tree)}:{number}: "{header}" does not exist'


def long_files(tree):
    for name in ("src", "tests", "bench"):
        for file in cpp_files(tree / name):
            lines = len(file.read_bytes().splitlines())
            if lines > LONGEST_FILE:
                yield f"{file.relative_to(tree)}: {lines} lines, at most {LONGEST_FILE} are wanted"


def repeated_texts(src):
    """Of two inline constants with one name the linker keeps either: users would see the wrong one."""
    seen = {}
    for file in cpp_files(src / "app"):
        for name in TEXT.findall(file.read_text(encoding="utf-8")):
            if seen.setdefault(name, file) != file:
                yield f"src/{file.relative_to(src)}: the text {name} is in {seen[name].name}, too"


def cpp_files(folder):
    return sorted(f for f in folder.rglob("*") if f.suffix in (".h", ".cpp", ".c") and f.is_file())


def check(tree):
    src = tree / "src"
    if not cpp_files(src):
        return [f"no sources below {src}"]
    return [*faults_in_src(src), *faults_around(tree), *long_files(tree), *repeated_texts(src)]


GOOD_TREE = {
    "src/platform/Date.h": "#pragma once\n#include <string>\n",
    "src/platform/gtk/View.h": '#pragma once\n#include <gtkmm/widget.h>\n#include "platform/Date.h"\n',
    "src/model/Note.h": '#include "platform/Date.h"\n',
    "src/library/List.h": '#include "model/Note.h"\n',
    "src/markdown/Parser.h": '#include "model/Note.h"\n',
    "src/app/texts/Texts.h": 'inline constexpr Text yes{"Tak", "Yes"};\n',
    "src/export/Sheet.cpp": "#include <cairo-pdf.h>\n",
    "src/app/State.h": '#include "library/List.h"\n#include "markdown/Parser.h"\n',
    "src/ui/Window.cpp": '#include "app/State.h"\n#include "platform/gtk/View.h"\n#include <adwaita.h>\n',
    "src/main.cpp": '#include "platform/gtk/View.h"\n#include <gtkmm.h>\n',
    "tests/model/NoteTest.cpp": '#include "model/Note.h"\n',
}
# What is added to the good tree, and the word that the one complaint has to hold.
BAD_ADDITIONS = [
    ("src/model/Up.h", '#include "library/List.h"\n', "may not include"),
    ("src/library/Sideways.h", '#include "markdown/Parser.h"\n', "may not include"),
    ("src/app/Widgets.h", '#include "platform/gtk/View.h"\n', "may not include"),
    ("src/app/settings/High.h", '#include "model/Note.h"\n', "may not include"),
    ("src/markdown/Drawn.cpp", "#include <gtk/gtk.h>\n", "toolkit's header"),
    ("src/markdown/Drawn.cpp", "#include <cairo.h>\n", "drawing header"),
    ("src/app/Adw.cpp", "  #  include <adwaita.h>\n", "toolkit's header"),
    ("src/model/Angle.cpp", "#include <platform/Date.h>\n", "included as"),
    ("src/model/Lost.cpp", '#include "model/Gone.h"\n', "does not exist"),
    ("tests/model/LostTest.cpp", '#include "model/Gone.h"\n', "does not exist"),
    ("src/app/texts/More.h", 'inline constexpr Text yes{"No pewnie", "Sure"};\n', "the text yes"),
    ("src/attic/Old.cpp", "", "no known folder"),
    ("src/ui/Long.cpp", "\n" * (LONGEST_FILE + 1), "lines"),
]


def faults_of_made(files):
    with tempfile.TemporaryDirectory() as folder:
        for path, text in files.items():
            file = Path(folder, path)
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_text(text, encoding="utf-8")
        return check(Path(folder))


def self_test():
    wrong = [f"the good tree: {fault}" for fault in faults_of_made(GOOD_TREE)]
    for path, text, word in BAD_ADDITIONS:
        faults = faults_of_made({**GOOD_TREE, path: text})
        if len(faults) != 1 or word not in faults[0]:
            wrong.append(f"{path} ({text[:40].strip()}): expected one '{word}', got {faults}")
    if not faults_of_made({}):
        wrong.append("an empty tree passed")
    return wrong


def main(arguments):
    if arguments == ["--self-test"]:
        faults = self_test()
    else:
        faults = check(Path(arguments[0]) if arguments else Path(__file__).resolve().parents[2])
    print("\n".join(faults) or "in order")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
