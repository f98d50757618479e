#!/usr/bin/env python3
"""Run tools/tr181/derive.py on an XML document and compare with the kept list.

usage: derive_golden.py DERIVE XML EXPECTED

Prints a unified diff and fails when the derived list differs from EXPECTED.
"""

import difflib
import subprocess
import sys


def main(argv):
    if len(argv) != 4:
        sys.stderr.write("usage: derive_golden.py DERIVE XML EXPECTED\n")
        return 2
    derive, xml, expected = argv[1:]
    run = subprocess.run([sys.executable, derive, xml], capture_output=True, text=True)
    if run.returncode != 0:
        print("derive.py failed (%d): %s" % (run.returncode, run.stderr.strip()))
        print("0 passed, 1 failed")
        return 1
    with open(expected, encoding="utf-8") as f:
        want = f.read()
    # The header names the source file only by its base name: compare from there.
    diff = list(difflib.unified_diff(want.splitlines(), run.stdout.splitlines(),
                                     expected, "derived from " + xml, lineterm="", n=1))
    for line in diff[:200]:
        print(line)
    ok = not diff
    print("%d passed, %d failed" % (ok, not ok))
    return 0 if ok else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv))
