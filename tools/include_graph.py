#!/usr/bin/env python3
"""Prints the include graph of src/ between layers, and every circle of units
(a header with its source) that passes through frame/. Exit status 1 when frame/ includes a layer above
it or such a circle exists."""
import os
import re
import sys

SRC = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "src")
INCLUDE = re.compile(r'^\s*#include\s+"([^"]+)"', re.M)


def files():
    for root, _, names in os.walk(SRC):
        for name in names:
            if name.endswith((".h", ".cpp")):
                yield os.path.relpath(os.path.join(root, name), SRC)


def resolve(source, target, known):
    for candidate in (os.path.normpath(os.path.join(os.path.dirname(source), target)),
                      target, os.path.join("frame", target)):
        if candidate in known:
            return candidate
    return None


def layer(path):
    return path.split(os.sep)[0]


def main():
    known = set(files())
    graph = {}
    for path in known:
        with open(os.path.join(SRC, path), encoding="utf-8") as f:
            text = f.read()
        unit = os.path.splitext(path)[0]
        targets = {os.path.splitext(t)[0] for t in (resolve(path, inc, known)
                                                   for inc in INCLUDE.findall(text)) if t}
        graph.setdefault(unit, set()).update(targets - {unit})

    edges = {}
    for source, targets in graph.items():
        for target in targets:
            if layer(source) != layer(target):
                edges.setdefault((layer(source), layer(target)), 0)
                edges[(layer(source), layer(target))] += 1
    for (a, b), n in sorted(edges.items()):
        print(f"{a} -> {b}: {n}")

    bad = [(a, b) for (a, b) in edges if a == "frame"]
    for a, b in bad:
        print(f"frame includes {b}")

    # Circles: strongly connected components with more than one file.
    index, low, stack, on, circles = {}, {}, [], set(), []
    counter = [0]

    def visit(v):
        index[v] = low[v] = counter[0]
        counter[0] += 1
        stack.append(v)
        on.add(v)
        for w in graph[v]:
            if w not in index:
                visit(w)
                low[v] = min(low[v], low[w])
            elif w in on:
                low[v] = min(low[v], index[w])
        if low[v] == index[v]:
            component = []
            while True:
                w = stack.pop()
                on.discard(w)
                component.append(w)
                if w == v:
                    break
            if len(component) > 1:
                circles.append(sorted(component))

    sys.setrecursionlimit(10000)
    for v in sorted(graph):
        if v not in index:
            visit(v)
    through_frame = [c for c in circles if any(layer(p) == "frame" for p in c)]
    for c in through_frame:
        print("circle through frame/:", " ".join(c))
    print(f"{len(graph)} units, {len(circles)} circles, {len(through_frame)} through frame/")
    return 1 if bad or through_frame else 0


if __name__ == "__main__":
    sys.exit(main())
