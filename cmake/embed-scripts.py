#!/usr/bin/env python3
"""Writes a header with the text of each script, after a check that it is one.

    embed-scripts.py HEADER NAMESPACE SCRIPT...

The constant of media-observer.js is kMediaObserver.
"""

import pathlib
import subprocess
import sys


def constant(path):
    name = "k" + "".join(word.capitalize() for word in path.stem.split("-"))
    text = path.read_text()
    assert ')js"' not in text, path
    return f'inline constexpr const char {name}[] = R"js(\n{text})js";\n'


def main():
    header, namespace, *scripts = sys.argv[1:]
    paths = [pathlib.Path(script) for script in scripts]
    for path in paths:
        if subprocess.run(["node", "--check", path]).returncode:
            return 1
    body = "\n".join(constant(path) for path in paths)
    pathlib.Path(header).write_text(
        f"#pragma once\n\nnamespace {namespace} {{\n\n{body}\n}}  // namespace {namespace}\n")
    return 0


sys.exit(main())
