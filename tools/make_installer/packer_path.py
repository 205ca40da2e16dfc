"""Makes the payload packer's module importable: import packer_path before it."""

import os
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.append(os.path.normpath(os.path.join(HERE, "..", "payload_packer")))
