#!/usr/bin/env python3
"""Mutation pass over the library: inject one fault at a time, rebuild, run
the suites, and record which tests catch it.

    mutate.py generate [--count N] [--seed S] > tests/mutation/mutants.tsv
    mutate.py run [--mutants FILE] [--out FILE] [--only ID,...] [--keep FILE]
    mutate.py tests RESULTS.tsv
    mutate.py survivors RESULTS.tsv [--mutants FILE]
    mutate.py compare BEFORE.tsv AFTER.tsv

generate picks faults from the library's sources: a flipped comparison, && for
|| and back, an off-by-one, a changed constant result, a dropped statement (a
notification, a step), two steps swapped. Each is one line (two for a swap)
and its replacement, found again by its text, so the list stays valid while
the file keeps those lines.

run copies the tracked tree into build-mut/src, builds it there without
sanitizers (Debug, -O1), and for each fault patches the copy, rebuilds the
library and the test programs, runs them, and writes one row per fault: id,
status (caught, survived, invalid when it does not build, stale when its line
is gone) and the tests that failed, crashed or hung. A program that crashes
is run again without the tests that crashed, so every catching test is named;
one that hangs is not, and only the test that hung is named.
Only the tests of the files in suites.txt count; the programs may hold other
tests, which are ignored. The library built for each fault in a .cpp file is
kept in build-mut/cache, so a later run (after the tests changed) swaps it in
instead of building it again, as long as the fault and its file are the same.
Each row is also written to OUT.part as soon as it is known; --keep takes the
rows of an earlier results (or .part) file and runs only the faults it lacks,
or those --only names, so an interrupted run goes on with --keep OUT.part and
a few faults are run again into a complete file with --keep and --only.

tests lists, per counted test, how many faults it catches and the faults that
no other test catches. survivors gives, per area, the faults caught, survived
and not built, then each survivor as its line before and after the fault. compare lists the faults that BEFORE caught and AFTER
does not.
"""
import argparse
import hashlib
import json
import os
import random
import re
import shutil
import subprocess
import sys
import tempfile

ROOT = os.path.abspath(os.path.join(os.path.dirname(__file__), "..", ".."))
WORK = os.path.join(ROOT, "build-mut")
AREAS = ["text", "platform", "ssm", "scc", "geometry"]
HERE = os.path.dirname(os.path.abspath(__file__))
# The library files the faults go into, and the test files whose catches count.
SOURCES_FILE = os.path.join(HERE, "sources.txt")
SUITES_FILE = os.path.join(HERE, "suites.txt")
TIMEOUT = 60  # seconds per test program run

COMPARISONS = [(" < ", " <= "), (" <= ", " < "), (" > ", " >= "), (" >= ", " > "),
               (" == ", " != "), (" != ", " == ")]
RESULTS = [("return 0;", "return 1;"), ("return 1;", "return 0;"), ("return true;", "return false;"),
           ("return false;", "return true;"), ("return -1;", "return 0;")]
CALL = re.compile(r"^[A-Za-z_][\w:.\->\[\]]*(\(|<[\w:, *&]*>\().*\);$")
ASSIGN = re.compile(r"^[\w.\->\[\]*]+ (=|\+=|-=|\|=|&=) [^=].*;$")
OFF_BY_ONE = re.compile(r" ([+-]) 1\b")


def listed(path):
    with open(path) as f:
        return [l.strip() for l in f if l.strip() and not l.startswith("#")]


def sources():
    return listed(SOURCES_FILE)


def code_lines(path):
    """(index, text, code) for each line outside comments and preprocessor lines."""
    out = []
    in_block = False
    with open(os.path.join(ROOT, path)) as f:
        lines = f.read().split("\n")
    for i, text in enumerate(lines):
        s = text.strip()
        if in_block:
            if "*/" in s:
                in_block = False
            continue
        if s.startswith("/*"):
            in_block = "*/" not in s
            continue
        if not s or s.startswith("//") or s.startswith("#") or "static_assert" in s:
            continue
        code = s.split(" //")[0].rstrip()
        out.append((i, text, code))
    return lines, out


