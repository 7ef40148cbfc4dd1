"""What the fuzzers' seeds and words are made from: the product's own tables, read from its sources."""
import pathlib
import re

ROOT = pathlib.Path(__file__).resolve().parent.parent
VARINT, DELIMITED = 0, 2


def text_of(path):
    return (ROOT / path).read_text()


def literals(path):
    """The string literals of a source, joined where they stand side by side."""
    found = re.findall(r'"(?:[^"\\\n]|\\.)*"(?:\s*"(?:[^"\\\n]|\\.)*")*', text_of(path))
    pieces = [re.findall(r'"((?:[^"\\\n]|\\.)*)"', literal) for literal in found]
    return ["".join(piece).encode().decode("unicode_escape") for piece in pieces]


def classes():
    """Every message class in the catalogue's order: name -> (metric ID or 0, {number: key})."""
    found = {}
    page = text_of("docs/reference/messages.md").split("\n# Names\n")[0]
    for section in page.split("\n## ")[1:]:
        metric = re.search(r"^Metric (0x[0-9A-F]+)\.", section, re.M)
        fields = re.findall(r"^\| (\d+) \| (\S+) \|", section, re.M)
        found[section.split("\n")[0]] = (int(metric[1], 16) if metric else 0,
                                         {int(number): key for number, key in fields})
    return found


def metric_ids():
    """The metrics' constants in their table's order: name -> ID."""
    source = text_of("metrics/registry/metric_ids.h")
    ids = dict(re.findall(r"constexpr std::int64_t (K_\w+) = (0x\w+);", source))
    return {name: int(ids[name], 16) for name in re.findall(r'{"(K_\w+)", ', source)}


def tags():
    return [int(tag) for tag in
            re.findall(r'{(\d+), "', text_of("metrics/registry/KBBMetricUtility.cc"))]


def varint(value):
    out = bytearray()
    while value >= 0x80:
        out.append(value & 0x7F | 0x80)
        value >>= 7
    return bytes(out + bytes([value]))


def key(number, wire_type):
    return varint(number << 3 | wire_type)


def wire(fields):
    """A payload from its fields as the tests write them: `1:42 2:~-7 3:'text' 4:<0aff> 5:[1 ~2] 6:{1:2}`."""
    def value(text, at):
        if text[at] in "{[":
            closing = {"{": "}", "[": "]"}[text[at]]
            inner, at_end = bytearray(), at + 1
            while text[at_end] != closing:
                if text[at_end] == " ":
                    at_end += 1
                    continue
                piece, at_end = field(text, at_end) if closing == "}" else bare(text, at_end)
                inner += piece
            return DELIMITED, bytes(varint(len(inner)) + inner), at_end + 1
        if text[at] in "'<":
            end = text.index({"'": "'", "<": ">"}[text[at]], at + 1)
            content = text[at + 1:end]
            content = content.encode() if text[at] == "'" else bytes.fromhex(content)
            return DELIMITED, varint(len(content)) + content, end + 1
        content, end = bare(text, at)
        return VARINT, content, end

    def bare(text, at):
        match = re.compile(r"(~?)(-?\d+)").match(text, at)
        number = int(match[2])
        if match[1]:
            number = (number << 1 ^ number >> 31) & 0xFFFFFFFF
        return varint(number & 0xFFFFFFFFFFFFFFFF), match.end()

    def field(text, at):
        match = re.compile(r"(\d+):").match(text, at)
        kind, content, end = value(text, match.end())
        return key(int(match[1]), kind) + content, end

    out, at = bytearray(), 0
    while at < len(fields):
        if fields[at] == " ":
            at += 1
            continue
        piece, at = field(fields, at)
        out += piece
    return bytes(out)


def sample_metrics():
    """One payload of each handled metric, from the tests: metric ID -> bytes."""
    rows = re.findall(r'{(0x\w+), "\w+", "\w+",\s*"(?:[^"\\]|\\.)*",\s*((?:"[^"]*"\s*)+),',
                      text_of("tests/support/sample_metrics.cc"))
    samples = {}
    for metric, fields in rows:
        joined = "".join(re.findall(r'"([^"]*)"', fields)).replace("@", "1700000000000")
        samples[int(metric, 16)] = wire(joined)
    return samples
