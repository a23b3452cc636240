"""Checks that a page shows what a program is and prints.

Each `cpp` block of the page must stand in the source as it is, but for its indentation; the `text` block, if there is one, is
all that the program prints. The program runs in the given folder, which is emptied first.

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


def stands_in(block, source):
    wanted = block.splitlines()
    lines = source.splitlines()
    return any(textwrap.dedent("\n".join(lines[i:i + len(wanted)])).splitlines() == wanted
               for i in range(len(lines) - len(wanted) + 1))


def main(page_path, source_path, program, folder):
    page, source = (pathlib.Path(path).read_text(encoding="utf-8") for path in (page_path, source_path))
    code, output = blocks(page, "cpp"), blocks(page, "text")
    faults = [f"no such piece in {source_path}:\n{block}" for block in code if not stands_in(block, source)]
    if not code or len(output) != 1:
        faults.append("a page has a block of cpp at least, and one of text")

    shutil.rmtree(folder, ignore_errors=True)
    pathlib.Path(folder).mkdir(parents=True)
    printed = subprocess.run([program], cwd=folder, stdout=subprocess.PIPE, timeout=60, check=True, text=True).stdout
    if printed != "".join(output):
        faults.append(f"the program prints:\n{printed}")
    print("\n".join(f"{page_path}: {fault}" for fault in faults) or f"{len(code)} pieces and the output are right")
    return bool(faults)


sys.exit(main(*sys.argv[1:]))