def balanced(code):
    return code.count("(") == code.count(")")


def candidates(path):
    lines, coded = code_lines(path)
    found = []
    for i, text, code in coded:
        for old, new in COMPARISONS:
            start = 0
            while (at := text.find(old, start)) >= 0 and at < len(text.split(" //")[0]):
                found.append(("flip", i, 1, text[:at] + new + text[at + len(old):]))
                start = at + 1
        for old, new in ((" && ", " || "), (" || ", " && ")):
            if old in code:
                found.append(("logic", i, 1, text.replace(old, new, 1)))
        for m in OFF_BY_ONE.finditer(code):
            at = text.find(m.group(0))
            found.append(("off-by-one", i, 1, text[:at] + text[at + len(m.group(0)):]))
        for old, new in RESULTS:
            if code.endswith(old):
                found.append(("result", i, 1, text.replace(old, new)))
        simple = balanced(code) and not code.startswith(("return", "if", "while", "for", "switch",
                                                          "case", "delete", "break", "continue"))
        if simple and (CALL.match(code) or ASSIGN.match(code)):
            indent = text[:len(text) - len(text.lstrip())]
            found.append(("drop", i, 1, indent + "(void)0;  // dropped"))
    # Two neighbouring simple statements at one indentation, swapped.
    simple_at = {}
    for i, text, code in coded:
        if balanced(code) and (CALL.match(code) or ASSIGN.match(code)) and not code.startswith("return"):
            simple_at[i] = text
    for i, text in simple_at.items():
        nxt = simple_at.get(i + 1)
        if nxt is not None and len(text) - len(text.lstrip()) == len(nxt) - len(nxt.lstrip()):
            found.append(("swap", i, 2, nxt + "\n" + text))
    return lines, found


def generate(args):
    rnd = random.Random(args.seed)
    files = sources()
    sizes = {f: max(1, len(code_lines(f)[1])) * (0.5 if f.endswith(".h") else 1.0) for f in files}
    total = sum(sizes.values())
    rows = []
    for f in files:
        lines, found = candidates(f)
        if not found:
            continue
        want = max(2, round(args.count * sizes[f] / total))
        by_kind = {}
        for c in found:
            by_kind.setdefault(c[0], []).append(c)
        for kind in by_kind.values():
            rnd.shuffle(kind)
        kinds = sorted(by_kind)
        rnd.shuffle(kinds)
        picked = []
        while len(picked) < want and any(by_kind.values()):
            for kind in kinds:
                if by_kind[kind] and len(picked) < want:
                    picked.append(by_kind[kind].pop())
        for kind, i, n, new in sorted(picked, key=lambda c: c[1]):
            old = "\n".join(lines[i:i + n])
            rows.append((f, i + 1, kind, old, new))
    print("# id\tfile\tline\tkind\toriginal\treplacement (newlines as \\n)")
    for k, (f, line, kind, old, new) in enumerate(rows, 1):
        print("\t".join([f"M{k:03d}", f, str(line), kind, esc(old), esc(new)]))


def esc(s):
    return s.replace("\\", "\\\\").replace("\t", "\\t").replace("\n", "\\n")


def unesc(s):
    return re.sub(r"\\(.)", lambda m: {"n": "\n", "t": "\t", "\\": "\\"}[m.group(1)], s)


def read_mutants(path):
    rows = []
    with open(path) as f:
        for line in f:
            if line.startswith("#") or not line.strip():
                continue
            mid, file, lineno, kind, old, new = line.rstrip("\n").split("\t")
            rows.append(dict(id=mid, file=file, line=int(lineno), kind=kind, old=unesc(old), new=unesc(new)))
    return rows


def suite_tests():
    """Test suite names (the part before the dot) of the counted test files."""
    names = {}
    for path in listed(SUITES_FILE):
        full = os.path.join(ROOT, path)
        if not os.path.exists(full):
            continue
        with open(full) as f:
            for m in re.finditer(r"^(?:TEST|TEST_F|TEST_P|TYPED_TEST|TYPED_TEST_P)\((\w+),\s*(\w+)\)", f.read(), re.M):
                names[(m.group(1), m.group(2))] = path
    return names


