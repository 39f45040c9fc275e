"""Tests of pages.py and run_pages.py, without the library."""

import contextlib
import io
import pathlib
import sys
import tempfile
import unittest
import unittest.mock

import pages
import run_pages

# Stands in for the launcher of Windows programs: prints its arguments as paths, with Windows' line ends
# and a blank that nobody sees. It keeps a list of its calls.
LAUNCHER = r"""#!/bin/sh
echo "${1##*/} $ARVMUI_WINE_LOCALE" >>"$HOME/calls"
shift
echo "$*" >>"$HOME/calls"
for argument; do printf 'Z:%s\\%s \r\n' "$(pwd | tr / '\\')" "$argument"; done
"""


class PageTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name).resolve()

    def page(self, text):
        path = self.folder / "page.md"
        path.write_text(text, encoding="utf-8")
        return path


class ReadSteps(PageTest):
    def test_file(self):
        steps = pages.read_steps(self.page("x\n<!-- file: de/a.rc -->\n```rc\nText\n\nMore\n```\n"))
        self.assertEqual(steps, [pages.File(3, "de/a.rc", "Text\n\nMore\n")])

    def test_other_blocks_are_not_read(self):
        self.assertEqual(pages.read_steps(self.page("```bat\nC:\\first> x\n```\n```\nC:\\first> y\n```\n")), [])

    def test_commands_with_output(self):
        steps = pages.read_steps(self.page("```console\nC:\\first\\build> a /b\nout\n\n~/first$ c\n```\n"))
        self.assertEqual(steps, [
            pages.Command(2, "C:\\first\\build", "a /b", ["out", ""]),
            pages.Command(5, "~/first", "c", []),
        ])

    def test_shell_command_over_several_lines(self):
        steps = pages.read_steps(self.page("```console\n~$ a \\\n     b\n```\n"))
        self.assertEqual(steps, [pages.Command(2, "~", "a b", [])])

    def test_backslash_at_the_end_of_a_windows_command_is_its_own(self):
        steps = pages.read_steps(self.page("```console\nC:\\> dir a\\\nout\n```\n"))
        self.assertEqual(steps, [pages.Command(2, "C:\\", "dir a\\", ["out"])])

    def test_output_without_a_command(self):
        self.assertRaises(pages.PageError, pages.read_steps, self.page("```console\nout\n```\n"))

    def test_block_without_an_end(self):
        self.assertRaises(pages.PageError, pages.read_steps, self.page("```console\nC:\\> a\n"))

    def test_mark_without_a_block(self):
        self.assertRaises(pages.PageError, pages.read_steps, self.page("<!-- file: a -->\n"))


class Matches(unittest.TestCase):
    def test_same_lines(self):
        self.assertTrue(pages.matches(["a", "b"], ["a", "b"]))

    def test_other_line(self):
        self.assertFalse(pages.matches(["a", "b"], ["a", "c"]))

    def test_line_too_many(self):
        self.assertFalse(pages.matches(["a"], ["a", "b"]))

    def test_line_too_few(self):
        self.assertFalse(pages.matches(["a", "b"], ["a"]))

    def test_dots_stand_for_any_lines(self):
        self.assertTrue(pages.matches(["a", "...", "d"], ["a", "b", "c", "d"]))

    def test_dots_stand_for_no_line(self):
        self.assertTrue(pages.matches(["a", "...", "d"], ["a", "d"]))

    def test_dots_do_not_hide_what_follows(self):
        self.assertFalse(pages.matches(["...", "d"], ["a", "d", "e"]))


