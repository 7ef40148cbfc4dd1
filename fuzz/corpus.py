#!/usr/bin/env python3
"""corpus.py unpack TARGET FOLDER, corpus.py pack TARGET FOLDER: between a target's corpus as it is kept, one
file with an input a line in hexadecimal, and as libFuzzer has it, a folder with a file an input.
corpus.py add TARGET FILE WORDS: keeps one input below a comment, also when the others are packed anew."""
import hashlib
import pathlib
import sys

HERE = pathlib.Path(__file__).resolve().parent / "corpus"


def kept(target):
    """Comments, and the input below each."""
    path, lines, held = HERE / f"{target}.txt", [], False
    for line in path.read_text().splitlines() if path.exists() else []:
        if line.startswith("#") or held:
            lines.append(line)
        held = line.startswith("#")
    return lines


def inputs(target):
    path = HERE / f"{target}.txt"
    lines = path.read_text().splitlines() if path.exists() else []
    return [bytes.fromhex(line) for line in lines if line and not line.startswith("#")]


def unpack(target, folder):
    for data in inputs(target):
        (pathlib.Path(folder) / hashlib.sha1(data).hexdigest()).write_bytes(data)


def pack(target, folder):
    lines = kept(target)
    found = {path.read_bytes().hex() for path in pathlib.Path(folder).iterdir()} - set(lines) - {""}
    # By length: the first that fails is the easiest to read.
    write(target, lines + sorted(found, key=lambda line: (len(line), line)))


def add(target, file, words):
    lines = (HERE / f"{target}.txt").read_text().splitlines()
    write(target, [f"# {words}", pathlib.Path(file).read_bytes().hex(), *lines])


def write(target, lines):
    HERE.mkdir(exist_ok=True)
    (HERE / f"{target}.txt").write_text("".join(f"{line}\n" for line in lines))


if __name__ == "__main__":
    {"unpack": unpack, "pack": pack, "add": add}[sys.argv[1]](*sys.argv[2:])
