"""Compares what qvlink says programs come to need with what lddtree says.

Usage: elf.py QVLINK DATABASE FOLDER...

Scans the folders into a fresh database and asks `qvlink deps` for each ELF program that
lies in them. Files are compared by their real paths, missing libraries by their names.
Prints each difference and "N compared, M differ"; the exit status is 0 if nothing differs.
"""
import json
import os
import re
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor

FOUND = re.compile(r"^( *)(\S.*) => (\S.*)$")
PROGRAM = re.compile(r"^(/.*) \(interpreter => (.*)\)$")


def elf_programs(folders):
    for folder in folders:
        for entry in sorted(os.scandir(folder), key=lambda entry: entry.name):
            if entry.is_file(follow_symlinks=False):
                with open(entry.path, "rb") as file:
                    if file.read(4) == b"\x7fELF":
                        yield entry.path


def key(path_or_none, name):
    """A library: its real path, or its name if it wasn't found."""
    return "missing " + name if path_or_none is None else os.path.realpath(path_or_none)


def ask_lddtree(programs):
    """By program, the set of what it comes to need."""
    answers = {}
    for start in range(0, len(programs), 200):
        part = programs[start:start + 200]
        output = subprocess.run(["lddtree"] + part, check=True, capture_output=True, text=True).stdout
        for line in output.splitlines():
            program = PROGRAM.match(line)
            if program:
                current = answers.setdefault(program[1], set())
                if program[2] != "None":
                    current.add(key(program[2], program[2]))
                continue
            found = FOUND.match(line)
            if not found:
                sys.exit(f"lddtree says something unexpected: {line}")
            current.add(key(None if found[3] in ("None", "not found") else found[3], found[2]))
    return answers


def ask_qvlink(qvlink, database, program):
    run = subprocess.run([qvlink, "--db", database, "--json", "deps", program],
                         capture_output=True, text=True)
    if run.returncode not in (0, 1):
        sys.exit(f"qvlink deps {program} failed: {run.stderr}")
    needs = set()
    for dependency in json.loads(run.stdout)["dependencies"]:
        found = dependency.get("object")
        path = found.get("path") if found else None
        needs.add(key(path, dependency["name"]))
    return needs


def main():
    qvlink, database, *folders = sys.argv[1:]
    subprocess.run([qvlink, "--db", database, "scan"] + folders, check=True)
    programs = list(elf_programs(folders))
    expected = ask_lddtree(programs)
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        answers = list(pool.map(lambda program: ask_qvlink(qvlink, database, program), programs))
    differ = 0
    for program, answer in zip(programs, answers):
        if answer != expected.get(program):
            differ += 1
            print(program)
            for extra in sorted(answer - expected.get(program, set())):
                print("  only qvlink: ", extra)
            for lacking in sorted(expected.get(program, set()) - answer):
                print("  only lddtree:", lacking)
    print(f"{len(programs)} compared, {differ} differ")
    sys.exit(0 if programs and differ == 0 else 1)


main()
