"""Checks that the tests and seeds that a page names exist.

usage: check_reliability.py ROOT PAGE
"""
import pathlib
import re
import sys

root, page = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
sources = "".join(path.read_text() for path in (root / "tests").rglob("*.cpp"))
tests = {f"{suite}.{name}" for suite, name in re.findall(r"TEST(?:_P|_F)?\(\s*(\w+),\s*(\w+)\)", sources)}
tests |= {f"{suite}.{name}" for suite, name in re.findall(r"TYPED_TEST\(\s*(\w+),\s*(\w+)\)", sources)}
seeds = {path.name for path in (root / "fuzz/corpus").rglob("*") if path.is_file()}

named = re.findall(r"`(\w+(?:\.\w+)?)`", page.read_text())
promised = {name for name in named if re.fullmatch(r"[A-Z]\w+\.[A-Z]\w+", name)}
kept = {name for name in named if re.fullmatch(r"(?!fuzz_)[a-z]+(?:_[a-z]+){2,}", name)}
missing = sorted(promised - tests | kept - seeds)
for name in missing:
    print(f"{page.name}: there is no {name}")
sys.exit(1 if missing or not promised else 0)
