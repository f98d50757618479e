#!/usr/bin/env python3
"""Derive the compact TR-181 name list that the sample gateway model is checked against.

Reads a TR-181 data-model XML document (the DM schema of TR-106), resolves
its imports, components, object/parameter extensions and named data types,
and writes every object of the chosen root model (``Device:`` by default) as a
sorted, line-based list:

    O <object path> [<numEntriesParameter>]
    P <object path> <name> <type> [list] [ref[=<parent>|<parent>...]]
    E <object path> <name> <value>|<value>|...
    R <object path> <name> <target parameter path> [null=<value>]
    S <object path> <name> <pattern>
    V <object path> <name> <min>:<max>|...
    Z <object path> <name> <min>:<max>|...

* Object paths are written as in the XML: instance numbers as ``{i}`` and a
  trailing dot (``Device.Hosts.Host.{i}.``). A table object carries the name
  of the parameter of its parent that counts its instances.
* ``<type>`` is the base type (``string``, ``boolean``, ``unsignedInt``, ...),
  followed by ``:<data type>`` when the parameter uses a named data type
  (``string:MACAddress``). ``list`` marks a comma-separated list value, ``ref``
  a path reference, ``ref=`` with the allowed parent tables when the XML names
  them.
* ``E`` holds the allowed values of an enumerated parameter (for a list the
  allowed items). ``R`` says that the allowed values are the items of another
  parameter (an enumeration reference, resolved to a path whose ``{i}`` take
  the instance numbers of the referring object), with the value that stands
  for "none" when the XML gives one.
* ``S`` is one pattern (an anchored regular expression, one line each) that a
  value must match, ``V`` the allowed numeric ranges, ``Z`` the allowed
  lengths of a text; an empty bound is open. For a list they apply to each
  item.
* Items marked deleted in the XML are left out; deprecated and obsoleted ones
  are kept because devices still carry them. Commands and events are left out:
  a configuration store holds no such thing.

Regenerate the list kept with the sample model (from the repository root,
with the project's shared folder beside it):

    python3 tools/tr181/derive.py ../shared/tr181/tr-181-2-16-0-usp-full.xml \
        -o sim/models/tr181-device-2.16.txt

The test models_list_up_to_date (tests/models) fails when the kept list and
the XML disagree; models_derive_fixture checks the resolution rules on a small
document of its own.

Imported files are looked up beside the document and in the folders given
with ``-I``. The output is deterministic: the same XML gives the same bytes.
"""

import argparse
import os
import re
import sys
import xml.etree.ElementTree as ET

PRIMITIVES = ("string", "boolean", "unsignedInt", "int", "unsignedLong", "long",
              "dateTime", "base64", "hexBinary", "decimal")


def local(tag):
    """Element tag without its namespace."""
    return tag.rsplit("}", 1)[-1]


def children(elem, name):
    return [c for c in elem if local(c.tag) == name]


def child(elem, name):
    for c in elem:
        if local(c.tag) == name:
            return c
    return None


def deleted(elem):
    return elem.get("status") == "deleted"


class Document:
    """One XML file with its named data types, components and models."""

    def __init__(self, path):
        self.path = path
        self.root = ET.parse(path).getroot()
        self.data_types = {}
        self.components = {}
        self.models = {}
        for elem in self.root:
            tag = local(elem.tag)
            if tag == "dataType" and elem.get("name"):
                self.data_types[elem.get("name")] = elem
            elif tag == "component":
                self.components[elem.get("name")] = elem
            elif tag == "model":
                self.models[elem.get("name")] = elem


