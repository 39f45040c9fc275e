"""Reads the pages of docs/: what they ask to be written and typed, and what they say comes back.

A page marks a block as a file by a comment, which readers do not see, on the line before the block:

    <!-- file: de/firstUI.rc -->

A block marked as "console" is a transcript. Lines with a prompt are commands, the lines behind them
the output, in which "..." alone on a line stands for any number of lines:

    C:\\first> first          a program, run as Windows runs it
    ~/first$ cmake -B build   a command for the shell

Other blocks, such as those marked as "bat", are only read by people.
"""

import dataclasses
import pathlib
import re

FILE_MARK = re.compile(r"^<!-- file: (?P<name>\S+) -->$")
FENCE = re.compile(r"^```(?P<kind>[a-z]*)$")
PROMPT = re.compile(r"^(?P<folder>C:\\[^>]*|~[^$ ]*)(?P<sign>[>$]) (?P<command>.*)$")
ANY_LINES = "..."


@dataclasses.dataclass
class File:
    line: int
    name: str
    text: str


@dataclasses.dataclass
class Command:
    line: int
    folder: str  # as the prompt names it
    command: str
    output: list[str]

    def is_windows(self):
        return not self.folder.startswith("~")


class PageError(Exception):
    pass


def read_steps(page: pathlib.Path):
    """The files and commands of a page, in their order."""
    steps = []
    file_name = None
    for line, kind, block in _blocks(page):
        if kind is None:
            file_name = block
        elif file_name is not None:
            steps.append(File(line, file_name, "".join(text + "\n" for text in block)))
            file_name = None
        elif kind == "console":
            steps.extend(_read_transcript(page, line, block))
    if file_name is not None:
        raise PageError(f"{page.name}: no block follows the mark of {file_name}")
    return steps


def _blocks(page):
    """Yields (line, kind, lines) for each fenced block and (line, None, name) for each mark."""
    fence, start, block = None, 0, []
    for number, text in enumerate(page.read_text(encoding="utf-8").splitlines(), 1):
        if fence is None:
            mark = FILE_MARK.match(text)
            opening = FENCE.match(text)
            if mark:
                yield number, None, mark["name"]
            elif opening:
                fence, start, block = opening["kind"], number, []
        elif text == "```":
            yield start, fence, block
            fence = None
        else:
            block.append(text)
    if fence is not None:
        raise PageError(f"{page.name}({start}): the block does not end")


def _read_transcript(page, start, block):
    commands = []
    lines = enumerate(block, start + 1)
    for number, text in lines:
        prompt = PROMPT.match(text)
        if prompt:
            command = prompt["command"]
            while command.endswith("\\") and prompt["sign"] == "$":
                command = command[:-1] + next(lines)[1].strip()
            commands.append(Command(number, prompt["folder"], command, []))
        elif commands:
            commands[-1].output.append(text)
        else:
            raise PageError(f"{page.name}({number}): output without a command")
    return commands


def matches(expected: list[str], actual: list[str]) -> bool:
    """Whether lines are those expected."""
    if not expected:
        return not actual
    if expected[0] == ANY_LINES:
        return any(matches(expected[1:], actual[skipped:]) for skipped in range(len(actual) + 1))
    return bool(actual) and actual[0] == expected[0] and matches(expected[1:], actual[1:])
