"""Checks that each link of the project's pages to a file leads to one and is on one line, as Doxygen requires.

usage: check_links.py PROJECT_DIRECTORY
"""

import pathlib
import re
import sys


def main(root):
    pages = [*root.glob("*.md"), *root.glob("docs/**/*.md"), *root.glob("data/*.md")]
    count, faults = 0, []
    for page in pages:
        for text, target in re.findall(r"\[([^\]`|]*)\]\(([^)]*)\)", page.read_text(encoding="utf-8")):
            count += 1
            if "\n" in text:
                faults.append(f"{page.relative_to(root)}: a line ends inside of [{text!r}]")
            if "://" not in target and not (page.parent / target.partition("#")[0]).exists():
                faults.append(f"{page.relative_to(root)}: there is no {target}")
    print("\n".join(faults) or f"{count} links on {len(pages)} pages lead somewhere")
    return bool(faults) or count == 0


sys.exit(main(pathlib.Path(sys.argv[1])))