def test_key(test):
    """(suite, name) of a test as the program names it: Suite.Name, or
    Suite/0.Name for a typed test, Prefix/Suite.Name/0 for a parameterised one."""
    suite, _, name = test.partition(".")
    return [c for c in suite.split("/") if not c.isdigit()][-1], name.split("/")[0]


def catchers(field):
    """The (suite, name) keys in a row's caught-by field; "(program)" for a
    program that failed outside any test."""
    names = [t for t in field.split(" ") if t and t not in ("(crash)", "(hang)")]
    return {n if n == "(program)" else test_key(n) for n in names}


def run_cmd(cmd, cwd, timeout=None):
    return subprocess.run(cmd, cwd=cwd, capture_output=True, text=True, timeout=timeout)


def prepare():
    # Only files whose content differs are copied, with a fresh time, so the
    # build redoes what an earlier, interrupted fault may have left behind.
    src = os.path.join(WORK, "src")
    tracked = run_cmd(["git", "ls-files", "-co", "--exclude-standard"], ROOT).stdout.split("\n")
    for rel in filter(None, tracked):
        origin, copy = os.path.join(ROOT, rel), os.path.join(src, rel)
        if not os.path.isfile(origin):
            continue
        with open(origin, "rb") as f:
            content = f.read()
        if os.path.isfile(copy):
            with open(copy, "rb") as f:
                if f.read() == content:
                    continue
        os.makedirs(os.path.dirname(copy), exist_ok=True)
        with open(copy, "wb") as f:
            f.write(content)
    wanted = set(filter(None, tracked))
    for folder, _, files in os.walk(src):
        for name in files:
            rel = os.path.relpath(os.path.join(folder, name), src)
            if rel not in wanted:
                os.remove(os.path.join(folder, name))
    build = os.path.join(WORK, "build")
    r = run_cmd(["cmake", "-S", src, "-B", build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug",
                 "-DCMAKE_CXX_FLAGS_DEBUG=-O1", "-DTOVIK_BUILD_EXAMPLES=OFF", "-DTOVIK_BUILD_TOOLS=OFF"], ROOT)
    if r.returncode != 0:
        sys.exit("configure failed:\n" + r.stderr)
    return src, build


def targets():
    return ["tovik"] + [f"tovik_{a}_tests" for a in AREAS]


def run_program(program, exclude=()):
    """Runs one test program; returns the names of the tests that failed,
    crashed and hung, running it again without each test that crashed or hung."""
    failed, crashed, hung = set(), set(), set()
    flt = "-" + ":".join(exclude) if exclude else "*"
    try:
        r = subprocess.run([program, f"--gtest_filter={flt}"], capture_output=True, timeout=TIMEOUT)
        out, code = r.stdout.decode(errors="replace"), r.returncode
    except subprocess.TimeoutExpired as e:
        out, code = (e.stdout or b"").decode(errors="replace"), None
    running = None
    for line in out.split("\n"):
        m = re.match(r"\[ RUN +\] (\S+)", line)
        if m:
            running = m.group(1)
        m = re.match(r"\[ +(OK|FAILED|SKIPPED) +\] (\S+) \(", line)
        if m:
            if m.group(1) == "FAILED":
                failed.add(m.group(2))
            running = None
    if code is None:
        # A hang costs the whole timeout: the first one is named, and the
        # program is not run again for the others.
        hung.add(running or "(program)")
        return failed, crashed, hung
    if code != 0 and running is not None:
        crashed.add(running)
        more = run_program(program, tuple(exclude) + (running,))
        return failed | more[0], crashed | more[1], hung | more[2]
    if code != 0 and not failed:
        crashed.add("(program)")
    return failed, crashed, hung


def cache_key(m, text):
    return hashlib.sha256("\0".join([m["file"], m["old"], m["new"], text]).encode()).hexdigest()


