#!/usr/bin/env python3
"""Reads changed files' paths and prints the compiled files that show them: compiled_units.py BUILD_FOLDER

A source file is its own; a header is shown by the file that compiles it alone (target
all_verify_interface_header_sets). What is not compiled here prints nothing. Leaves their commands in
BUILD_FOLDER/lint/compile_commands.json, without g++'s precompiled headers, which clang cannot read.
"""
import json
import pathlib
import re
import sys

build = pathlib.Path(sys.argv[1])
commands = json.loads((build / "compile_commands.json").read_text())
for entry in commands:
    entry["command"] = re.sub(r"(-Winvalid-pch )?-include \S*/cmake_pch\.hxx", "", entry["command"])
(build / "lint").mkdir(exist_ok=True)
(build / "lint" / "compile_commands.json").write_text(json.dumps(commands))

compiled = {entry["file"] for entry in commands}
for path in map(pathlib.Path, sys.stdin.read().split()):
    if str(path.resolve()) in compiled:
        print(path.resolve())
    elif path.suffix == ".h":
        alone = "_verify_interface_header_sets/" + path.as_posix().removeprefix("src/") + ".cxx"
        for file in sorted(file for file in compiled if file.endswith(alone)):
            print(file)
