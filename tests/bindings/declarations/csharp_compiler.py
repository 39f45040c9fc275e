"""Compiles the C# declarations and compares the records as .NET lays them with those of the header.

csharp_compiler.py CSHARP_FILE LAYOUT_SOURCE OUTPUT_FOLDER LAYOUT_COMMAND...

Exit code 77 where there is no compiler ("mcs") or no runtime ("mono").
"""

import os
import shutil
import subprocess
import sys

sys.dont_write_bytecode = True

import public_header

SKIPPED = 77


def main(csharp_file, layout_source, folder, *layout_command):
    if not (shutil.which("mcs") and shutil.which("mono")):
        print("Skipped: mcs and mono are not installed.")
        return SKIPPED
    os.makedirs(folder, exist_ok=True)
    program = os.path.join(folder, "csharp_layout.exe")
    subprocess.run(
        ["mcs", "-warnaserror", "-warn:4", "-out:" + program, csharp_file, layout_source], check=True, timeout=120
    )
    managed = public_header.records(["mono", program])
    native = {
        name: {"size": record["size"], "offsets": {field: offset for field, (offset, _) in record["fields"].items()}}
        for name, record in public_header.records(layout_command).items()
    }
    if managed != native:
        print("The records of .NET and of the header differ:", managed, native, sep="\n")
        return 1
    print("Compiled; the records lie alike:", native)
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
