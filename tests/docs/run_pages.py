"""Does what pages of docs/ tell their readers to do, and compares what comes back.

    run_pages.py --home FOLDER --source TREE --build FOLDER --launcher wine-run [--after PAGE]... PAGE...

The home folder stands for "C:" and "~" of the pages: "C:\\first" and "~/first" are one folder in it.
It begins with the source tree, as far as pages need it, and nothing else. Pages named by --after are
done first without being compared. What is read and run, pages.py says.
"""

import argparse
import os
import pathlib
import re
import shutil
import subprocess
import sys

import pages

PROJECT = "first"  # the folder in which pages write their files
SDK = "arvmui"
SOURCE = "arvmui-source"
WORD = re.compile(r'(?:[^\s"]|"[^"]*")+')


class Reader:
    """Somebody who types what a page says."""

    def __init__(self, home: pathlib.Path, launcher: str):
        self.home = home
        self.launcher = launcher
        self.last_code = 0
        # The pages are written for an English Windows.
        self.environment = dict(os.environ, HOME=str(home), ARVMUI_WINE_LOCALE="C.UTF-8")

    def write(self, step: pages.File):
        path = self.home / PROJECT / step.name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(step.text, encoding="utf-8", newline="\n")

    def type(self, step: pages.Command):
        """Runs a command; returns its output as lines."""
        if step.command == "echo %ERRORLEVEL%":
            return [str(self.last_code)]
        folder = self._folder(step.folder)
        if step.is_windows():
            arguments = self._windows_command(folder, step.command)
        else:
            arguments = ["sh", "-c", step.command]
        result = subprocess.run(
            arguments, cwd=folder, env=self.environment, stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
        self.last_code = result.returncode
        return self._as_on_the_page(result.stdout)

    def tidy(self):
        """Takes back what pages let their readers store outside of the home folder."""
        tool = self.home / SDK / "bin" / "muitool.exe"
        for scope in ([], ["--machine"]) if tool.is_file() else ():
            subprocess.run(
                [self.launcher, str(tool), "locale", "clear", *scope], env=self.environment,
                stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False)

    def _folder(self, prompt):
        folder = self.home / prompt.removeprefix("C:").removeprefix("~").replace("\\", "/").strip("/")
        if not folder.is_dir():
            raise pages.PageError(f"there is no folder {prompt}")
        return folder

    def _windows_command(self, folder, command):
        name, *arguments = [word.replace('"', "") for word in WORD.findall(command)]
        for place in (folder, self.home / SDK / "bin"):
            program = place / (name + ".exe")
            if program.is_file():
                return [self.launcher, str(program), *arguments]
        return [self.launcher, "cmd", "/c", name, *arguments]

    def _as_on_the_page(self, output: bytes):
        text = output.decode("utf-8", errors="backslashreplace")
        text = text.replace("Z:" + str(self.home).replace("/", "\\"), "C:").replace(str(self.home), "~")
        lines = [line.rstrip() for line in text.split("\n")]
        while lines and not lines[-1]:
            lines.pop()
        return lines


def find_fault(reader: Reader, step: pages.Command):
    """Does a step; returns what is wrong, or None."""
    actual = reader.type(step)
    if step.output:
        right = pages.matches(step.output, actual)
    else:
        # The chatter of builds is not on the page; a program that says nothing has to be silent.
        right = reader.last_code == 0 and not (step.is_windows() and actual)
    if right:
        return None
    shown = "\n".join("    " + line for line in actual)
    return f"{step.folder}> {step.command}\n  ended with {reader.last_code} and said\n{shown}"


def follow(page: pathlib.Path, reader: Reader, compare=True):
    """Does all steps of a page; returns the number of faults."""
    steps = pages.read_steps(page)
    if not any(isinstance(step, pages.Command) for step in steps):
        raise pages.PageError(f"{page.name}: no command was found")
    faults = 0
    for step in steps:
        if isinstance(step, pages.File):
            reader.write(step)
            continue
        fault = find_fault(reader, step)
        if fault and compare:
            print(f"{page.name}({step.line}): {fault}")
            faults += 1
    print(f"{page.name}: {len(steps)} steps, {faults} faults")
    return faults


def make_home(home: pathlib.Path, source: pathlib.Path, build: pathlib.Path):
    """An empty home with the source tree as one who has built it sees it."""
    if home.exists():
        shutil.rmtree(home)
    (home / PROJECT).mkdir(parents=True)
    tree = home / SOURCE
    (tree / "build").mkdir(parents=True)
    for entry in source.iterdir():
        if entry.name not in ("build", ".git"):
            (tree / entry.name).symlink_to(entry)
    (tree / "build" / "mingw-release").symlink_to(build)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--home", type=pathlib.Path, required=True)
    parser.add_argument("--source", type=pathlib.Path, required=True)
    parser.add_argument("--build", type=pathlib.Path, required=True)
    parser.add_argument("--launcher", required=True)
    parser.add_argument("--after", type=pathlib.Path, action="append", default=[])
    parser.add_argument("pages", type=pathlib.Path, nargs="+")
    options = parser.parse_args()

    make_home(options.home.resolve(), options.source.resolve(), options.build.resolve())
    reader = Reader(options.home.resolve(), options.launcher)
    try:
        for page in options.after:
            follow(page, reader, compare=False)
        faults = sum(follow(page, reader) for page in options.pages)
    except pages.PageError as error:
        sys.exit(str(error))
    finally:
        reader.tidy()
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