class Library:
    """All documents reachable from the main one through imports."""

    def __init__(self, main_path, search_dirs):
        self.search_dirs = [os.path.dirname(os.path.abspath(main_path))] + list(search_dirs)
        self.docs = {}
        self.data_types = {}
        self.components = {}
        self.models = {}
        self.main = self._load(main_path)

    def _find(self, name):
        for folder in self.search_dirs:
            candidate = os.path.join(folder, name)
            if os.path.exists(candidate):
                return candidate
        # An import may leave out trailing version numbers (tr-181-2-16.xml,
        # tr-106-types.xml): take the latest file that has the numbers given.
        match = re.fullmatch(r"([a-z]+-\d+)((?:-\d+)*)((?:-[a-z][a-z0-9]*)*)\.xml", name)
        if match:
            head, numbers, label = match.groups()
            given = [int(n) for n in numbers.split("-")[1:]]
            rx = re.compile(re.escape(head) + r"((?:-\d+)*)" + re.escape(label) + r"\.xml")
            best = None
            for folder in self.search_dirs:
                if not os.path.isdir(folder):
                    continue
                for entry in os.listdir(folder):
                    found = rx.fullmatch(entry)
                    if not found:
                        continue
                    version = [int(n) for n in found.group(1).split("-")[1:]]
                    if version[:len(given)] == given and (best is None or version > best[0]):
                        best = (version, os.path.join(folder, entry))
            if best:
                return best[1]
        raise SystemExit("derive: cannot find imported file %s (use -I)" % name)

    def _load(self, path):
        key = os.path.abspath(path)
        if key in self.docs:
            return self.docs[key]
        doc = Document(path)
        self.docs[key] = doc
        for imp in children(doc.root, "import"):
            other = self._load(self._find(imp.get("file")))
            for item in imp:
                tag, name = local(item.tag), item.get("name")
                alias = item.get("ref") or name
                if tag == "dataType" and alias in other.data_types:
                    self.data_types.setdefault(name, other.data_types[alias])
                elif tag == "component" and alias in other.components:
                    self.components.setdefault(name, other.components[alias])
                elif tag == "model" and alias in other.models:
                    self.models.setdefault(name, other.models[alias])
        # Local definitions win over imported ones.
        self.data_types.update(doc.data_types)
        self.components.update(doc.components)
        self.models.update(doc.models)
        return doc


class Param:
    def __init__(self, name):
        self.name = name
        self.type = "string"
        self.data_type = None
        self.is_list = False
        self.ref = None  # None, or a list of allowed parent paths (maybe empty)
        self.enum = []
        self.enum_ref = None
        self.null_value = None
        self.patterns = []
        self.ranges = []
        self.sizes = []


class Obj:
    def __init__(self, path):
        self.path = path
        self.num_entries = None
        self.params = {}


def bounds(elem, low, high):
    return "%s:%s" % (elem.get(low, ""), elem.get(high, ""))


def parent_object(path):
    """'Device.WiFi.AccessPoint.{i}.Security.' -> 'Device.WiFi.AccessPoint.{i}.'"""
    parts = path.rstrip(".").split(".")
    if parts and parts[-1] == "{i}":
        parts.pop()
    if parts:
        parts.pop()
    return ".".join(parts) + "." if parts else ""


def resolve_relative(ref, obj_path, root):
    """Resolve a relative path of the DM schema against the containing object."""
    ref = ref.strip()
    if not ref:
        return ref
    if ref.startswith(root):
        return ref
    if ref.startswith("."):
        return root + ref[1:]
    base = obj_path
    while ref.startswith("#"):
        ref = ref[1:]
        base = parent_object(base)
    if ref.startswith("."):
        ref = ref[1:]
    return base + ref


