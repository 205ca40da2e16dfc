"""How far something long is: one line of a terminal, or now and then a line elsewhere."""

import sys

WORTH_TELLING = 8 * 2**20  # bytes: what is done within a second or two


class Progress:
    """Tells "DOING: done of total UNIT" or, without a unit, how many hundredths are done."""

    def __init__(self, doing, unit=""):
        self.doing = doing
        self.unit = unit
        self.on_terminal = sys.stdout.isatty()
        self.shown = -1

    def step(self, done, total):
        parts = 100 if self.on_terminal and not self.unit else 10
        part = parts * done // max(total, 1)
        if part == self.shown and not (self.on_terminal and self.unit):
            return
        self.shown = part
        far = f"{done} of {total} {self.unit}" if self.unit else f"{100 * done // max(total, 1)} %"
        if self.on_terminal:
            print(f"\r{self.doing}: {far}", end="", flush=True)
        else:
            print(f"{self.doing}: {far}", flush=True)

    def end(self):
        """What is said next begins on a line of its own."""
        if self.on_terminal and self.shown >= 0:
            print(flush=True)
            self.shown = -1


class BytesProgress(Progress):
    """Adds up the bytes that are done, and tells of them where there are enough to wait for."""

    def __init__(self, doing, total):
        super().__init__(doing)
        self.total = total
        self.done = 0

    def count(self, more):
        self.done += more
        if self.total >= WORTH_TELLING:
            self.step(self.done, self.total)
