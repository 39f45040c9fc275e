"""Compares the C# declarations with the public header.

csharp_declarations.py HEADER DEFINITION_FILE CSHARP_FILE LAYOUT_COMMAND...
"""

import re
import sys
import unittest

sys.dont_write_bytecode = True

import public_header

HEADER, DEFINITION_FILE, CSHARP_FILE = sys.argv[1:4]
LAYOUT_COMMAND = sys.argv[4:]

# Bytes of a value that is passed or stored as it is; everything else is passed as a pointer.
VALUE_BYTES = {"void": 0, "bool": 4, "int": 4, "uint": 4, "ushort": 2, "IntPtr": 8, "UIntPtr": 8}
ELEMENT_BYTES = {"char[]": 2, "byte[]": 1, "string": 2}
CALLBACKS = {
    "LocaleCallbackW": "Unicode",
    "LocaleCallbackA": "Ansi",
    "FolderCallbackW": "Unicode",
    "FolderCallbackA": "Ansi",
}
POINTERS = {"string", "StringBuilder", "char[]", "byte[]", "IntPtr[]", "ResourceLibraryHandle", *CALLBACKS}


def bytes_of(parameter):
    """Bytes of a type, or of a parameter with its modifiers and name."""
    words = re.sub(r"\[(In|Out|In, Out)\]", "", parameter).split()
    if words[0] in ("out", "ref") or words[0] in POINTERS:
        return 8
    return VALUE_BYTES[words[0]]


def parameters_of(text):
    return [part for part in re.split(r",(?![^\[]*\])", text) if part.strip()]


class Function:
    def __init__(self, attribute, result, name, parameters):
        self.attribute = attribute
        self.name = name
        self.parameters = parameters_of(parameters)
        self.signature = (bytes_of(result), [bytes_of(parameter) for parameter in self.parameters])

    def has_text(self):
        return any(re.search(r"\b(string|StringBuilder|char)\b", parameter) for parameter in self.parameters)


def functions(text):
    pattern = r"\[DllImport\(Library([^\]]*)\)\]\s*public static extern (\w+) (ARVMUI_\w+)\(([^)]*)\);"
    return [Function(*found) for found in re.findall(pattern, text)]


def place(offset, alignment):
    return (offset + alignment - 1) // alignment * alignment


def layout(body):
    """Size and fields of a sequential structure."""
    offset, largest, fields = 0, 1, {}
    pattern = r"(?:\[MarshalAs\(UnmanagedType\.(\w+), SizeConst = (\d+)\)\] )?public (\S+) (\w+);"
    for _, count, type_, name in re.findall(pattern, body):
        element = ELEMENT_BYTES[type_] if count else VALUE_BYTES[type_]
        offset = place(offset, element)
        fields[name] = [offset, element * int(count or 1)]
        offset += fields[name][1]
        largest = max(largest, element)
    return {"size": place(offset, largest), "fields": fields}


def structures(text):
    pattern = (
        r"\[StructLayout\(LayoutKind\.Sequential, CharSet = CharSet\.Unicode\)\]\s*"
        r"public struct (\w+)\s*\{(.*?)\n    \}"
    )
    return {name: layout(body) for name, body in re.findall(pattern, text, re.DOTALL)}


class CSharpDeclarations(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        with open(CSHARP_FILE, encoding="utf-8") as file:
            cls.text = file.read()
        cls.functions = functions(cls.text)

    def test_functions_are_the_exports(self):
        declared = sorted(function.name for function in self.functions)
        self.assertEqual(declared, sorted(public_header.exports(DEFINITION_FILE)))

    def test_types_have_the_sizes_of_the_header(self):
        declared = {function.name: function.signature for function in self.functions}
        self.assertEqual(declared, public_header.signatures(HEADER))

    def test_functions_keep_the_error_and_are_found_by_their_exact_name(self):
        for function in self.functions:
            self.assertIn("SetLastError = true", function.attribute, function.name)
            self.assertIn("ExactSpelling = true", function.attribute, function.name)

    def test_text_has_the_width_of_its_function(self):
        for function in self.functions:
            character_set = re.search(r"CharSet\.(\w+)", function.attribute)
            if function.name.endswith("W"):
                self.assertEqual(character_set and character_set[1], "Unicode", function.name)
            elif function.has_text():
                self.assertEqual(character_set and character_set[1], "Ansi", function.name)

    def test_callbacks_have_the_width_of_their_function(self):
        pattern = (
            r"\[UnmanagedFunctionPointer\(CallingConvention\.Winapi, CharSet = CharSet\.(\w+)\)\]\s*"
            r"public delegate uint (\w+)\(string \w+, IntPtr context\);"
        )
        declared = {name: character_set for character_set, name in re.findall(pattern, self.text)}
        self.assertEqual(declared, CALLBACKS)
        for function in self.functions:
            for callback in re.findall(r"\w+Callback([WA])", ",".join(function.parameters)):
                self.assertTrue(function.name.endswith(callback), function.name)

    def test_records_lie_as_the_compiler_lays_them(self):
        self.assertEqual(structures(self.text), public_header.records(LAYOUT_COMMAND))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
