# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Runs a program of the examples as its users do. The tests of a program derive from `ProgramTest`.

Usage of such a script: DATA_FOLDER [EMULATOR ...] PROGRAM
"""

import os
import subprocess
import sys
import tempfile
import unittest

DATA = sys.argv[1]
COMMAND = sys.argv[2:]


class ProgramTest(unittest.TestCase):
    """Has a folder of its own, in it `out`, a path that nothing is at yet."""

    PROGRAM = ""  # as its errors begin

    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.out = self.path("out")

    def tearDown(self):
        self.folder.cleanup()

    def path(self, name):
        return os.path.join(self.folder.name, name)

    def write(self, name, content):
        with open(self.path(name), "wb") as file:
            file.write(content)
        return self.path(name)

    def make(self, name, content):
        """Writes a file; without content makes a folder where the name ends in "/", else nothing."""
        if content is not None:
            return self.write(name, content)
        if name.endswith("/"):
            os.makedirs(self.path(name), exist_ok=True)
        return self.path(name)

    def run_program(self, *arguments):
        """Returns exit status, standard output and error together, as the emulator mixes them."""
        environment = dict(os.environ, SHARED_REGISTRY_DIR=self.folder.name)
        result = subprocess.run([*COMMAND, *arguments], stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                env=environment, check=False)
        return result.returncode, result.stdout.decode("utf-8").replace("\r\n", "\n")

    def assert_one_line(self, text, part):
        self.assertTrue(text.startswith(self.PROGRAM + ": ") and text.endswith("\n"), text)
        self.assertEqual(1, text.count("\n"), text)
        self.assertIn(part, text)


def main():
    unittest.main(argv=sys.argv[:1])
