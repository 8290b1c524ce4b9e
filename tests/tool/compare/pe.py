"""Compares what qvlink says PE files import with objdump, and its scans on two systems.

Usage: pe.py QVLINK WINDOWS_QVLINK DATABASES FOLDER

Scans the folder here and, by the Windows program, under Wine. Compares the objects and
links of both graphs by their paths and names, and each file's imports with `objdump -p`.
DATABASES is a folder to put databases into. Prints each difference and "N compared,
M differ"; the exit status is 0 if nothing differs.
"""
import json
import os
import re
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor

IMPORT = re.compile(r"^\s*DLL Name: (.*)$", re.MULTILINE)


def graph_of(program, database, folder):
    """Objects by id as (path or name, type, size), and links between ids."""
    subprocess.run(program + ["--db", database, "scan", folder], check=True)
    output = subprocess.run(program + ["--db", database, "export", "--format", "jsonl"], check=True,
                            capture_output=True).stdout
    objects, links = {}, []
    for line in output.decode().splitlines():
        record = json.loads(line)
        if record["record"] == "object":
            name = record.get("databasePath") or record.get("name") or ""
            # What a system says of the folders on the way doesn't matter here.
            is_file = record.get("kind") == "file"
            objects[record["id"]] = (name, record["type"], record.get("size") if is_file else None,
                                     record["flags"])
        elif record["record"] == "link":
            links.append((record["from"], record["type"], record["to"]))
    return set(objects.values()), {(objects[source], kind, objects[target])
                                   for source, kind, target in links}


def imports_by_objdump(path):
    run = subprocess.run(["x86_64-w64-mingw32-objdump", "-p", path], check=True,
                         capture_output=True, text=True, errors="replace")
    return {name.lower() for name in IMPORT.findall(run.stdout)}


def report(what, only_first, only_second):
    for item in sorted(map(str, only_first)):
        print(f"{what}: only the first has {item}")
    for item in sorted(map(str, only_second)):
        print(f"{what}: only the second has {item}")
    return len(only_first) + len(only_second)


def main():
    qvlink, windows_qvlink, databases, folder = sys.argv[1:]
    wine = os.path.join(os.path.dirname(__file__), "../../../scripts/wine")
    objects, links = graph_of([qvlink], os.path.join(databases, "linux"), folder)
    there = "Z:" + os.path.join(databases, "windows").replace("/", "\\")
    other_objects, other_links = graph_of([wine, windows_qvlink], there,
                                          "Z:" + folder.replace("/", "\\"))
    differ = report("objects on Linux and on Windows", objects - other_objects,
                    other_objects - objects)
    differ += report("links on Linux and on Windows", links - other_links, other_links - links)

    needs = {}
    for source, kind, target in links:
        if kind == "needs":
            needs.setdefault(source[0].rpartition("\\")[2], set()).add(target[0])
    files = sorted(entry.name for entry in os.scandir(folder) if entry.is_file())
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        expected = list(pool.map(lambda name: imports_by_objdump(os.path.join(folder, name)), files))
    for name, imports in zip(files, expected):
        found = needs.get(name, set())
        differ += 1 if report(f"{name} by qvlink and by objdump", found - imports,
                              imports - found) else 0
    print(f"{len(objects) + len(links) + len(files)} compared, {differ} differ "
          f"({len(objects)} objects, {len(links)} links, {len(files)} files by objdump)")
    sys.exit(0 if files and differ == 0 else 1)


main()
