#!/usr/bin/env python3
"""Checks what people read: README.md and its neighbours, docs/*.md and the manual as it was built.

    check-docs.py links MANUAL      every link, anchor and picture leads somewhere; the manual needs
                                    no other file; words that it prints as the panel's are the panel's
    check-docs.py spelling MANUAL   British spelling, with the words of docs/words.txt besides
"""

import html.parser
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
FENCE = re.compile(r"^```.*?^```", re.M | re.S)


def pages():
    front = ("README.md", "CONTRIBUTING.md", "CHANGELOG.md")
    return [*(ROOT / name for name in front), *sorted((ROOT / "docs").glob("*.md"))]


def written_by_hand(text):
    """A Markdown page without the tables that a program writes."""
    return re.sub(r"<!-- table: .*?<!-- end -->", "", text, flags=re.S)


def anchors(text):
    """The anchors that a Markdown page's headings give."""
    found = set()
    for heading in re.findall(r"^#+ (.*)$", FENCE.sub("", text), re.M):
        plain = re.sub(r"[^\w\- ]", "", heading.strip().lower())
        found.add(plain.replace(" ", "-"))
    return found


def check_markdown_links():
    for page in pages():
        text = FENCE.sub("", page.read_text())
        for target in re.findall(r"\]\(([^)\s]+)\)", text):
            if re.match(r"[a-z]+:", target):
                continue
            path, _, anchor = target.partition("#")
            file = (page.parent / path).resolve() if path else page
            if not file.exists():
                yield f"{page.name}: {target} is not there"
            elif anchor and file.suffix == ".md" and anchor not in anchors(file.read_text()):
                yield f"{page.name}: {target} has no such heading"
        # Paths in code, such as `docs/hosts.md`, as far as they begin with one of our folders.
        for path in re.findall(r"`([\w-]+/[\w./-]+)`", text):
            folder = path.split("/")[0]
            if folder not in ("build", "out", "lib", "share", "bin") and (ROOT / folder).is_dir():
                # A class stands for its files.
                if not any((ROOT / (path + end)).exists() for end in ("", ".h")) and "*" not in path:
                    yield f"{page.name}: `{path}` is not there"


class Page(html.parser.HTMLParser):
    VOID = {"meta", "img", "br", "link", "hr", "input"}

    def __init__(self):
        super().__init__()
        self.ids, self.targets, self.faults, self.words, self.open = [], [], [], [], []

    def handle_starttag(self, tag, attributes):
        given = dict(attributes)
        if "id" in given:
            self.ids.append(given["id"])
        if tag == "a":
            self.targets.append(given.get("href", ""))
        if tag == "img":
            if not given.get("src", "").startswith("data:image/png;base64,"):
                self.faults.append("a picture is not embedded")
            if not given.get("alt"):
                self.faults.append("a picture has no words in place of it")
        if tag in ("script", "link"):
            self.faults.append(f"<{tag}> is not wanted")
        if tag.startswith("x-"):
            self.faults.append(f"<{tag}> was not filled in")
        if tag not in self.VOID:
            self.open.append((tag, given.get("class")))

    def handle_endtag(self, tag):
        if not self.open or self.open[-1][0] != tag:
            self.faults.append(f"</{tag}> at line {self.getpos()[0]} closes nothing")
        else:
            self.open.pop()

    def handle_data(self, data):
        inside = {tag for tag, _ in self.open}
        classes = {name for _, name in self.open}
        if inside & {"style", "code", "pre", "kbd", "title"} or classes & {"label", "control"}:
            return
        # What the program's own tables say is spelt as the panel spells it.
        if not classes & {"targets", "scales", "chords", "bends", "host", "keys"}:
            self.words.append(data)


def read_manual(path):
    page = Page()
    page.feed(pathlib.Path(path).read_text())
    return page


def check_manual_links(path):
    page = read_manual(path)
    yield from page.faults
    for double in {name for name in page.ids if page.ids.count(name) > 1}:
        yield f"the anchor {double} stands twice"
    for target in page.targets:
        if not target.startswith("#") or target[1:] not in page.ids:
            yield f"the link {target} leads nowhere"


def check_labels():
    printed = set()
    for file in (ROOT / "skin/draw").glob("*.cpp"):
        for line in file.read_text().splitlines():
            printed.update(re.findall(r'"((?:[^"\\]|\\.)*)"', line.replace("'\"'", "")))
    for chapter in sorted((ROOT / "docs/manual").glob("*.html")):
        for label in re.findall(r"<x-label>(.*?)</x-label>", chapter.read_text()):
            words = label.replace("-", "- ").split()
            if label not in printed and not all(word in printed for word in words):
                yield f"{chapter.name}: the panel says nowhere {label}"


def misspelt(text):
    answer = subprocess.run(
        ["aspell", "list", "--lang=en_GB", "--encoding=utf-8", "--ignore=2",
         f"--personal={ROOT / 'docs/words.txt'}"],
        input=text, capture_output=True, text=True, check=True)
    return sorted(set(answer.stdout.split()))


def check_spelling(manual):
    for page in pages():
        text = FENCE.sub("", written_by_hand(page.read_text()))
        text = re.sub(r"^    .*$", "", text, flags=re.M)  # code
        text = re.sub(r"`[^`]*`|\]\([^)]*\)|<[^>]*>|https?://\S+", " ", text)
        for word in misspelt(text):
            yield f"{page.name}: {word}"
    for word in misspelt(" ".join(read_manual(manual).words)):
        yield f"the manual: {word}"


def main():
    what, manual = sys.argv[1:]
    if what == "links":
        faults = [*check_markdown_links(), *check_manual_links(manual), *check_labels()]
    else:
        faults = list(check_spelling(manual))
    for fault in faults:
        print(fault)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
