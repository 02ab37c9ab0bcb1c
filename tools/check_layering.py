#!/usr/bin/env python3
"""Fails when a source file includes a folder that its own folder may not use.

The longest matching prefix in ALLOWED is a file's layer. A layer may include
itself and the layers listed for it, nothing else.
"""
import pathlib
import re
import sys

ALLOWED = {
    "platform": set(),
    "platform/desktop": {"platform"},
    "engine/primitives": set(),
    "universal/toolchain": {"platform", "engine/primitives"},
    "formats": {"platform", "engine/primitives", "universal/toolchain"},
    "desktop": {"platform", "platform/desktop", "engine/primitives"},
    "engine": {"platform", "engine/primitives", "formats"},
    "catalog": {"platform", "engine/primitives", "universal/toolchain"},
    "universal": {"platform", "engine/primitives", "universal/toolchain", "formats", "engine", "catalog"},
    "bridge": {"platform", "engine/primitives", "engine", "universal", "universal/toolchain", "catalog", "desktop"},
    "interface": {"engine/primitives", "bridge"},
    "cli": {"platform", "engine/primitives", "engine", "universal", "universal/toolchain", "catalog", "bridge"},
    "app": {"platform", "platform/desktop", "engine/primitives", "engine", "universal", "bridge", "desktop", "interface"},
}
# Headers of outside libraries, by the layers that may name them.
OUTSIDE = {
    r"(poppler|vips|fontconfig|tesseract|leptonica|qpdf|pango|cairo|unicode|png|turbojpeg|isa-l|gio|gdk|X11|xcb|atspi|seccomp)":
        {"platform", "platform/desktop"},
    r"Q[A-Z]": {"platform/desktop", "interface", "app"},
}
INCLUDE = re.compile(r'^\s*#\s*include\s*(["<])([^">]+)[">]')


def layer_of(path):
    found = [name for name in ALLOWED if path == name or path.startswith(name + "/")]
    return max(found, key=len, default=None)


def problems(root):
    for file in sorted(root.rglob("*")):
        here = file.relative_to(root).as_posix()
        layer = layer_of(here)
        if layer is None or file.suffix not in {".h", ".cpp"}:
            continue
        for number, line in enumerate(file.read_text(encoding="utf-8").splitlines(), 1):
            match = INCLUDE.match(line)
            if not match:
                continue
            quote, target = match.groups()
            where = f"{here}:{number}"
            if ".." in target:
                yield f"{where}: relative include {target}"
            elif quote == '"' and (other := layer_of(target)) != layer:
                if other is None:
                    yield f"{where}: write the full path from the root: {target}"
                elif other not in ALLOWED[layer]:
                    yield f"{where}: {layer} must not include {other}"
            for pattern, layers in OUTSIDE.items():
                if quote == "<" and re.match(pattern, target) and layer not in layers:
                    yield f"{where}: {target} belongs behind {sorted(layers)}"


def main():
    found = list(problems(pathlib.Path(sys.argv[1]).resolve()))
    print("\n".join(found) or "layering: no violation")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
