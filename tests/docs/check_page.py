"""Checks that a page shows what a program is and prints.

Each `cpp` block of the page must stand in the source as it is, but for its indentation, and together they show all of
`main`. The `text` block is all that the program prints. The program runs in the given folder, which is emptied first.

usage: check_page.py PAGE SOURCE PROGRAM FOLDER
"""

import pathlib
import re
import shutil
import subprocess
import sys
import textwrap


def blocks(page, language):
    return re.findall(rf"^```{language}\n(.*?)^```$", page, re.M | re.S)


def place_of(block, lines):
    """Returns the numbers of the source lines that the block shows, or none if the source lacks it."""
    wanted = block.splitlines()
    for i in range(len(lines) - len(wanted) + 1):
        if textwrap.dedent("\n".join(lines[i:i + len(wanted)])).splitlines() == wanted:
            return range(i, i + len(wanted))
    return range(0)


def main(page_path, source_path, program, folder):
    page, source = (pathlib.Path(path).read_text(encoding="utf-8") for path in (page_path, source_path))
    code, output = blocks(page, "cpp"), blocks(page, "text")
    lines = source.splitlines()
    places = [place_of(block, lines) for block in code]
    faults = [f"no such piece in {source_path}:\n{block}" for block, place in zip(code, places) if not place]
    body = range(lines.index("int main() {") + 1, len(lines) - 1)
    faults += [f"does not show line {i + 1} of {source_path}: {lines[i]}" for i in body
               if lines[i] and not any(i in place for place in places)]
    if len(output) != 1:
        faults.append("a page has one block of text")

    shutil.rmtree(folder, ignore_errors=True)
    pathlib.Path(folder).mkdir(parents=True)
    printed = subprocess.run([program], cwd=folder, stdout=subprocess.PIPE, timeout=60, check=True, text=True).stdout
    if printed != "".join(output):
        faults.append(f"the program prints:\n{printed}")
    print("\n".join(f"{page_path}: {fault}" for fault in faults) or f"{len(code)} pieces and the output are right")
    return bool(faults)


sys.exit(main(*sys.argv[1:]))
