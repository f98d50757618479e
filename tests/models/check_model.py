#!/usr/bin/env python3
"""Check that a gateway model file speaks real TR-181.

usage: check_model.py MODEL LIST EXTENSIONS

MODEL       a model file of the configuration-layer emulator
LIST        the TR-181 name list written by tools/tr181/derive.py
EXTENSIONS  the objects (and value forms) of the platform that the standard
            does not have, each with the reason it exists

Every object of the model must be a TR-181 object or be on the extension
list; every parameter of a standard object must be standard or an X_
extension; values must have the type, form, range and (for enumerations) one
of the values the standard allows, or an X_ vendor value; references and
NumberOfEntries counters must agree with the objects of the model.

Each violation is printed as FILE:LINE: reason. The last line says
"N passed, M failed"; the exit status is 1 when anything failed, 2 when a
file cannot be read at all.
"""

import ipaddress
import re
import sys

NAME_RE = re.compile(r"[A-Za-z0-9_.-]+")
PATH_RE = re.compile(r"[A-Za-z_][A-Za-z0-9_-]*(\.([A-Za-z_][A-Za-z0-9_-]*|[0-9]+))*")
REF_RE = re.compile(r"Device(\.([A-Za-z_][A-Za-z0-9_-]*|[1-9][0-9]*))*\.?")
DATETIME_RE = re.compile(r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d(\.\d+)?(Z|[+-]\d\d:\d\d)?")
INT_LIMITS = {
    "unsignedInt": (0, 2**32 - 1), "int": (-2**31, 2**31 - 1),
    "unsignedLong": (0, 2**64 - 1), "long": (-2**63, 2**63 - 1),
}
MAX_VALUE = 1023
MAX_NAME = 255


class Report:
    def __init__(self):
        self.passed = 0
        self.failed = 0

    def check(self, ok, where, line, reason):
        if ok:
            self.passed += 1
        else:
            self.failed += 1
            print("%s:%d: %s" % (where, line, reason))
        return ok


# model file

class ModelObject:
    def __init__(self, path, line):
        self.path = path
        self.line = line
        self.params = {}  # name -> (value, line), in file order


def unquote(text):
    """Value of a quoted model text, or None when it is malformed."""
    out, i = [], 1
    while i < len(text):
        c = text[i]
        if c == "\\":
            if i + 1 < len(text) and text[i + 1] in "\"\\":
                out.append(text[i + 1])
                i += 2
                continue
            return None
        if c == '"':
            return "".join(out) if i == len(text) - 1 else None
        out.append(c)
        i += 1
    return None


def read_model(path, report):
    objects = {}
    current = None
    with open(path, encoding="utf-8") as f:
        lines = f.read().split("\n")
    for number, raw in enumerate(lines, 1):
        text = raw.strip()
        if not text or text.startswith("#"):
            continue
        if text.startswith("["):
            opath = text[1:-1] if text.endswith("]") else None
            current = None
            if not report.check(opath is not None and len(opath) <= MAX_NAME
                                and PATH_RE.fullmatch(opath), path, number,
                                "malformed object header %r" % text):
                continue
            if not report.check(opath not in objects, path, number,
                                "duplicate object %s (first at line %d)"
                                % (opath, objects[opath].line if opath in objects else 0)):
                continue
            current = objects[opath] = ModelObject(opath, number)
            continue
        name, eq, value = text.partition("=")
        name, value = name.strip(), value.strip()
        if not report.check(eq and len(name) <= MAX_NAME and NAME_RE.fullmatch(name), path,
                            number, "malformed line %r" % text):
            continue
        if not report.check(current is not None, path, number,
                            "parameter %s outside any object" % name):
            continue
        if value.startswith('"'):
            value = unquote(value)
            if not report.check(value is not None, path, number,
                                "malformed quoted value of %s" % name):
                continue
        if not report.check(len(value) <= MAX_VALUE, path, number,
                            "value of %s is longer than %d characters" % (name, MAX_VALUE)):
            continue
        if not report.check(name not in current.params, path, number,
                            "duplicate parameter %s in %s" % (name, current.path)):
            continue
        current.params[name] = (value, number)
    return objects


def template(path):
    """'Device.Hosts.Host.3' -> 'Device.Hosts.Host.{i}.'"""
    parts = path.rstrip(".").split(".")
    return ".".join("{i}" if p.isdigit() else p for p in parts) + "."


def parent_path(path):
    """'Device.Hosts.Host.3' -> 'Device.Hosts'; 'Device' -> None."""
    parts = path.split(".")
    last = parts.pop()
    if last.isdigit() and parts:
        parts.pop()
    return ".".join(parts) or None


def has_x_segment(path):
    return any(seg.startswith("X_") for seg in path.split("."))


# TR-181 list

class ParamSpec:
    def __init__(self, fields):
        kind = fields[0]
        self.type, _, self.data_type = kind.partition(":")
        self.is_list = "list" in fields[1:]
        self.ref = None
        for flag in fields[1:]:
            if flag == "ref":
                self.ref = []
            elif flag.startswith("ref="):
                self.ref = flag[4:].split("|")
        self.enum = None
        self.enum_ref = None
        self.null_value = None
        self.patterns = []
        self.ranges = []
        self.sizes = []


def bounds(text):
    out = []
    for item in text.split("|"):
        low, _, high = item.partition(":")
        out.append((int(low) if low else None, int(high) if high else None))
    return out


class Spec:
    def __init__(self, path):
        self.objects = set()
        self.params = {}
        self.tables = {}  # (parent template, counter name) -> table segment
        with open(path, encoding="utf-8") as f:
            for number, raw in enumerate(f, 1):
                line = raw.rstrip("\n")
                if not line or line.startswith("#"):
                    continue
                try:
                    self._line(line)
                except (ValueError, KeyError, IndexError):
                    raise SystemExit("%s:%d: unreadable list line" % (path, number))

    def _line(self, line):
        kind, rest = line.split(" ", 1)
        if kind == "O":
            fields = rest.split()
            self.objects.add(fields[0])
            if len(fields) > 1:
                table = fields[0]
                parent = table[:-len("{i}.")].rsplit(".", 2)[0] + "."
                segment = table[len(parent):-len(".{i}.")]
                self.tables[(parent, fields[1])] = segment
            return
        if kind == "P":
            fields = rest.split(" ")
            self.params[(fields[0], fields[1])] = ParamSpec(fields[2:])
            return
        opath, name, value = (rest.split(" ", 2) + [""])[:3]
        spec = self.params[(opath, name)]
        if kind == "E":
            spec.enum = set(value.split("|"))
        elif kind == "R":
            target, _, null = value.partition(" ")
            spec.enum_ref = target
            if null.startswith("null="):
                spec.null_value = null[5:]
        elif kind == "S":
            spec.patterns.append(re.compile(value))
        elif kind == "V":
            spec.ranges = bounds(value)
        elif kind == "Z":
            spec.sizes = bounds(value)
        else:
            raise ValueError(kind)


# extension list

class Extensions:
    """Entries: a plain line names an X_ object; 'nonstandard PATH' an object of
    the platform outside the standard without an X_ name; 'value PATH NAME' a
    standard parameter whose value form the platform bends. Every entry needs
    a reason: a comment on its line or a comment opening its block."""

    def __init__(self, path, spec, report):
        self.path = path
        self.objects = {}  # template -> line
        self.values = {}   # (template, name) -> line
        with open(path, encoding="utf-8") as f:
            lines = f.read().split("\n")
        block_has_reason = False
        for number, raw in enumerate(lines, 1):
            text = raw.strip()
            if not text:
                block_has_reason = False
                continue
            if text.startswith("#"):
                block_has_reason = True
                continue
            entry, _, comment = text.partition("#")
            report.check(block_has_reason or comment.strip(), path, number,
                         "entry without a reason (add a comment)")
            self._entry(entry.split(), number, spec, report)

    def _entry(self, fields, number, spec, report):
        kind = fields[0] if fields[0] in ("nonstandard", "value") else "object"
        args = fields[1:] if kind != "object" else fields
        if not report.check(len(args) == (2 if kind == "value" else 1), self.path, number,
                            "malformed entry"):
            return
        opath = args[0]
        if not report.check(opath.endswith(".") and template(opath) == opath, self.path, number,
                            "%s is not an object path with {i} and a trailing dot" % opath):
            return
        if kind == "value":
            report.check((opath, args[1]) in spec.params, self.path, number,
                         "%s%s is not a standard parameter" % (opath, args[1]))
            self.values[(opath, args[1])] = number
            return
        report.check(opath not in spec.objects, self.path, number,
                     "%s is a standard object, not an extension" % opath)
        if kind == "object":
            report.check(has_x_segment(opath), self.path, number,
                         "%s has no X_ segment (mark it 'nonstandard')" % opath)
        else:
            report.check(not has_x_segment(opath), self.path, number,
                         "%s has an X_ segment: list it without 'nonstandard'" % opath)
        report.check(opath not in self.objects, self.path, number, "duplicate entry %s" % opath)
        self.objects[opath] = number


# the checks

def items_of(value, is_list):
    if not is_list:
        return [value]
    return [v.strip() for v in value.split(",")] if value.strip() else []


def type_error(item, spec):
    """Why an item does not fit the parameter's type, or None."""
    kind = spec.type
    if kind == "boolean":
        return None if item in ("true", "false", "1", "0") else "is not a boolean"
    if kind in INT_LIMITS:
        if not re.fullmatch(r"-?\d+", item):
            return "is not a number"
        low, high = INT_LIMITS[kind]
        if not low <= int(item) <= high:
            return "is out of range of %s" % kind
        return None
    if kind == "dateTime":
        return None if DATETIME_RE.fullmatch(item) else "is not a dateTime"
    if kind == "hexBinary":
        return None if re.fullmatch(r"([0-9A-Fa-f]{2})*", item) else "is not hexBinary"
    if kind == "base64":
        return None if re.fullmatch(r"[A-Za-z0-9+/]*={0,2}", item) else "is not base64"
    if kind == "decimal":
        return None if re.fullmatch(r"-?\d+(\.\d+)?", item) else "is not a decimal"
    if spec.data_type in ("IPv6Address", "IPAddress", "IPv6Prefix", "IPPrefix") and item:
        try:
            if spec.data_type.endswith("Prefix"):
                net = ipaddress.ip_network(item, strict=False)
                ok = "/" in item and (spec.data_type == "IPPrefix" or net.version == 6)
            else:
                addr = ipaddress.ip_address(item)
                ok = spec.data_type == "IPAddress" or addr.version == 6
        except ValueError:
            ok = False
        return None if ok else "is not a valid %s" % spec.data_type
    return None


def in_bounds(number, ranges):
    return any((low is None or number >= low) and (high is None or number <= high)
               for low, high in ranges)


def fill_instances(target, concrete):
    """Put the instance numbers of a concrete path into a {i} template."""
    numbers = [p for p in concrete.split(".") if p.isdigit()]
    parts = []
    for part in target.split("."):
        if part == "{i}":
            if not numbers:
                return None
            part = numbers.pop(0)
        parts.append(part)
    return ".".join(parts)


class Checker:
    def __init__(self, model_path, objects, spec, extensions, report):
        self.where = model_path
        self.objects = objects
        self.spec = spec
        self.ext = extensions
        self.report = report
        self.used_ext = set()
        self.used_values = set()

    def check(self, ok, line, reason):
        return self.report.check(ok, self.where, line, reason)

    def exists(self, ref):
        """A reference names an object of the model, or a table with rows."""
        if ref.endswith("."):
            bare = ref[:-1]
            return bare in self.objects or any(p.startswith(ref) for p in self.objects)
        return ref in self.objects

    def run(self):
        for obj in self.objects.values():
            self.check_object(obj)
        for opath, line in self.ext.objects.items():
            self.report.check(opath in self.used_ext, self.ext.path, line,
                              "%s is not used by the model" % opath)
        for key, line in self.ext.values.items():
            self.report.check(key in self.used_values, self.ext.path, line,
                              "%s%s is not used by the model" % key)

    def check_object(self, obj):
        tmpl = template(obj.path)
        standard = tmpl in self.spec.objects
        if tmpl in self.ext.objects:
            self.used_ext.add(tmpl)
        known = standard or tmpl in self.ext.objects
        hint = " (a vendor object must be on the extension list)" if has_x_segment(tmpl) else ""
        self.check(known, obj.line, "unknown object %s: not in TR-181%s" % (tmpl, hint))
        parent = parent_path(obj.path)
        if parent is not None:
            holder = self.objects.get(parent)
            if self.check(holder is not None, obj.line,
                          "parent object %s of %s is missing" % (parent, obj.path)):
                self.check(holder.line < obj.line, obj.line, "%s comes before its parent %s "
                           "(line %d)" % (obj.path, parent, holder.line))
        for name, (value, line) in obj.params.items():
            spec = self.spec.params.get((tmpl, name)) if standard else None
            if standard and not name.startswith("X_"):
                if not self.check(spec is not None, line,
                                  "unknown parameter %s of %s" % (name, tmpl)):
                    continue
            if spec is not None and (tmpl, name) in self.ext.values:
                self.used_values.add((tmpl, name))
                spec = None  # the platform's own value form: not checked
            if spec is not None:
                self.check_value(obj, name, value, line, spec)
            else:
                self.check_loose_reference(obj, name, value, line)
        self.check_counts(obj, tmpl, standard)

    def check_value(self, obj, name, value, line, spec):
        what = "%s.%s" % (obj.path, name)
        items = items_of(value, spec.is_list)
        allowed = None
        if spec.enum_ref:
            allowed = self.enum_ref_values(obj, name, line, spec)
        for item in items:
            error = type_error(item, spec)
            if not self.check(error is None, line, "%s: %r %s" % (what, item, error)):
                continue
            if spec.enum is not None:
                self.check(item in spec.enum or item.startswith("X_"), line,
                           "%s: %r is not an allowed value (%s)"
                           % (what, item, "|".join(sorted(spec.enum))))
            if allowed is not None:
                self.check(item in allowed or item.startswith("X_"), line,
                           "%s: %r is not one of %s (%s)"
                           % (what, item, spec.enum_ref.rsplit(".", 1)[-1], ",".join(allowed)))
            if spec.patterns:
                self.check(any(p.fullmatch(item) for p in spec.patterns), line,
                           "%s: %r does not have the standard form" % (what, item))
            if spec.ranges and spec.type in INT_LIMITS:
                self.check(in_bounds(int(item), spec.ranges), line,
                           "%s: %s is out of the allowed range" % (what, item))
            if spec.sizes and spec.type in ("string", "hexBinary"):
                length = len(item) // 2 if spec.type == "hexBinary" else len(item)
                self.check(in_bounds(length, spec.sizes), line,
                           "%s: %r has a length the standard does not allow" % (what, item))
            if spec.ref is not None:
                self.check_reference(what, item, line, spec.ref)

    def enum_ref_values(self, obj, name, line, spec):
        target = fill_instances(spec.enum_ref, obj.path)
        opath, _, pname = (target or "").rpartition(".")
        holder = self.objects.get(opath.rstrip("."))
        found = holder is not None and pname in holder.params
        if not self.check(found, line, "%s.%s: its allowed values come from %s, which the model "
                          "does not have" % (obj.path, name, target or spec.enum_ref)):
            return None
        allowed = [v.strip() for v in holder.params[pname][0].split(",") if v.strip()]
        if spec.null_value is not None:
            allowed.append(spec.null_value)
        return allowed

    def check_reference(self, what, item, line, parents):
        if not item:
            return
        if not self.check(REF_RE.fullmatch(item), line,
                          "%s: malformed reference %r" % (what, item)):
            return
        self.check(self.exists(item), line, "%s: reference %s names no object of the model"
                   % (what, item))
        if parents:
            self.check(any(template(item).startswith(p) for p in parents), line,
                       "%s: reference %s does not point into %s" % (what, item, " or ".join(parents)))

    def check_loose_reference(self, obj, name, value, line):
        """Values of extension parameters that look like paths must name objects."""
        items = [v.strip() for v in value.split(",")]
        if items and all(v.startswith("Device.") for v in items):
            for item in items:
                self.check_reference("%s.%s" % (obj.path, name), item, line, [])

    def check_counts(self, obj, tmpl, standard):
        for name, (value, line) in obj.params.items():
            if not name.endswith("NumberOfEntries"):
                continue
            segment = self.spec.tables.get((tmpl, name)) if standard else None
            if segment is None:
                if standard and not name.startswith("X_"):
                    continue  # a standard counter of something that is not a table here
                segment = name[:-len("NumberOfEntries")]
            if not re.fullmatch(r"\d+", value):
                # a standard counter's type has been checked with its value
                if not (standard and (tmpl, name) in self.spec.params):
                    self.check(False, line, "%s.%s: %r is not a count" % (obj.path, name, value))
                continue
            row = re.compile(re.escape(obj.path + "." + segment + ".") + r"\d+")
            count = sum(1 for p in self.objects if row.fullmatch(p))
            self.check(int(value) == count, line, "%s.%s is %s but the model has %d %s rows"
                       % (obj.path, name, value, count, segment))


def main(argv):
    if len(argv) != 4:
        sys.stderr.write("usage: check_model.py MODEL LIST EXTENSIONS\n")
        return 2
    model_path, list_path, ext_path = argv[1:]
    report = Report()
    try:
        spec = Spec(list_path)
        objects = read_model(model_path, report)
        extensions = Extensions(ext_path, spec, report)
    except OSError as err:
        sys.stderr.write("check_model: %s\n" % err)
        return 2
    Checker(model_path, objects, spec, extensions, report).run()
    print("%d passed, %d failed" % (report.passed, report.failed))
    return 1 if report.failed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
