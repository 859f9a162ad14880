#!/usr/bin/env python3
"""Extract the trees of the 49 property-sheet layouts from the console's design notes.

Usage:
    extract-sheets.py NOTES.md > tests/data/schede/layout.tsv

Each layout starts at a bold heading "Layout N, ..." and is the bulleted tree
that follows it.  One output line per tree entry, in creation order:

    layout <TAB> depth <TAB> caption id <TAB> kind

depth 0 is the category (caption id 0 when the category takes the selected
node's caption), kind is "G" for an entry that holds others and "T" for a
leaf.  An entry with children is a group even where the notes forget the word
"group".  The exit status is 1 when a heading has no tree, a bullet carries no
caption id, or a layout number is missing or repeated.
"""
import re
import sys

HEADING = re.compile(r'^\*\*Layout (\d+),')
BULLET = re.compile(r'^( *)- (.*)$')
CAPTION = re.compile(r'"[^\n]*"\s*\((\d+)\)\s*$')


def layouts(lines):
    current, entries = None, []
    for line in lines:
        line = line.rstrip('\n').rstrip()
        m = HEADING.match(line)
        if m:
            if current is not None:
                yield current, entries
            current, entries = int(m.group(1)), []
            continue
        if current is None:
            continue
        b = BULLET.match(line)
        if b:
            entries.append((len(b.group(1)) // 2, b.group(2)))
        elif line.startswith('**') and entries:
            yield current, entries
            current, entries = None, []
    if current is not None:
        yield current, entries


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    with open(sys.argv[1], encoding='utf-8') as f:
        found = list(layouts(f))
    errors = 0
    numbers = [n for n, _ in found]
    for n in range(1, 50):
        if numbers.count(n) != 1:
            print(f'layout {n} found {numbers.count(n)} times', file=sys.stderr)
            errors += 1
    out = []
    for number, entries in sorted(found):
        if not entries:
            print(f'layout {number}: no tree', file=sys.stderr)
            errors += 1
        for i, (depth, text) in enumerate(entries):
            if depth == 0:
                m = CAPTION.search(text)
                caption = int(m.group(1)) if m and text.startswith('category "') else 0
            else:
                m = CAPTION.search(text)
                if not m:
                    print(f'layout {number}: no caption id in "{text}"', file=sys.stderr)
                    errors += 1
                    continue
                caption = int(m.group(1))
            parent = i + 1 < len(entries) and entries[i + 1][0] > depth
            kind = 'G' if parent or text.startswith('group ') or depth == 0 else 'T'
            out.append(f'{number}\t{depth}\t{caption}\t{kind}')
    print('\n'.join(out))
    sys.exit(1 if errors else 0)


if __name__ == '__main__':
    main()
