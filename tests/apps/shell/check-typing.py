#!/usr/bin/python3
"""Types at a bash that completes vlhost, and looks at the words that the program would get.

Usage: check-typing.py <completion>
"""

import os
import pathlib
import pty
import sys
import tempfile

CASES = [
    ("export a --format TIFF-N\t", "export|a|--format|TIFF-No Compression|"),
    ("export a --format TIFF-No\\ C\t", "export|a|--format|TIFF-No Compression|"),
    ("export a --format=TIFF-N\t", "export|a|--format=TIFF-No Compression|"),
    ("export --job tw\t", "export|--job|two words.VLJob|"),
    ("export --job=tw\t", "export|--job=two words.VLJob|"),
    ("export --job tw\tone\t", "export|--job|two words.VLJob|one.VLJob|"),
]


def words_of(completion, folder, keys):
    """What vlhost is called with, once the keys are typed."""
    told = pathlib.Path(folder, "told")
    told.unlink(missing_ok=True)
    child, terminal = pty.fork()
    if child == 0:
        os.chdir(folder)
        os.environ["TERM"] = "dumb"
        os.execv("/bin/bash", ["bash", "--norc", "--noprofile", "-i"])
    lines = [f". '{completion}'", "vlhost() { printf '%s|' \"$@\" > told; }", f"vlhost {keys}", "exit"]
    os.write(terminal, ("\n".join(lines) + "\n").encode())
    try:
        while os.read(terminal, 4096):
            pass
    except OSError:  # The shell has left its terminal.
        pass
    os.waitpid(child, 0)
    return told.read_text(encoding="utf-8") if told.exists() else "nothing"


def main():
    completion = os.path.abspath(sys.argv[1])
    failures = 0
    with tempfile.TemporaryDirectory() as folder:
        for name in ("one.VLJob", "two words.VLJob"):
            pathlib.Path(folder, name).touch()
        for keys, wanted in CASES:
            got = words_of(completion, folder, keys)
            if got != wanted:
                print(f"FAILED: {keys!r}\n  wanted: {wanted}\n  got:    {got}")
                failures += 1
    return 1 if failures else 0


sys.exit(main())
