"""What came of the checks that run inside QGIS: a line for each, "passed <name>" or "failed <name>: <why>"."""

import os
import traceback

import person


class Results:
    def __init__(self):
        self.file = open(os.path.join(os.environ["VLQGIS_FOLDER"], "results.txt"), "w", buffering=1, encoding="utf-8")
        self.only = os.environ.get("VLQGIS_ONLY", "").split()

    def run(self, rooms):
        """Each function `check_...` that stands in the modules themselves."""
        for room in rooms:
            for name, check in list(vars(room).items()):
                if name.startswith("check_") and check.__module__ == room.__name__:
                    self.run_one(name[6:], check)

    def run_one(self, name, check):
        if self.only and name not in self.only:
            return
        try:
            check()
            self.file.write(f"passed {name}\n")
        except BaseException as problem:
            person.picture("failed-" + name)
            where = traceback.extract_tb(problem.__traceback__)[-1]
            lines = [str(problem), f"{where.filename}:{where.lineno}"] + traceback.format_exc().splitlines()[-6:]
            self.file.write(f"failed {name}: " + " | ".join(lines).replace("\n", " ") + "\n")

    def close(self):
        self.file.write("ended\n")
        self.file.close()
