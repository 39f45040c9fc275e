#!/usr/bin/env python3
"""Writes what Python's configparser reads from settings files: expected_settings.py FILE...

Beside each FILE a FILE.expected is written: the entries about which configparser and the library agree,
one a line, fields set off by tabs, with backslash escapes:

    section NAME                a section, in the order of the file
    keys    SECTION KEY...      all keys of a section, in order
    value   SECTION KEY VALUE

Where the two grammars differ, an entry is left out, or, where the difference is only in how the same
text is written, carried over; docs/settings-files.md names the differences. Lines that begin with "#"
say how many entries were left out and why.
"""

import collections
import configparser
import re
import sys

LONGEST_TEXT = 270  # characters of a name or value
MALFORMED_LINES = 2  # a third one ends the library's reading
NO_SECTION = "\0before all sections"


def as_library_comments(lines):
    """Lines of comments that begin with "#" begin with ";" instead: a comment to both."""
    return [re.sub(r"^(\s*)#", r"\1;", line) for line in lines]


def is_malformed(line):
    """Whether the library passes over the line as malformed."""
    text = line.strip()
    if text == "" or text.startswith(";"):
        return False
    if text.startswith("["):
        behind = text.partition("]")[2].strip()
        return behind != "" and not behind.startswith(";")
    key, equals, value = text.partition("=")
    if not equals or not key:
        return True
    value = value.strip()
    if value[:1] not in ("'", '"'):
        return False
    behind = re.sub(f"^{value[0]}(?:[^{value[0]}]|{value[0]}{value[0]})*{value[0]}?", "", value).strip()
    return behind != "" and not behind.startswith(";")


def readable_lines(lines):
    """The lines before the malformed one that ends the library's reading, and whether that is all."""
    left = MALFORMED_LINES
    for number, line in enumerate(lines):
        if is_malformed(line):
            if left == 0:
                return lines[:number], False
            left -= 1
    return lines, True


def parse(lines):
    parser = configparser.RawConfigParser(
        delimiters=("=",),
        comment_prefixes=(";",),
        inline_comment_prefixes=None,
        strict=False,
        allow_no_value=True,
        empty_lines_in_values=False,
        default_section="\0no defaults",
    )
    parser.optionxform = str
    parser.read_file([f"[{NO_SECTION}]\n"] + [line + "\n" for line in lines])
    return parser


def repeated(names):
    """The names, in lower case, that occur more than once."""
    counts = collections.Counter(name.lower() for name in names)
    return {name for name, count in counts.items() if count > 1}


def section_headers(lines):
    """What stands in brackets at the beginning of lines."""
    return [match[1] for match in (re.match(r"\s*\[([^\]]*)\]?", line) for line in lines) if match]


def keys_in_lines(lines):
    """The keys of each line, with the section that the line stands in."""
    section = NO_SECTION
    for line in lines:
        text = line.strip()
        if text.startswith("["):
            section = section_headers([text])[0]
        elif text and not text.startswith(";"):
            yield section, text.partition("=")[0].rstrip()


def reason_to_leave_out(key, value):
    """Why an entry is read in two ways; None if both read the same."""
    if value is None:
        return "without an equals sign"
    if "\n" in value:
        return "continued on further lines"
    if len(key) > LONGEST_TEXT or len(value) > LONGEST_TEXT:
        return f"longer than {LONGEST_TEXT} characters"
    if any(ord(character) > 0xFFFF for character in key + value):
        return "with characters outside the first plane"
    return None


def library_text(value):
    """The value without its quotes, where the whole of it is quoted; None where that is not plain to see."""
    if value[:1] not in ("'", '"'):
        return value
    match = re.fullmatch(r"""(?:"([^"]*)"|'([^']*)')(?:\s*;.*)?""", value)
    return (match[1] or match[2] or "") if match else None


def escape(text):
    return text.replace("\\", "\\\\").replace("\t", "\\t").replace("\r", "\\r").replace("\n", "\\n")


def expected_lines(text):
    # Lines end in a line feed only; a carriage return before it is white space to both.
    lines, complete = readable_lines(as_library_comments(text.split("\n")))
    parser = parse(lines)
    headers = section_headers(lines)
    repeated_sections = repeated(headers)
    keys_of = collections.defaultdict(list)
    for section, key in keys_in_lines(lines):
        keys_of[section].append(key)

    left_out = collections.Counter()
    if not complete:
        left_out["behind the third malformed line"] += 1
    result = []
    if complete:
        result += [("section", header) for header in headers]
    for section in parser.sections():
        entries = parser.items(section)
        if section == NO_SECTION:
            left_out["before the first section"] += len(entries)
            continue
        if section.lower() in repeated_sections:
            left_out["in a repeated section"] += len(entries)
            continue
        if section not in headers:
            left_out["in a section with a bracket in its name"] += len(entries)
            continue
        repeated_keys = repeated(keys_of[section])
        agreed = 0
        for key, value in entries:
            reason = "with a repeated key" if key.lower() in repeated_keys else reason_to_leave_out(key, value)
            if reason is None:
                value = library_text(value)
                reason = "partly quoted" if value is None else None
            if reason is None:
                result.append(("value", section, key, value))
                agreed += 1
            else:
                left_out[reason] += 1
        if agreed == len(entries) and complete:
            result.append(("keys", section, *(key for key, _ in entries)))
    comments = [f"# left out {reason}: {count}" for reason, count in sorted((+left_out).items())]
    return comments + ["\t".join(escape(field) for field in fields) for fields in result]


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    for path in sys.argv[1:]:
        with open(path, "rb") as file:
            text = file.read().decode("utf-8")
        with open(path + ".expected", "w", encoding="utf-8", newline="\n") as file:
            file.write("\n".join(expected_lines(text)) + "\n")


if __name__ == "__main__":
    main()
