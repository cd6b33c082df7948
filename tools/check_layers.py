#!/usr/bin/env python3
"""Holds every include against the table of layers that the build wrote (layers.txt).

usage: check_layers.py SOURCE_DIRECTORY LAYERS_FILE

A line of the table is: module|folder|modules it may include|outside libraries of its headers|
outside libraries of its sources. Fails with file, line and the rule that was broken.
"""
import re
import sys
from pathlib import Path

INCLUDE = re.compile(r'\s*#\s*include\s+([<"])([^>"]+)[>"]')
# Outside headers that belong to one library; all others are Qt Core or the standard library.
OUTSIDE = {
    r"^sqlite3\.h$": "PkgConfig::SQLITE",
    r"^curl/": "PkgConfig::CURL",
    r"^librtmp/": "PkgConfig::RTMP",
    r"^canberra\.h$": "PkgConfig::CANBERRA",
    r"^xcb/": "PkgConfig::XCB",
    r"^zip\.h$": "PkgConfig::ZIP",
    r"^mpv/": "PkgConfig::MPV",
    r"^(QLocalServer|QLocalSocket|QTcp|QUdp|QHost|QNetwork|QSsl|QAbstractSocket)": "Qt6::Network",
    r"^QDBus": "Qt6::DBus",
    r"^(QWidget|QApplication|QDialog|QMainWindow|QPushButton|QStyle|QTableView)": "Qt6::Widgets",
    r"^(QGui|QPainter|QImage|QPixmap|QWindow|QClipboard|QIcon|QFont)": "Qt6::Gui",
}


def read_layers(path):
    layers = {}
    for line in path.read_text().splitlines():
        name, folder, depends, public, private = line.split("|")
        split = lambda text: {item for item in text.split(",") if item}
        layers[folder] = (name, split(depends), split(public), split(private))
    return layers


def folder_of(path, layers):
    """The deepest declared folder that holds the path."""
    parts = path.parts
    for count in range(len(parts) - 1, 0, -1):
        folder = "/".join(parts[:count])
        if folder in layers:
            return folder
    return None


def complaints(source, layers):
    names = {entry[0]: folder for folder, entry in layers.items()}
    for path in sorted(source.glob("**/*.h")) + sorted(source.glob("**/*.cpp")):
        relative = path.relative_to(source)
        if relative.parts[0] in ("build", "tests", "bench", "samples") or relative.parts[0].startswith("."):
            continue
        folder = folder_of(relative, layers)
        if folder is None:
            yield f"{relative}: is in no declared module"
            continue
        name, depends, public, private = layers[folder]
        lines = path.read_text().splitlines()
        if path.suffix == ".h" and "#pragma once" not in lines:
            yield f"{relative}: has no '#pragma once'"
        allowed = {names[module] for module in depends if module in names} | {folder}
        for number, line in enumerate(lines, 1):
            found = INCLUDE.match(line)
            if not found:
                continue
            quote, header = found.groups()
            where = f"{relative}:{number}: {name} includes {header}"
            if quote == '"':
                target = folder_of(Path(header), layers)
                if target is None:
                    if header != "platform/build_config.h" and not header.startswith(folder + "/"):
                        yield f"{where}, which is in no declared module"
                elif target not in allowed:
                    yield f"{where}, but may not use {layers[target][0]}"
                elif "/internal/" in header and target != folder:
                    yield f"{where}, which is internal to {layers[target][0]}"
                continue
            for pattern, library in OUTSIDE.items():
                if not re.match(pattern, header) or library in public:
                    continue
                if path.suffix == ".h":
                    yield f"{where} in a header; {library} may show in sources only"
                elif library not in private:
                    yield f"{where}, but may not use {library}"


def main():
    source, table = Path(sys.argv[1]), Path(sys.argv[2])
    found = list(complaints(source, read_layers(table)))
    print("\n".join(found) if found else "every include points to a listed module")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
