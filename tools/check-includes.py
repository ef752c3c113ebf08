#!/usr/bin/env python3
"""Checks every #include "folder/..." against the layers block of docs/architecture.md."""
import pathlib
import re
import sys

root = pathlib.Path(__file__).resolve().parent.parent
block = re.search(r"```layers\n(.*?)```", (root / "docs/architecture.md").read_text(), re.S).group(1)
layers = {}
for line in block.strip().splitlines():
    folder, allowed = line.split(":")
    layers[folder.strip()] = allowed.split()


def layer_of(path):
    fitting = [l for l in layers if path == l or path.startswith(l + "/")]
    return max(fitting, key=len) if fitting else None


bad = 0
for source in sorted(root.rglob("*")):
    relative = source.relative_to(root).as_posix()
    if source.suffix not in (".h", ".cpp") or relative.startswith("build"):
        continue
    own = layer_of(relative)
    if own is None or "*" in layers[own]:
        continue
    for number, line in enumerate(source.read_text().splitlines(), 1):
        match = re.match(r'\s*#\s*include\s+"([^"]+)"', line)
        if not match:
            continue
        other = layer_of(match.group(1))
        if other is None:
            continue
        if other != own and other not in layers[own]:
            print(f"{relative}:{number}: {own} may not include {match.group(1)}")
            bad += 1
print("Includes keep to their layers." if bad == 0 else f"{bad} includes break the layers.")
sys.exit(1 if bad else 0)