def run(args):
    counted = suite_tests()
    mutants = read_mutants(args.mutants)
    kept = read_rows(args.keep) if args.keep else {}
    if args.only:
        wanted = set(args.only.split(","))
        mutants = [m for m in mutants if m["id"] in wanted]
    else:
        mutants = [m for m in mutants if m["id"] not in kept]
    # Faults in .cpp files first: each rebuilds the library alone, which is
    # kept, so that a later run with other tests needs no build for them.
    mutants.sort(key=lambda m: (m["file"].endswith(".h"), m["file"], m["line"]))
    src, build = prepare()
    r = run_cmd(["cmake", "--build", build, "-j2", "--target"] + targets(), ROOT)
    if r.returncode != 0:
        sys.exit("the unchanged tree does not build:\n" + r.stdout[-3000:])
    programs = [os.path.join(build, "tests", f"tovik_{a}_tests") for a in AREAS]
    library = os.path.realpath(os.path.join(build, "libtovik.so"))
    cache = os.path.join(WORK, "cache")
    os.makedirs(cache, exist_ok=True)
    clean = os.path.join(cache, "clean.so")
    shutil.copy2(library, clean)

    def counted_name(test):
        return test_key(test) in counted

    def catches():
        caught_by = set()
        for p in programs:
            f_, c_, h_ = run_program(p)
            caught_by |= {t for t in f_ if counted_name(t)}
            caught_by |= {t + " (crash)" for t in c_ if counted_name(t) or t == "(program)"}
            caught_by |= {t + " (hang)" for t in h_ if counted_name(t) or t == "(program)"}
        return sorted(caught_by)

    if catches():
        sys.exit("tests fail without any fault: " + ", ".join(catches()))

    rows = dict(kept)
    progress = open(args.out + ".part", "w")
    progress.writelines(r + "\n" for r in rows.values())

    def record(m, status, caught_by, note=""):
        rows[m["id"]] = row(m, status, caught_by)
        progress.write(rows[m["id"]] + "\n")
        progress.flush()
        print(m["id"], status, len(caught_by), note, flush=True)

    for m in mutants:
        path = os.path.join(src, m["file"])
        with open(path) as f:
            text = f.read()
        key = cache_key(m, text)
        saved = os.path.join(cache, m["id"])
        if not m["file"].endswith(".h") and os.path.exists(saved + ".key"):
            with open(saved + ".key") as f:
                kept = f.read().split()
            if kept and kept[0] == key:
                if kept[1] == "invalid":
                    status, caught_by = "invalid", []
                else:
                    shutil.copy2(saved + ".so", library)
                    try:
                        caught_by = catches()
                    finally:
                        shutil.copy2(clean, library)
                    status = "caught" if caught_by else "survived"
                record(m, status, caught_by, "(kept library)")
                continue
        lines = text.split("\n")
        n = m["old"].count("\n") + 1
        at = m["line"] - 1
        if "\n".join(lines[at:at + n]) != m["old"]:
            # The line moved: take the nearest place that holds its text.
            hits = sorted((abs(k - at), k) for k in range(len(lines)) if "\n".join(lines[k:k + n]) == m["old"])
            at = hits[0][1] if hits and (len(hits) == 1 or hits[0][0] < hits[1][0]) else -1
        if at < 0:
            record(m, "stale", [])
            continue
        patched = lines[:at] + m["new"].split("\n") + lines[at + n:]
        with open(path, "w") as f:
            f.write("\n".join(patched))
        try:
            r = run_cmd(["cmake", "--build", build, "-j2", "--target"] + targets(), ROOT)
            if r.returncode != 0:
                status, caught_by = "invalid", []
            else:
                if not m["file"].endswith(".h"):
                    shutil.copy2(library, saved + ".so")
                caught_by = catches()
                status = "caught" if caught_by else "survived"
            if not m["file"].endswith(".h"):
                with open(saved + ".key", "w") as f:
                    f.write(key + " " + status + "\n")
        finally:
            with open(path, "w") as f:
                f.write(text)
        record(m, status, caught_by)
    progress.close()
    with open(args.out, "w") as f:
        f.write(HEADER)
        for mid in sorted(rows):
            f.write(rows[mid] + "\n")
    os.remove(args.out + ".part")
    counts = {}
    for line in rows.values():
        status = line.split("\t")[1]
        counts[status] = counts.get(status, 0) + 1
    print(json.dumps(counts))


