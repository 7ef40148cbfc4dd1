"""seeds.py TARGET FOLDER: writes a recording's lines, or the lines of the application's configuration,
as seeds of a fuzz target."""
import hashlib
import json
import pathlib
import sys

target, folder = sys.argv[1], pathlib.Path(sys.argv[2])
configuration = pathlib.Path(__file__).parent.parent / "app/resources/zef_test_lte.deviceconfig"
lines = open(configuration) if target == "configuration" else sys.stdin
for number, line in enumerate(lines):
    if target == "configuration":
        seed = b"[metrics]\n" + line.encode()
    elif target == "messages":
        seed = bytes([number % 56]) + bytes.fromhex(json.loads(line)["kKeyPayload"])
    else:
        seed = line.rstrip("\n").encode()
    (folder / hashlib.sha1(seed).hexdigest()).write_bytes(seed)
