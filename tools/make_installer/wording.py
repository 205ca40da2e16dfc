"""How file names, sizes and long lists are said."""

LONGEST_LIST = 20


def visible(text):
    """The text with each character that a terminal would act upon, or cannot show, made visible."""
    shown = ""
    for character in str(text):
        code = ord(character)
        if 0xDC80 <= code <= 0xDCFF:  # a byte that is no UTF-8
            shown += f"\\x{code - 0xDC00:02x}"
        elif character.isprintable():
            shown += character
        else:
            shown += character.encode("unicode_escape", "surrogatepass").decode("ascii")
    return shown


def some_of(things, longest=LONGEST_LIST):
    """The first few, and how many more there are."""
    things = list(things)
    if len(things) <= longest + 1:
        return things
    return things[:longest] + [f"and {len(things) - longest:,} more"]


def size(count):
    """A number of bytes, rounded as people say it."""
    for unit, bytes_in_it in (("GB", 1e9), ("MB", 1e6), ("KB", 1e3)):
        if count >= bytes_in_it:
            return f"{count / bytes_in_it:.1f} {unit}"
    return f"{count} bytes"
