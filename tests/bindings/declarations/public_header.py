"""What the public header, the list of exports and the compiler say: the yardstick for the bindings."""

import json
import re
import subprocess

# Bytes that a type takes as an argument or result; pointers apart.
TYPE_BYTES = {
    "void": 0,
    "BOOL": 4,
    "DWORD": 4,
    "HANDLE": 8,
    "HINSTANCE": 8,
    "HMODULE": 8,
    "HWND": 8,
    "LANGID": 2,
    "SIZE_T": 8,
    "UINT": 4,
    "ULONG": 4,
    "WORD": 2,
    "int": 4,
}


def bytes_of(declaration):
    """Bytes of a type, or of a parameter with its name."""
    if "*" in declaration or "Callback" in declaration:
        return 8
    words = [word for word in re.findall(r"\w+", declaration) if word != "const"]
    return TYPE_BYTES[words[0]]


def exports(definition_file):
    """Names in the order of the list of exports."""
    with open(definition_file, encoding="utf-8") as file:
        return re.findall(r"^\s+(ARVMUI_\w+)\s*$", file.read(), re.MULTILINE)


def signatures(header):
    """Function name -> (bytes of the result, [bytes of each parameter])."""
    with open(header, encoding="utf-8") as file:
        text = re.sub(r"/\*.*?\*/", " ", file.read(), flags=re.DOTALL)
    found = {}
    pattern = r"ARVMUI_API\s+([\w\s*]+?)\s*ARVMUI_CALL(?:BACK)?\s+(ARVMUI_\w+)\s*\(([^)]*)\)\s*;"
    for result, name, parameters in re.findall(pattern, text):
        types = [] if parameters.strip() == "void" else parameters.split(",")
        found[name] = (bytes_of(result), [bytes_of(type_) for type_ in types])
    return found


def records(layout_command):
    """Record name -> {"size": bytes, "fields": {name: [offset, size]}}, as a compiled program prints it."""
    output = subprocess.run(layout_command, stdout=subprocess.PIPE, check=True, timeout=120).stdout
    return json.loads(output.decode("utf-8"))
