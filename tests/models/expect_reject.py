#!/usr/bin/env python3
"""Run check_model.py on a faulty model and demand exactly the expected violations.

usage: expect_reject.py CHECKER MODEL LIST EXTENSIONS

In MODEL and EXTENSIONS a comment line "# expect: REGEX" announces that the
next line which is neither blank nor a comment must be reported with a reason
matching REGEX (a search). The checker must exit with status 1, report every
expected violation once, report nothing else, and count its failures right.
"""

import re
import subprocess
import sys

VIOLATION_RE = re.compile(r"(?P<file>.+?):(?P<line>\d+): (?P<reason>.*)")
SUMMARY_RE = re.compile(r"(\d+) passed, (\d+) failed")


def expectations(path):
    """[(line, regex)] announced in a file."""
    found, pending = [], []
    with open(path, encoding="utf-8") as f:
        for number, raw in enumerate(f.read().split("\n"), 1):
            text = raw.strip()
            if text.startswith("# expect:"):
                pending.append(re.compile(text[len("# expect:"):].strip()))
            elif text and not text.startswith("#"):
                found.extend((number, regex) for regex in pending)
                pending = []
    if pending:
        raise SystemExit("%s: '# expect:' at the end of the file names no line" % path)
    return found


def main(argv):
    if len(argv) != 5:
        sys.stderr.write("usage: expect_reject.py CHECKER MODEL LIST EXTENSIONS\n")
        return 2
    checker, model, listing, ext = argv[1:]
    wanted = [(model, line, rx) for line, rx in expectations(model)]
    wanted += [(ext, line, rx) for line, rx in expectations(ext)]
    if not wanted:
        raise SystemExit("%s: no '# expect:' lines, nothing to prove" % model)

    run = subprocess.run([sys.executable, checker, model, listing, ext],
                         capture_output=True, text=True)
    lines = run.stdout.splitlines()
    problems = []
    if run.returncode != 1:
        problems.append("checker exited with %d, expected 1 (stderr: %s)"
                        % (run.returncode, run.stderr.strip()))
    summary = SUMMARY_RE.fullmatch(lines[-1]) if lines else None
    reported = [VIOLATION_RE.fullmatch(l) for l in lines[:-1]]
    if summary is None or None in reported:
        problems.append("unexpected output layout:\n" + run.stdout)
        reported = [m for m in reported if m]
    elif int(summary.group(2)) != len(reported):
        problems.append("summary counts %s failures for %d reported violations"
                        % (summary.group(2), len(reported)))

    unmatched = list(reported)
    matched = 0
    for where, line, regex in wanted:
        hits = [m for m in unmatched if m.group("file") == where
                and int(m.group("line")) == line and regex.search(m.group("reason"))]
        if not hits:
            problems.append("%s:%d: missing violation matching /%s/" % (where, line, regex.pattern))
        else:
            unmatched.remove(hits[0])
            matched += 1
    for m in unmatched:
        problems.append("unexpected violation: %s" % m.group(0))

    for p in problems:
        print(p)
    print("%d passed, %d failed" % (matched, len(problems)))
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
