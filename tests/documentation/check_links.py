# SPDX-License-Identifier: MIT
"""Every link within the project's pages has to have a target: a file, and a heading in it."""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]


def without_code(text):
    return re.sub(r"^```.*?^```$|`[^`\n]*`", "", text, flags=re.M | re.S)


def anchors(page):
    """The anchors that a forge generates for the page's headings."""
    headlines = re.findall(r"^#+ (.*)$", re.sub(r"^```.*?^```$", "", page, flags=re.M | re.S), re.M)
    return {re.sub(r"[^\w\- ]", "", headline.lower()).replace(" ", "-") for headline in headlines}


def main():
    pages = {path: path.read_text(encoding="utf-8") for path in [*ROOT.glob("*.md"), *ROOT.glob("*/*.md")]}
    links, faults = 0, []
    for path, text in pages.items():
        for link in re.findall(r"\]\(([^)\s]+)\)", without_code(text)):
            if re.match(r"[a-z]+:", link):
                continue
            links += 1
            file, _, anchor = link.partition("#")
            target = (path.parent / file).resolve() if file else path
            if not target.exists() or (anchor and anchor not in anchors(pages.get(target, ""))):
                faults.append(f"{path.relative_to(ROOT)}: {link} leads nowhere")
    for fault in faults:
        print(fault)
    print(f"{links} links on {len(pages)} pages, {len(faults)} faults")
    return 1 if faults or not links else 0


sys.exit(main())
