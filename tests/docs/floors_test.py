"""Trees of sources with one fault each, and the messages of scripts/check_floors.py."""

import pathlib
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "scripts"))
# Write no files next to the sources
sys.dont_write_bytecode = True

import check_floors

# Files with the names that they include, and the only message, or None
TREES = [
    ({"lumo/terms/a.h": ["lumo/numbers/b.h", "lumo/terms/c.h", "vector"]}, None),
    ({"lumo/cli/a.cpp": ["CLI/CLI.hpp", "lumo/commands/b.h"], "lumo/solvers/a.cpp": ["z3++.h"]}, None),
    ({"lumo/numbers/a.h": ["lumo/terms/b.h"]},
     "lumo/numbers/a.h:2: lumo/terms/b.h: lumo/numbers/ is on floor 0, but lumo/terms/ is on floor 1"),
    ({"lumo/smtlib/a.cpp": ["lumo/smtlib/b.h", "lumo/solvers/b.h"]},
     "lumo/smtlib/a.cpp:3: lumo/solvers/b.h: lumo/smtlib/ is on floor 5, but lumo/solvers/ is on floor 6"),
    ({"lumo/commands/a.cpp": ["z3.h"]}, "lumo/commands/a.cpp:2: z3.h: only lumo/solvers/ includes Z3's headers"),
    ({"lumo/commands/a.h": ["CLI/App.hpp"]},
     "lumo/commands/a.h:2: CLI/App.hpp: only lumo/cli/ includes CLI11's headers"),
    ({"lumo/cli/a.cpp": ["tests/support/b.h"]},
     "lumo/cli/a.cpp:2: tests/support/b.h: lumo/ includes nothing of tests/"),
    ({"lumo/attic/a.h": []}, "lumo/attic/a.h:1: the folder lumo/attic/ has no floor"),
    ({"lumo/cli/a.h": ["lumo/attic/b.h"]}, "lumo/cli/a.h:2: lumo/attic/b.h: the folder lumo/attic/ has no floor"),
    ({"tests/elimination/a.cpp": ["lumo/elimination/b.h", "z3++.h", "tests/terms/c.h"]}, None),
    ({"tests/proof/a.cpp": ["lumo/solvers/b.h"]}, None),
    ({"tests/support/a.h": ["lumo/solvers/b.h"]}, None),
    ({"tests/terms/a.cpp": ["lumo/model/b.h"]},
     "tests/terms/a.cpp:2: lumo/model/b.h: tests/terms/ is on floor 1, but lumo/model/ is on floor 2"),
    ({"tests/terms/a.cpp": ["tests/model/b.h"]},
     "tests/terms/a.cpp:2: tests/model/b.h: tests/terms/ is on floor 1, but tests/model/ is on floor 2"),
    ({"tests/model/a.cpp": ["tests/support/b.h"], "tests/support/b.h": ["string"],
      "tests/support/b.cpp": ["tests/support/c.h"], "tests/support/c.h": ["lumo/smtlib/d.h"]},
     "tests/model/a.cpp:2: tests/support/b.h -> tests/support/c.h -> lumo/smtlib/d.h: "
     "tests/model/ is on floor 2, but lumo/smtlib/ is on floor 5"),
    ({"tests/commands/a.cpp": ["CLI/CLI.hpp"]},
     "tests/commands/a.cpp:2: CLI/CLI.hpp: only lumo/cli/ includes CLI11's headers"),
    ({"tests/attic/a.cpp": []}, "tests/attic/a.cpp:1: the folder tests/attic/ has no floor"),
]


class Floors(unittest.TestCase):
    def test_what_breaks_their_order_is_named(self):
        for files, fault in TREES:
            with self.subTest(files), tempfile.TemporaryDirectory() as folder:
                root = pathlib.Path(folder)
                for name, includes in files.items():
                    (root / name).parent.mkdir(parents=True, exist_ok=True)
                    lines = ["// A source"] + [f'#include "{included}"' for included in includes]
                    (root / name).write_text("\n".join(lines) + "\n", encoding="utf-8")
                found = check_floors.check_product(root) + check_floors.check_tests(root)
                self.assertEqual(found, [fault] if fault else [])


if __name__ == "__main__":
    unittest.main()
