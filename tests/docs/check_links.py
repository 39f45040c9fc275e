"""Follows the links of the pages: every file and every heading that a page points to is there.

    check_links.py SOURCE_TREE
"""

import pathlib
import re
import sys
import urllib.parse

LINK = re.compile(r"\]\((?P<target>[^)\s]+)\)")
HEADING = re.compile(r"^#+ (?P<title>.+)$", re.MULTILINE)
FENCED = re.compile(r"^```.*?^```$", re.MULTILINE | re.DOTALL)
NO_ANCHOR_LETTER = re.compile(r"[^\w\- ]")


def read_text(page: pathlib.Path):
    """A page without its blocks of code, where brackets are no links."""
    return FENCED.sub("", page.read_text(encoding="utf-8"))


def anchors(page: pathlib.Path):
    """What links to headings of a page are called."""
    titles = (match["title"] for match in HEADING.finditer(read_text(page)))
    return {NO_ANCHOR_LETTER.sub("", title.lower()).replace(" ", "-") for title in titles}


def find_broken_links(page: pathlib.Path):
    """Targets of a page that lead nowhere."""
    broken = []
    for match in LINK.finditer(read_text(page)):
        target = match["target"]
        if urllib.parse.urlparse(target).scheme:
            continue  # other machines
        name, _, anchor = target.partition("#")
        file = (page.parent / name).resolve() if name else page
        if not file.exists() or (anchor and file.suffix == ".md" and anchor not in anchors(file)):
            broken.append(target)
    return broken


def main(root: pathlib.Path):
    pages = sorted([*root.glob("*.md"), *(root / "docs").glob("*.md")])
    broken = 0
    for page in pages:
        for target in find_broken_links(page):
            print(f"{page.relative_to(root)}: {target} leads nowhere")
            broken += 1
    print(f"{len(pages)} pages, {broken} broken links")
    return 1 if broken or not pages else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1]).resolve()))
