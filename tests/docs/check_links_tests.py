"""Tests of check_links.py."""

import pathlib
import tempfile
import unittest

import check_links


class BrokenLinks(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.write("other.md", "# `.mui` files & more\n## What it does, and why\n")

    def write(self, name, text):
        (self.folder / name).write_text(text, encoding="utf-8")
        return self.folder / name

    def broken(self, text):
        return check_links.find_broken_links(self.write("page.md", text))

    def test_file_that_is_there(self):
        self.assertEqual(self.broken("[a](other.md) ![b](other.md)"), [])

    def test_file_that_is_missing(self):
        self.assertEqual(self.broken("[a](nothing.md)"), ["nothing.md"])

    def test_picture_that_is_missing(self):
        self.assertEqual(self.broken("![](images/nothing.png)"), ["images/nothing.png"])

    def test_heading_with_punctuation(self):
        self.assertEqual(self.broken("[a](other.md#what-it-does-and-why)"), [])

    def test_heading_with_code(self):
        self.assertEqual(self.broken("[a](other.md#mui-files--more)"), [])

    def test_heading_that_is_missing(self):
        self.assertEqual(self.broken("[a](other.md#what)"), ["other.md#what"])

    def test_heading_of_the_page_itself(self):
        self.assertEqual(self.broken("# Here\n[a](#here) [b](#there)"), ["#there"])

    def test_heading_in_code_is_none(self):
        self.assertEqual(self.broken("```sh\n# Comment\n```\n[a](#comment)"), ["#comment"])

    def test_link_in_code_is_none(self):
        self.assertEqual(self.broken("```c\ncall[0](nothing.md)\n```\n"), [])

    def test_other_machines_are_not_asked(self):
        self.assertEqual(self.broken("[a](https://example.invalid/nothing)"), [])


if __name__ == "__main__":
    unittest.main()
