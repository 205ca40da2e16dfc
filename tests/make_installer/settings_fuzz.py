"""Feeds random and damaged settings files to the reader: each is read or refused with complaints.

settings_fuzz.py [FILES]; needs hypothesis. The seed is fixed, so that a finding stays one.
"""

import os
import sys
import tempfile

from hypothesis import HealthCheck, given, seed, settings, strategies

HERE = os.path.dirname(os.path.abspath(__file__))
TOOL = os.path.join(HERE, "..", "..", "tools", "make_installer")
sys.path.insert(0, TOOL)
sys.dont_write_bytecode = True

import settings as product_settings  # noqa: E402

FILES = int(sys.argv[1]) if len(sys.argv) > 1 else 2000
with open(os.path.join(TOOL, "template", product_settings.FILE_NAME), "rb") as template:
    WHOLE = template.read() + b'\n[[item]]\npath = "manual"\nfolder = "/opt/doc"\n'
KNOWN = product_settings.TEXTS + product_settings.SWITCHES + product_settings.FILES
OF_ITEMS = ("path", "folder", "person_folder", "[[item]]")

values = strategies.recursive(
    strategies.one_of(
        strategies.text(max_size=300).map(lambda text: '"' + text + '"'),
        strategies.integers().map(str),
        strategies.floats().map(str),
        strategies.sampled_from(["true", "1.0", "0", "1", "''", "2026-13-40", "9" * 5000, '"/a b"']),
    ),
    lambda inner: strategies.lists(inner, max_size=3).map(lambda parts: f"[{', '.join(parts)}]"),
)


@strategies.composite
def damaged(draw):
    """The template with some of its lines changed, and some bytes lost, doubled or replaced."""
    lines = WHOLE.decode().splitlines()
    for _ in range(draw(strategies.integers(0, 4))):
        name = draw(strategies.sampled_from(KNOWN + OF_ITEMS))
        places = [place for place, line in enumerate(lines) if line.startswith(name)]
        for place in places:
            lines[place] = f"{name} = {draw(values)}"
    text = "\n".join(lines).encode("utf-8", "surrogatepass")
    for _ in range(draw(strategies.integers(0, 3))):
        begin = draw(strategies.integers(0, len(text)))
        end = min(len(text), begin + draw(strategies.integers(0, 40)))
        piece = draw(strategies.one_of(strategies.binary(max_size=8), strategies.just(b"[" * 4000)))
        text = text[:begin] + piece + text[end:]
    return text


def check(text):
    with tempfile.TemporaryDirectory() as folder:
        with open(os.path.join(folder, product_settings.FILE_NAME), "wb") as file:
            file.write(text)
        try:
            found = product_settings.read_settings(folder)
        except product_settings.SettingsError as error:
            assert error.complaints
            for complaint in error.complaints:
                assert product_settings.FILE_NAME in complaint and ";" in complaint, complaint
            return
    assert set(found) == set(KNOWN) | set(product_settings.CHOICES) | {"item", "person_folder"}
    for item in found["item"]:
        assert set(item) <= {"path", "folder", "person_folder"} and item["path"], item
        assert item.get("folder", "/").startswith("/"), item
    for name in product_settings.SWITCHES:
        assert type(found[name]) is int and found[name] in (0, 1), (name, found[name])
    for name in product_settings.TEXTS:
        assert isinstance(found[name], str) and found[name].isprintable() is not None
        assert not any(ord(character) < 32 for character in found[name]), (name, found[name])
    assert product_settings.PLAIN.fullmatch(found["default_install_folder"])


fuzzing = settings(
    max_examples=FILES, deadline=None, database=None, suppress_health_check=list(HealthCheck)
)


@seed(1)
@fuzzing
@given(damaged())
def damaged_files(text):
    check(text)


@seed(1)
@fuzzing
@given(strategies.binary(max_size=200))
def random_files(text):
    check(text)


damaged_files()
random_files()
print(f"{2 * FILES} settings files read or refused")
