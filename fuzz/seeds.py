"""seeds.py TARGET FOLDER: writes a recording's lines as seeds of a fuzz target."""
import hashlib
import json
import pathlib
import sys

target, folder = sys.argv[1], pathlib.Path(sys.argv[2])
for number, line in enumerate(sys.stdin):
    if target == "messages":
        seed = bytes([number % 56]) + bytes.fromhex(json.loads(line)["kKeyPayload"])
    else:
        seed = line.rstrip("\n").encode()
    (folder / hashlib.sha1(seed).hexdigest()).write_bytes(seed)
