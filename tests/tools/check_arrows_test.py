#!/usr/bin/env python3
"""Tests of tools/check_arrows.py on small trees of their own: what follows the arrows passes, each break is found.

Usage: check_arrows_test.py PATH_OF_CHECK_ARROWS
"""
import contextlib
import importlib.util
import io
import os
import sys
import tempfile
import unittest

CHECKER = None  # the module


class CheckArrows(unittest.TestCase):
    def check(self, files):
        """Runs the checker over a tree of the given files; answers its exit code and its lines."""
        with tempfile.TemporaryDirectory() as root:
            for path, text in files.items():
                whole = os.path.join(root, path)
                os.makedirs(os.path.dirname(whole), exist_ok=True)
                with open(whole, "w", encoding="utf-8") as source:
                    source.write(text)
            said = io.StringIO()
            with contextlib.redirect_stdout(said):
                code = CHECKER.main([root])
            return code, said.getvalue().splitlines()

    def assert_broken(self, files, line):
        code, lines = self.check(files)
        self.assertEqual(code, 1)
        self.assertEqual(lines, [line])

    def assert_whole(self, files):
        self.assertEqual(self.check(files), (0, ["Every include follows the arrows."]))

    def test_includes_along_the_arrows_pass(self):
        self.assert_whole(
            {
                "platform/files.h": "#include <vector>\n",
                "platform/linux/files.h": '#include "platform/files.h"\n#include <fcntl.h>\n',
                "engine/scan.h": '#include "platform/files.h"\n',
                "engine/scan.cpp": '#include "engine/scan.h"\n',
                "cli/main.cpp": '#include "engine/scan.h"\n#include "platform/linux/files.h"\n',
                "tests/engine/scan_test.cpp": '#include "engine/scan.h"\n#include <gtest/gtest.h>\n',
            }
        )

    def test_engine_must_not_include_the_command_line(self):
        self.assert_broken(
            {"cli/table.h": "", "engine/scan.cpp": '#include "cli/table.h"\n'},
            'engine/scan.cpp:1: engine must not include cli ("cli/table.h")',
        )

    def test_engine_must_not_include_an_implementation_of_the_platform(self):
        self.assert_broken(
            {"platform/linux/files.h": "", "engine/scan.cpp": '\n#include "platform/linux/files.h"\n'},
            'engine/scan.cpp:2: engine must not include platform/linux ("platform/linux/files.h")',
        )

    def test_platform_must_not_include_a_room_above(self):
        self.assert_broken(
            {"engine/scan.h": "", "platform/log.h": '#include "engine/scan.h"\n'},
            'platform/log.h:1: platform must not include engine ("engine/scan.h")',
        )

    def test_implementations_of_the_platform_must_not_include_each_other(self):
        self.assert_broken(
            {"platform/linux/a.h": "", "platform/headless/b.h": '#include "platform/linux/a.h"\n'},
            "platform/headless/b.h:1: platform/headless must not include platform/linux " '("platform/linux/a.h")',
        )

    def test_only_main_of_the_command_line_names_linux(self):
        self.assert_broken(
            {"platform/linux/a.h": "", "cli/options.cpp": '#include "platform/linux/a.h"\n'},
            'cli/options.cpp:1: cli must not include platform/linux ("platform/linux/a.h")',
        )

    def test_main_of_the_window_joins_and_knows_no_engine(self):
        self.assert_whole(
            {
                "platform/qt/a.h": "",
                "update/b.h": "",
                "app/main.cpp": '#include "platform/qt/a.h"\n#include "update/b.h"\n',
            }
        )
        self.assert_broken(
            {"engine/a.h": "", "app/main.cpp": '#include "engine/a.h"\n'},
            'app/main.cpp:1: app/main.cpp must not include engine ("engine/a.h")',
        )

    def test_rooms_of_the_window_look_one_way(self):
        self.assert_whole(
            {
                "platform/qt/drawing/a.h": "#include <QWidget>\n",
                "platform/qt/texts.h": "",
                "platform/qt/panels/b.h": '#include "platform/qt/drawing/a.h"\n#include "platform/qt/texts.h"\n',
                "app/main.cpp": '#include "platform/qt/panels/b.h"\n',
                "tests/platform/qt/c_test.cpp": '#include "platform/qt/panels/b.h"\n',
            }
        )
        self.assert_broken(
            {"platform/qt/panels/b.h": "", "platform/qt/drawing/a.h": '#include "platform/qt/panels/b.h"\n'},
            "platform/qt/drawing/a.h:1: platform/qt/drawing must not include platform/qt/panels "
            '("platform/qt/panels/b.h")',
        )

    def test_window_calls_the_system_through_the_seam(self):
        for header in ("sys/stat.h", "fcntl.h", "dirent.h", "spawn.h", "unistd.h"):
            self.assert_broken(
                {"platform/qt/drawing/a.cpp": f"#include <{header}>\n"},
                f"platform/qt/drawing/a.cpp:1: platform/qt/drawing must not include <{header}>",
            )

    def test_product_must_not_include_tests(self):
        self.assert_broken(
            {"tests/support/a.h": "", "engine/scan.cpp": '#include "tests/support/a.h"\n'},
            'engine/scan.cpp:1: engine must not include tests/support ("tests/support/a.h")',
        )

    def test_angle_brackets_hide_no_room(self):
        self.assert_broken(
            {"platform/linux/a.h": "", "engine/scan.cpp": "#include <platform/linux/a.h>\n"},
            'engine/scan.cpp:1: engine must not include platform/linux ("platform/linux/a.h")',
        )

    def test_blanks_hide_no_include(self):
        self.assert_broken(
            {"cli/table.h": "", "engine/scan.cpp": '  #  include   "cli/table.h"  // needed\n'},
            'engine/scan.cpp:1: engine must not include cli ("cli/table.h")',
        )

    def test_third_party_header_in_the_wrong_room_is_found(self):
        for header in (
            "fcntl.h",
            "unistd.h",
            "sys/stat.h",
            "QString",
            "QtCore/QString",
            "spdlog/spdlog.h",
            "gtest/gtest.h",
        ):
            self.assert_broken(
                {"engine/scan.cpp": f"#include <{header}>\n"}, f"engine/scan.cpp:1: engine must not include <{header}>"
            )

    def test_third_party_header_in_its_room_passes(self):
        self.assert_whole(
            {
                "platform/linux/a.cpp": "#include <sys/stat.h>\n#include <unistd.h>\n",
                "platform/qt/b.cpp": "#include <QString>\n",
                "cli/main.cpp": "#include <CLI/CLI.hpp>\n",
                "tests/cli/c.cpp": "#include <gtest/gtest.h>\n",
            }
        )

    def test_relative_include_is_found(self):
        self.assert_broken(
            {"engine/a.h": "", "engine/scan.cpp": '#include "a.h"\n'},
            'engine/scan.cpp:1: "a.h" is no file of a room (includes start at the repository root)',
        )

    def test_include_of_no_file_is_found(self):
        self.assert_broken(
            {"engine/scan.cpp": '#include "engine/none.h"\n'},
            'engine/scan.cpp:1: "engine/none.h" is no file of a room (includes start at the ' "repository root)",
        )

    def test_folder_without_a_room_is_found(self):
        self.assert_broken(
            {"helpers/a.h": "#include <vector>\n"},
            "helpers/a.h:1: this folder is in no room; name it in docs/architecture.md",
        )

    def test_every_break_is_listed(self):
        code, lines = self.check(
            {
                "cli/table.h": "",
                "engine/a.cpp": '#include "cli/table.h"\n#include <unistd.h>\n',
                "engine/b.cpp": '#include "cli/table.h"\n',
            }
        )
        self.assertEqual(code, 1)
        self.assertEqual(len(lines), 3)

    def test_build_folder_and_hidden_folders_are_not_looked_at(self):
        self.assert_whole(
            {
                "build/dev/a.cpp": '#include "nowhere.h"\n',
                ".cache/b.cpp": '#include "nowhere.h"\n',
                "engine/scan.cpp": "#include <vector>\n",
            }
        )


if __name__ == "__main__":
    found = importlib.util.spec_from_file_location("checker", sys.argv.pop(1))
    CHECKER = importlib.util.module_from_spec(found)
    found.loader.exec_module(CHECKER)
    unittest.main()