class Model:
    def __init__(self, library, model_name):
        self.lib = library
        self.objects = {}
        self.root = model_name.split(":")[0] + "."
        self._extending = False
        self._expand_model(model_name)

    def _expand_model(self, name):
        model = self.lib.models.get(name)
        if model is None:
            raise SystemExit("derive: no model named %s" % name)
        if model.get("base"):
            self._expand_model(model.get("base"))
        self._expand(model, "")

    def _expand(self, container, prefix):
        for elem in container:
            tag = local(elem.tag)
            if tag == "component":
                comp = self.lib.components.get(elem.get("ref"))
                if comp is None:
                    raise SystemExit("derive: unknown component %s" % elem.get("ref"))
                self._expand(comp, prefix + (elem.get("path") or ""))
            elif tag == "object":
                self._object(elem, prefix)
            elif tag == "parameter" and prefix:
                self._parameter(self._get_object(prefix), elem)

    def _get_object(self, path):
        obj = self.objects.get(path)
        if obj is None:
            obj = self.objects[path] = Obj(path)
        return obj

    def _object(self, elem, prefix):
        path = prefix + (elem.get("name") or elem.get("base") or "")
        if deleted(elem):
            self.objects.pop(path, None)
            return
        obj = self._get_object(path)
        if elem.get("numEntriesParameter"):
            obj.num_entries = elem.get("numEntriesParameter")
        for p in children(elem, "parameter"):
            self._parameter(obj, p)

    def _parameter(self, obj, elem):
        name = elem.get("name") or elem.get("base")
        if deleted(elem):
            obj.params.pop(name, None)
            return
        param = obj.params.get(name)
        if param is None:
            param = obj.params[name] = Param(name)
        syntax = child(elem, "syntax")
        if syntax is not None:
            # A later definition that names its parameter by base= adds values.
            self._extending = elem.get("base") is not None
            self._syntax(obj, param, syntax)
            self._extending = False

    def _syntax(self, obj, param, syntax):
        if child(syntax, "list") is not None:
            param.is_list = True
        for elem in syntax:
            tag = local(elem.tag)
            if tag in PRIMITIVES:
                param.type = tag
                self._facets(obj, param, elem)
            elif tag == "dataType":
                param.data_type = elem.get("ref") or elem.get("base")
                self._data_type(obj, param, param.data_type, set())
                self._facets(obj, param, elem)

    def _data_type(self, obj, param, name, seen):
        if name in seen:
            return
        seen.add(name)
        dtype = self.lib.data_types.get(name)
        if dtype is None:
            raise SystemExit("derive: unknown data type %s" % name)
        if dtype.get("base"):
            self._data_type(obj, param, dtype.get("base"), seen)
        if child(dtype, "list") is not None:
            param.is_list = True
        for elem in dtype:
            if local(elem.tag) in PRIMITIVES:
                param.type = local(elem.tag)
                self._facets(obj, param, elem)
        self._facets(obj, param, dtype)

    def _facets(self, obj, param, elem):
        values = [e.get("value") for e in children(elem, "enumeration") if not deleted(e)]
        if values and self._extending:
            param.enum = param.enum + [v for v in values if v not in param.enum]
        elif values:
            param.enum = values  # a narrower definition replaces the inherited one
        patterns = [e.get("value") for e in children(elem, "pattern") if not deleted(e)]
        if patterns:
            param.patterns = patterns
        ranges = [bounds(e, "minInclusive", "maxInclusive") for e in children(elem, "range")]
        if ranges:
            param.ranges = ranges
        sizes = [bounds(e, "minLength", "maxLength") for e in children(elem, "size")]
        if sizes:
            param.sizes = sizes
        eref = child(elem, "enumerationRef")
        if eref is not None:
            param.enum_ref = resolve_relative(eref.get("targetParam"), obj.path, self.root)
            param.null_value = eref.get("nullValue")
        pref = child(elem, "pathRef")
        if pref is not None:
            parents = (pref.get("targetParent") or "").split()
            param.ref = sorted(resolve_relative(p, obj.path, self.root) for p in parents)


# Subtrees a home gateway of this kind never carries, left out to keep the list
# compact: software modules (execution environments and their capabilities).
OMITTED_SUBTREES = ("Device.SoftwareModules.",)


