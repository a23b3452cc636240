"""Compares the layer table of docs/architecture.md with the includes of src/ and include/zyn/.

usage: check_architecture.py PROJECT_DIRECTORY
"""

import pathlib
import re
import sys

COLUMNS = 5
GENERATED = {"export.h", "version.h"}
LIBRARIES = {"Qt": r"(Qt\w*/)?Q[A-Z]\w*", "Armadillo": r"armadillo", "Triangle": r"triangle\.h"}


def words(cell):
    return set(re.findall(r"`([^`]+)`", cell))


def read_table(page):
    """Layer -> (public headers, layers below, libraries, entry file), in the order of the page."""
    layers = {}
    for line in page.read_text(encoding="utf-8").splitlines():
        cells = [cell.strip() for cell in line.strip("|").split("|")]
        if line.startswith("| `") and len(cells) == COLUMNS:
            layers[words(cells[0]).pop()] = tuple(map(words, cells[1:]))
    return layers


def included_by(files):
    for file in files:
        for name in re.findall(r'^\s*#\s*include\s*[<"]([^>"]+)[>"]', file.read_text(encoding="utf-8"), re.M):
            yield file, name


def main(root):
    faults = []
    layers = read_table(root / "docs/architecture.md")
    folders = {path.name for path in (root / "src").iterdir() if path.is_dir()}
    if set(layers) != folders:
        faults.append(f"the table names {sorted(layers)}, src/ holds {sorted(folders)}")

    layer_of = {}
    for layer, (headers, *_) in layers.items():
        for header in headers:
            if header in layer_of:
                faults.append(f"{header} stands in two rows")
            layer_of[header] = layer
    public = {path.name for path in (root / "include/zyn").glob("*.h")}
    if set(layer_of) != public:
        faults.append(f"no row, or no file, for {sorted(set(layer_of) ^ public)}")

    above = set()
    for layer, (headers, below, libraries, entry) in layers.items():
        if not below <= above:
            faults.append(f"{layer} includes from {sorted(below - above)}, which stand below it in the table")
        above.add(layer)
        faults += [f"{layer} starts with {name}, which is no file" for name in entry
                   if not (root / "src" / layer / name).is_file()]

        files = [path for path in (root / "src" / layer).rglob("*") if path.suffix in {".h", ".inl", ".cpp"}]
        files += [root / "include/zyn" / header for header in headers & public]
        used, foreign = {}, {}
        for file, name in included_by(files):
            folder, _, rest = name.rpartition("/")
            library = next((key for key, pattern in LIBRARIES.items() if re.fullmatch(pattern, name)), None)
            if library:
                foreign.setdefault(library, file)
            elif folder == "zyn":
                if rest not in GENERATED:
                    used.setdefault(layer_of.get(rest, rest), file)
            elif folder in folders:
                used.setdefault(folder, file)
            elif folder not in {"", "sys"}:
                faults.append(f"{file.relative_to(root)} includes {name}, which is of no layer and no library")
        used.pop(layer, None)
        for told, found in ((below, used), (libraries, foreign)):
            faults += [f"{found[name].relative_to(root)} includes from {name}, which the row of {layer} does not tell"
                       for name in sorted(set(found) - told)]
            faults += [f"the row of {layer} tells of {name}, which nothing includes" for name in sorted(told - set(found))]

    print("\n".join(faults) or f"{len(layers)} layers are as the page tells")
    return bool(faults)


sys.exit(main(pathlib.Path(sys.argv[1])))
