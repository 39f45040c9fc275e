"""Compares the Python declarations with the public header.

python_declarations.py HEADER DEFINITION_FILE BINDINGS_FOLDER LAYOUT_COMMAND...
"""

import ctypes
import importlib.util
import os
import sys
import types
import unittest

sys.dont_write_bytecode = True

import public_header

HEADER, DEFINITION_FILE, FOLDER = sys.argv[1:4]
LAYOUT_COMMAND = sys.argv[4:]


def load_bindings():
    specification = importlib.util.spec_from_file_location("arvmui", os.path.join(FOLDER, "arvmui.py"))
    module = importlib.util.module_from_spec(specification)
    specification.loader.exec_module(module)
    return module


arvmui = load_bindings()


def bytes_of(declared):
    if declared is None:
        return 0
    if declared in (arvmui.WideText, arvmui.NarrowText):
        return 8
    return ctypes.sizeof(declared)


def place(field):
    return [field.offset, field.size]


class PythonDeclarations(unittest.TestCase):
    maxDiff = None

    def test_functions_are_the_exports(self):
        self.assertEqual(sorted(arvmui.FUNCTIONS), sorted(public_header.exports(DEFINITION_FILE)))

    def test_types_have_the_sizes_of_the_header(self):
        declared = {
            name: (bytes_of(result), [bytes_of(argument) for argument in arguments])
            for name, (result, arguments) in arvmui.FUNCTIONS.items()
        }
        self.assertEqual(declared, public_header.signatures(HEADER))

    def test_text_has_the_width_of_its_function(self):
        narrow = (arvmui.NarrowText, arvmui.LocaleCallbackA, arvmui.FolderCallbackA, ctypes.c_char_p)
        wide = (arvmui.WideText, arvmui.LocaleCallbackW, arvmui.FolderCallbackW, ctypes.c_wchar_p)
        for name, (result, arguments) in arvmui.FUNCTIONS.items():
            used = [result, *(getattr(argument, "_type_", None) for argument in arguments), *arguments]
            if name.endswith("W"):
                self.assertFalse([type_ for type_ in used if type_ in narrow], name)
            else:
                self.assertFalse([type_ for type_ in used if type_ in wide], name)

    def test_records_lie_as_the_compiler_lays_them(self):
        declared = {
            record.__name__: {
                "size": ctypes.sizeof(record),
                "fields": {name: place(getattr(record, name)) for name, _ in record._fields_},
            }
            for record in (arvmui.LibraryDescriptor, arvmui.LocaleEntry, arvmui.LocaleRecord)
        }
        self.assertEqual(declared, public_header.records(LAYOUT_COMMAND))

    def test_loading_declares_every_function(self):
        library = types.SimpleNamespace(**{name: types.SimpleNamespace() for name in arvmui.FUNCTIONS})
        self.assertIs(arvmui.declare(library), library)
        for name, (result, arguments) in arvmui.FUNCTIONS.items():
            function = getattr(library, name)
            self.assertEqual((function.restype, function.argtypes), (result, arguments), name)

    def test_text_may_be_text_a_number_a_buffer_or_nothing(self):
        for kind, text in ((arvmui.WideText, "de"), (arvmui.NarrowText, b"de")):
            self.assertEqual(kind.from_param(text).value, text)
            self.assertEqual(kind.from_param(1031).value, 1031)
            self.assertIsNone(kind.from_param(None).value)
        buffer = ctypes.create_unicode_buffer(4)
        self.assertIs(arvmui.WideText.from_param(buffer), buffer)

    def test_text_of_the_other_width_is_refused(self):
        with self.assertRaises(TypeError):
            arvmui.WideText.from_param(b"de")
        with self.assertRaises(TypeError):
            arvmui.NarrowText.from_param("de")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
