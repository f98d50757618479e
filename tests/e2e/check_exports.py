#!/usr/bin/env python3
"""Checks the exported dynamic symbols of libcaltofal.so.

Every defined dynamic symbol must be a name that the public header declares
(no internals leak), must have C linkage (no mangled names), and every name
listed in required_exports.txt must be there.
Usage: check_exports.py LIBRARY HEADER REQUIRED
"""
import re
import subprocess
import sys


def main():
    library, header, required_file = sys.argv[1:4]
    text = open(header, encoding="utf-8").read()
    declared = set(re.findall(r"CALTOFAL_API\b[^;(]*?\b([A-Za-z_][A-Za-z0-9_]*)\s*(?:\(|\[|;)", text))
    nm = subprocess.run(["nm", "-D", "--defined-only", library], check=True,
                        capture_output=True, text=True).stdout
    exported = set()
    for line in nm.splitlines():
        parts = line.split()
        if len(parts) == 3 and parts[1] in "TDBRVW":
            if not parts[2].startswith(("__odr_asan", "__asan")):  # sanitizer markers
                exported.add(parts[2])
    required = [l.split("#")[0].strip() for l in open(required_file, encoding="utf-8")]
    required = [r for r in required if r]
    problems = []
    for name in sorted(exported - declared):
        problems.append(f"exported but not in the header: {name}")
    for name in sorted(n for n in exported if n.startswith("_Z")):
        problems.append(f"exported with C++ linkage: {name}")
    for name in required:
        if name not in exported:
            problems.append(f"required but not exported: {name}")
        if name not in declared:
            problems.append(f"required but not declared: {name}")
    for p in problems:
        print(p)
    checks = len(exported) + 2 * len(required)
    print(f"{checks - len(problems)} passed, {len(problems)} failed")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
