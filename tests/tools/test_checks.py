# SPDX-FileCopyrightText: Veltro contributors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The checks of the sources find what they are for, and nothing else."""
import unittest
from pathlib import Path

from scratch import ScratchCase

import layering
import sources
import words


class CheckCase(ScratchCase):
    def assert_each_found(self, check, rows):
        """Each row's file alone, of this name and text, is what the check finds."""
        for name, text, found in rows:
            with self.subTest(name):
                path = self.write(name, text)
                faults = check.faults(self.scratch)
                self.assertEqual(len(faults), 1, faults)
                self.assertRegex(faults[0], found)
                path.unlink()


class Layering(CheckCase):
    def setUp(self):
        super().setUp()
        sources.own_includes.cache_clear()
        self.write("platform/log.h", "#pragma once\n#include <QString>\n")
        self.write("platform/ffmpeg/probe.cpp",
                   '#include "platform/log.h"\n#include <libavformat/avformat.h>\n')
        self.write("engine/bridge/loader.cpp",
                   '#include "platform/log.h"\nconst char *name = "Py_Initialize";\n')
        self.write("engine/bridge/object.h", "#pragma once\nclass PythonObject;\n")
        self.write("engine/media/parser.h", '#pragma once\n#include "engine/bridge/object.h"\n')
        self.write("engine/service/run.cpp", '#include "engine/media/parser.h"\n')
        self.write("tests/engine/tst_run.cpp",
                   '#include "engine/service/run.h"\n#include <sqlite3.h>\n#include "tst_run.moc"\n')
        self.write("engine/service/run.h", "#pragma once\n")

    def test_what_runs_the_wrong_way_is_named_with_its_line(self):
        self.write("engine/runtime/queue.h", "#pragma once\n")
        self.write("coordination/coordinator.h", '#include "library/store.h"\n')
        self.write("library/store.h", '#include "coordination/progress_state.h"\n')
        self.write("coordination/progress_state.h", "#pragma once\n")
        self.assertEqual(layering.faults(self.scratch), [])
        self.assert_each_found(layering, [
            ("platform/up.cpp", '\n#include "engine/media/parser.h"\n', "up.cpp:2: .*runs upwards"),
            ("platform/deep.cpp", '#include "platform/ffmpeg/probe.cpp"\n', ":1: .*runs upwards"),
            ("engine/media/side.cpp", '#include "engine/runtime/queue.h"\n', ":1: .*runs upwards"),
            ("engine/service/tool.cpp", '#include "tests/engine/tst_run.cpp"\n', "runs upwards"),
            ("library/item.cpp", '#include "coordination/coordinator.h"\n', "runs upwards"),
            ("engine/media/short.cpp", '#include "parser.h"\n', "written from the root"),
            ("engine/new/room.cpp", "\n", "no rank"),
        ])

    def test_a_foreign_library_outside_its_room_is_found(self):
        self.assert_each_found(layering, [
            ("engine/media/a.cpp", "#include <libavutil/log.h>\n", "^engine/media/a.cpp:1: "),
            ("platform/b.cpp", "#  include <libswscale/swscale.h>\n", ":1: "),
            ("engine/service/c.cpp", "#include <sqlite3.h>\n", ":1: "),
            ("engine/service/d.cpp", "#include <QDBusConnection>\n", ":1: "),
            ("engine/runtime/e.cpp", "#include <Python.h>\n", ":1: "),
            ("engine/runtime/f.cpp", 'auto *f = dlsym(library, "PyGILState_Ensure");\n', ":1: "),
            ("engine/service/g.cpp", 'auto url = "http://x"; int n = Py_IsInitialized();\n', ":1: "),
        ])

    def test_comments_and_the_owners_of_a_library_are_free(self):
        self.write("engine/runtime/a.cpp",
                   '// #include "ui/window.h"\n/* Py_Initialize\n   #include <sqlite3.h> */\n')
        self.write("platform/search_index.cpp", "#include <sqlite3.h>\n")
        self.write("platform/notices.cpp", "#include <QtDBus/QDBusConnection>\n")
        self.write("engine/media/b.cpp", "class PythonObject; PythonObject *PyramidOf();\n")
        self.assertEqual(layering.faults(self.scratch), [])


class Reached(ScratchCase):
    def test_a_header_is_reached_through_others_and_round_a_circle(self):
        self.write("platform/a.cpp", '#include "platform/b.h"\n')
        self.write("platform/b.h", '#include "platform/c.h"\n#include <vector>\n')
        self.write("platform/c.h", '#include "platform/b.h"\n')
        self.write("platform/d.h", "")
        sources.own_includes.cache_clear()
        self.assertEqual(sources.reached(Path("platform/a.cpp"), self.scratch),
                         {Path("platform/b.h"), Path("platform/c.h")})


class Words(CheckCase):
    def test_what_must_not_stand_is_found(self):
        licence = "// SPDX-License-Identifier: GPL-3.0-or-later\n"
        home = "/" + "home/anna"
        self.assert_each_found(words, [
            ("a.md", f"See {home}/notes.\n", "one user's machine"),
            ("b.txt", f"built in {self.scratch}/build\n", "this copy of the sources"),
            ("c.h", "#pragma once\n", "no licence line"),
            ("d.cpp", licence + "// TO" + "DO later\n", "a debt"),
            ("e.cpp", licence + "// FIX" + "ME\n", "what would settle it"),
            ("f.md", "<<<<<<" + "< HEAD\n", "not finished"),
            ("run", "#!/bin/sh\n", "no licence line"),
        ])

    def test_ordinary_files_pass(self):
        self.write("a.h", "// SPDX-License-Identifier: GPL-3.0-or-later\n// FIXME: until Qt 6.5\n")
        self.write("b.md", "Look at https://example.org/home/page and $HOME/home/x; mktemp XXXXXX\n")
        (self.scratch / "c.bin").write_bytes(b"\xff\xfe" + b"/ho" + b"me/x")
        self.assertEqual(words.faults(self.scratch), [])


if __name__ == "__main__":
    unittest.main()
