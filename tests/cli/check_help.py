#!/usr/bin/env python3
"""caltofal --help lists every command on one line each, each listed command
exists, and the man page (source and built page) documents each of them.

usage: check_help.py TOOL MAN_SOURCE MAN_PAGE
"""
import re
import subprocess
import sys

tool, man_source, man_page = sys.argv[1:4]
problems = []


def run(*args):
    return subprocess.run([tool, *args], capture_output=True, text=True, check=False)


top = run("--help")
if top.returncode != 0:
    sys.exit(f"caltofal --help exited {top.returncode}: {top.stderr}")
lines = top.stdout.splitlines()
try:
    start = next(i for i, l in enumerate(lines) if l.startswith("Commands ")) + 1
except StopIteration:
    sys.exit("caltofal --help has no Commands list:\n" + top.stdout)
entries = []  # (command words, usage, description)
for line in lines[start:]:
    m = re.match(r"^  (\S.*?)  +(\S.*)$", line)
    if not m:
        problems.append(f"not a command line: {line!r}")
        continue
    usage, description = m.groups()
    words = []
    for word in usage.split():
        if not re.fullmatch(r"[a-z][a-z0-9-]*", word):
            break
        words.append(word)
    entries.append((words, usage, description))
listed = {" ".join(w) for w, _, _ in entries}

# Every listed command exists; every command a parent knows is listed.
for words, usage, _ in entries:
    sub = run(*words, "--help")
    if sub.returncode != 0:
        problems.append(f"'{usage}' is listed but 'caltofal {' '.join(words)} --help' fails")
        continue
    out = sub.stdout.splitlines()
    if "Subcommands:" in out:
        for child in out[out.index("Subcommands:") + 1:]:
            m = re.match(r"^  (\S+)", child)
            if not m:
                break
            name = " ".join(words + [m.group(1)])
            if name not in listed:
                problems.append(f"'{name}' is a command but --help does not list it")

# The man page documents each usage line as a code span.
with open(man_source, encoding="utf-8") as f:
    source = f.read()
for _, usage, _ in entries:
    if f"`{usage}`" not in source:
        problems.append(f"the man page source lacks `{usage}`")
try:
    with open(man_page, encoding="utf-8") as f:
        page = f.read()
    if ".TH CALTOFAL 1" not in page:
        problems.append(f"{man_page} lacks its .TH CALTOFAL 1 title")
except OSError as e:
    problems.append(f"no man page built ({e}); install go-md2man (scripts/setup)")

for p in problems:
    print("FAILED:", p)
print(f"{len(entries)} commands listed, {len(problems)} problems")
sys.exit(1 if problems else 0)