class FollowPage(PageTest):
    def setUp(self):
        super().setUp()
        self.home = self.folder / "home"
        (self.home / "first").mkdir(parents=True)
        launcher = self.folder / "launcher"
        launcher.write_text(LAUNCHER, encoding="utf-8")
        launcher.chmod(0o755)
        (self.home / "first" / "tool.exe").write_text("")
        self.reader = run_pages.Reader(self.home, str(launcher))

    def calls(self):
        file = self.home / "calls"
        return file.read_text(encoding="utf-8").splitlines() if file.exists() else []

    def faults(self, text):
        with contextlib.redirect_stdout(io.StringIO()):
            return run_pages.follow(self.page(text), self.reader)

    def test_program_with_its_output(self):
        self.assertEqual(self.faults("```console\nC:\\first> tool a\nC:\\first\\a\n```\n"), 0)

    def test_program_with_other_output(self):
        self.assertEqual(self.faults("```console\nC:\\first> tool a\nC:\\first\\b\n```\n"), 1)

    def test_argument_with_a_blank(self):
        self.assertEqual(self.faults('```console\nC:\\first> tool "a b"\nC:\\first\\a b\n```\n'), 0)

    def test_program_that_should_be_silent(self):
        self.assertEqual(self.faults("```console\nC:\\first> tool a\n```\n"), 1)

    def test_shell_output_that_is_not_on_the_page(self):
        self.assertEqual(self.faults("```console\n~/first$ echo a\n```\n"), 0)

    def test_shell_command_that_fails(self):
        self.assertEqual(self.faults("```console\n~/first$ exit 3\n```\n"), 1)

    def test_shell_has_the_home_folder(self):
        self.assertEqual(self.faults("```console\n~/first$ cd && pwd\n~\n```\n"), 0)

    def test_exit_code(self):
        text = "```console\n~/first$ echo a; exit 3\na\nC:\\first> echo %ERRORLEVEL%\n{}\n```\n"
        self.assertEqual(self.faults(text.format(3)), 0)
        self.assertEqual(self.faults(text.format(0)), 1)

    def test_programs_speak_english_whatever_the_machine_speaks(self):
        with unittest.mock.patch.dict("os.environ", ARVMUI_WINE_LOCALE="de_DE.UTF-8"):
            reader = run_pages.Reader(self.home, self.reader.launcher)
        reader.type(pages.Command(1, "C:\\first", "tool a", []))
        self.assertEqual(self.calls(), ["tool.exe C.UTF-8", "a"])

    def test_tidying_removes_stored_lists(self):
        (self.home / "arvmui/bin").mkdir(parents=True)
        (self.home / "arvmui/bin/muitool.exe").write_text("")
        self.reader.tidy()
        self.assertEqual(self.calls()[1::2], ["locale clear", "locale clear --machine"])

    def test_tidying_without_the_library(self):
        self.reader.tidy()
        self.assertEqual(self.calls(), [])

    def test_file_is_written(self):
        self.faults("<!-- file: de/a.rc -->\n```rc\nÜ\n```\n```console\n~/first$ cat de/a.rc\nÜ\n```\n")
        self.assertEqual((self.home / "first/de/a.rc").read_bytes(), "Ü\n".encode())

    def test_later_commands_run_after_a_fault(self):
        self.assertEqual(self.faults("```console\n~$ echo a\nb\n~$ echo c\nd\n```\n"), 2)

    def test_folder_that_is_missing(self):
        self.assertRaises(pages.PageError, self.faults, "```console\nC:\\other> tool\n```\n")

    def test_page_without_commands(self):
        self.assertRaises(pages.PageError, self.faults, "Text\n")


class MakeHome(PageTest):
    def test_begins_anew_with_the_source_tree(self):
        source, build, home = (self.folder / name for name in ("source", "build", "home"))
        for folder in (source / "docs", source / "build", build, home / "old"):
            folder.mkdir(parents=True)
        (build / "made").write_text("")
        run_pages.make_home(home, source, build)
        self.assertEqual(sorted(path.name for path in home.iterdir()), ["arvmui-source", "first"])
        self.assertTrue((home / "arvmui-source/docs").is_dir())
        self.assertTrue((home / "arvmui-source/build/mingw-release/made").is_file())


if __name__ == "__main__":
    sys.exit(unittest.main())