HEADER = "# id\tstatus\tfile\tline\tkind\tcaught by\n"


def row(m, status, caught_by):
    return "\t".join([m["id"], status, m["file"], str(m["line"]), m["kind"], " ".join(caught_by)])


def read_rows(path):
    """Result rows by fault id, as run writes them."""
    with open(path) as f:
        return {line.split("\t")[0]: line.rstrip("\n") for line in f
                if line.strip() and not line.startswith("#")}


def read_results(path):
    return {mid: line.split("\t")[1] for mid, line in read_rows(path).items()}


def compare(args):
    before, after = read_results(args.before), read_results(args.after)
    lost = [k for k, v in sorted(before.items()) if v == "caught" and after.get(k) != "caught"]
    print(f"caught before: {sum(v == 'caught' for v in before.values())}, "
          f"after: {sum(v == 'caught' for v in after.values())}, lost: {len(lost)}")
    for k in lost:
        print(k, before[k], "->", after.get(k, "missing"))
    return 1 if lost else 0


def by_test(args):
    """Per counted test: the faults it catches, and those no other test catches."""
    counted = suite_tests()
    caught = {}
    for mid, line in read_rows(args.results).items():
        parts = line.split("\t")
        if parts[1] == "caught":
            caught[mid] = catchers(parts[5])
    print("# file\ttest\tfaults caught\tfaults no other test catches")
    for (suite, name), path in sorted(counted.items(), key=lambda x: (x[1], x[0])):
        mine = sorted(m for m, keys in caught.items() if (suite, name) in keys)
        only = [m for m in mine if len(caught[m]) == 1]
        print(f"{path}\t{suite}.{name}\t{len(mine)}\t{' '.join(only)}")
    program = sorted(m for m, keys in caught.items() if keys == {"(program)"})
    if program:
        print(f"-\t(program)\t{len(program)}\t{' '.join(program)}")


def survivors(args):
    """Per area: caught, survived and invalid counts; then each survivor as a diff."""
    mutants = {m["id"]: m for m in read_mutants(args.mutants)}
    rows = read_rows(args.results)
    by_area = {}
    for mid, line in sorted(rows.items()):
        m = mutants[mid]
        area = m["file"].split("/")[1] if not m["file"].startswith("system/inc/") else "headers"
        by_area.setdefault(area, []).append((m, line.split("\t")[1]))
    print("area       faults caught survived other")
    for area, found in sorted(by_area.items()):
        count = lambda s: sum(st == s for _, st in found)
        print(f"{area:10} {len(found):6} {count('caught'):6} {count('survived'):8} "
              f"{len(found) - count('caught') - count('survived'):5}")
    for area, found in sorted(by_area.items()):
        for m, status in found:
            if status != "survived":
                continue
            print(f"\n{m['id']} {m['file']}:{m['line']} ({m['kind']})")
            print("\n".join("  - " + l.strip() for l in m["old"].split("\n")))
            print("\n".join("  + " + l.strip() for l in m["new"].split("\n")))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    sub = parser.add_subparsers(dest="command", required=True)
    g = sub.add_parser("generate")
    g.add_argument("--count", type=int, default=130)
    g.add_argument("--seed", type=int, default=8)
    r = sub.add_parser("run")
    r.add_argument("--mutants", default=os.path.join(HERE, "mutants.tsv"))
    r.add_argument("--out", default=os.path.join(WORK, "results.tsv"))
    r.add_argument("--only")
    r.add_argument("--keep")
    t = sub.add_parser("tests")
    t.add_argument("results")
    v = sub.add_parser("survivors")
    v.add_argument("results")
    v.add_argument("--mutants", default=os.path.join(HERE, "mutants.tsv"))
    c = sub.add_parser("compare")
    c.add_argument("before")
    c.add_argument("after")
    args = parser.parse_args()
    if args.command == "generate":
        generate(args)
    elif args.command == "run":
        run(args)
    elif args.command == "tests":
        by_test(args)
    elif args.command == "survivors":
        survivors(args)
    else:
        sys.exit(compare(args))


if __name__ == "__main__":
    main()
