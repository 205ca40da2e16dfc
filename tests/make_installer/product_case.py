"""A test of a product's folder."""

import os
import unittest


class ProductCase(unittest.TestCase):
    """self.folder, which setUp makes, and files in it."""

    def path(self, name):
        return os.path.join(self.folder, name)

    def put(self, name, content=b"text"):
        os.makedirs(os.path.dirname(self.path(name)), exist_ok=True)
        with open(self.path(name), "wb") as file:
            file.write(content)