def render(model, source_name, notice):
    out = ["# TR-181 %s object, parameter and value list" % model.root.rstrip("."),
           "# Derived from %s by tools/tr181/derive.py; do not edit by hand." % source_name,
           "# O path [numEntriesParameter] | P path name type [list] [ref[=parents]]",
           "# E path name values (|-separated) | R path name target-parameter [null=value]",
           "# S path name pattern | V path name min:max|... | Z path name minLength:maxLength|..."]
    if notice:
        out.append("#")
        out.append("# Names and values from the data model published by the standards body")
        out.append("# under the BSD 3-Clause licence; the source document's full notice,")
        out.append("# with its list of contributors, stands at the top of that document.")
        out.extend(("# " + line).rstrip() for line in notice)
    for path in sorted(model.objects):
        if path.startswith(OMITTED_SUBTREES):
            continue
        obj = model.objects[path]
        out.append("O " + path + (" " + obj.num_entries if obj.num_entries else ""))
        for name in sorted(obj.params):
            p = obj.params[name]
            kind = p.type + (":" + p.data_type if p.data_type else "")
            flags = " list" if p.is_list else ""
            if p.ref is not None:
                flags += " ref" + ("=" + "|".join(p.ref) if p.ref else "")
            out.append("P %s %s %s%s" % (path, name, kind, flags))
            if p.enum:
                bad = [v for v in p.enum if "|" in v]
                if bad:
                    raise SystemExit("derive: value with '|' in %s%s" % (path, name))
                out.append("E %s %s %s" % (path, name, "|".join(p.enum)))
            if p.enum_ref:
                null = " null=" + p.null_value if p.null_value is not None else ""
                out.append("R %s %s %s%s" % (path, name, p.enum_ref, null))
            for pattern in p.patterns:
                if "\n" in pattern:
                    raise SystemExit("derive: multi-line pattern in %s%s" % (path, name))
                out.append("S %s %s %s" % (path, name, pattern))
            if p.ranges:
                out.append("V %s %s %s" % (path, name, "|".join(p.ranges)))
            if p.sizes:
                out.append("Z %s %s %s" % (path, name, "|".join(p.sizes)))
    return "\n".join(out) + "\n"


def version_key(name):
    """'Device:2.16' -> (2, 16), so that 2.16 sorts after 2.9."""
    return tuple(int(p) if p.isdigit() else 0 for p in name.split(":")[-1].split("."))


def leading_notice(path):
    """The license comment at the top of the XML, as plain lines."""
    with open(path, encoding="utf-8") as f:
        head = f.read(16384)
    match = re.search(r"<!--(.*?)-->", head, re.S)
    if not match:
        return []
    lines = match.group(1).strip("\n").splitlines()
    indent = min((len(l) - len(l.lstrip()) for l in lines if l.strip()), default=0)
    lines = [l[indent:] for l in lines]
    # Keep the title and the copyright holder's line; contributors' names
    # and the licence text stay in the source document.
    keep = [l for l in lines if l.strip() and "Root Object definition" in l]
    keep += [l for l in lines if l.startswith("Copyright (c)")]
    return keep


def main(argv=None):
    ap = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    ap.add_argument("xml", help="TR-181 data-model XML document")
    ap.add_argument("-o", "--output", help="output file (default: standard output)")
    ap.add_argument("-m", "--model", help="model name (default: the document's Device: model)")
    ap.add_argument("-I", dest="include", action="append", default=[],
                    help="folder to search for imported documents")
    args = ap.parse_args(argv)

    lib = Library(args.xml, args.include)
    name = args.model
    if name is None:
        names = sorted((n for n in lib.main.models if n.startswith("Device:")), key=version_key)
        if not names:
            raise SystemExit("derive: %s defines no Device: model" % args.xml)
        name = names[-1]
    model = Model(lib, name)
    text = render(model, os.path.basename(args.xml), leading_notice(args.xml))
    if args.output:
        tmp = args.output + ".tmp"
        with open(tmp, "w", encoding="utf-8", newline="\n") as f:
            f.write(text)
        os.replace(tmp, args.output)
    else:
        sys.stdout.write(text)
    return 0


if __name__ == "__main__":
    sys.exit(main())
