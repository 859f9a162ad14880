#!/usr/bin/env python3
"""Collect the (string id, text) pairs quoted in the console's design notes.

Usage:
    extract-strings.py NOTES.md               print the pairs found, as "id<TAB>text"
    extract-strings.py NOTES.md --check TSV   compare a string table with them

Conflicts (one id quoted with two texts) and, with --check, every
difference from the table are written to stderr; the exit status is 1
when there is any.  The quoted texts are the reference: the table has to
carry them unchanged, while the ids that the notes never quote are filled
in by hand in the table.
"""
import re
import sys

# String-table ranges: any other number next to a quoted text is a
# command, control, queue or mode number, never a string id.
RANGES = [(1, 2), (50, 53), (100, 132), (200, 234), (300, 302), (400, 406),
          (500, 502), (600, 608), (700, 715), (800, 802), (900, 903),
          (1000, 1005), (1200, 1256), (1300, 1356), (1400, 1401),
          (1500, 1506), (1600, 1612), (1700, 1714), (1800, 1813),
          (1900, 1902), (2000, 2038), (3000, 3099), (3100, 3167),
          (3200, 3299), (3300, 3362), (3400, 3409), (4000, 4044),
          (5000, 5045), (7000, 7008), (7500, 7541), (8000, 8011),
          (10000, 10002), (11000, 11010), (12000, 12010), (20000, 20001)]

Q = r'"([^"\n]+)"'                       # one quoted text
PATTERNS = [
    # 200 "Servizi", text 100 "Sì", message 10002 "..."
    re.compile(r'(?<![\w.-])(\d+) ' + Q),
    # "Sposta" (1203/1303), "Riga:" (115), "..." (id 20000), "..." (string 4001)
    re.compile(Q + r' \((?:id |string )?(\d+)(?:\s*/\s*\d+)?\)'),
    # text 8000 ("Pelorix - Console")
    re.compile(r'(\d+) \(' + Q + r'\)'),
    # titled "Dati fax", id 1714
    re.compile(Q + r', id (\d+)'),
    # text 1, "Pelorix" / description id 1322, "..."
    re.compile(r'(?:text|id) (\d+), ' + Q),
    # | 1700 | "Prefisso internazionale" |  (not the small order numbers)
    re.compile(r'^\| (\d{3,}) \| ' + Q + r' \|', re.M),
    # | 5302 | "Genera anteprima documenti" | 1200 / 1300 |  (caption id)
    re.compile(r'^\| [\d-]+ \| ' + Q + r'[^|]*\| (\d+) / \d+ \|', re.M),
    # captioned "Da inviare" and "In uscita" (ids 1212, 1213)
    re.compile(Q + r' and ' + Q + r' \(ids (\d+), (\d+)\)'),
]
# A tree line of a property sheet; greedy, so that a caption may itself
# hold quotes ("Pausa per "socket error"").
TREE_LINE = re.compile(r'^\s*- (?:group )?"(.*)" \((\d+)\)\s*$', re.M)
# A row of the range table: | 50-53 | button captions "&Ok", ... |
RANGE_ROW = re.compile(r'^\| (\d+)-(\d+) \| ([^|\n]*)\|\s*$', re.M)
# Sentences where small numbers next to quoted texts are mode numbers.
SKIP = re.compile(r'mode numbers of Part [\d.]+: [^)]*\)')


def in_ranges(n):
    return any(a <= n <= b for a, b in RANGES)


def pairs(text):
    """Yield (id, text, line number) for every id-bound quotation."""
    def line(pos):
        return text.count('\n', 0, pos) + 1

    for m in TREE_LINE.finditer(text):
        yield int(m.group(2)), m.group(1), line(m.start())
    for pat in PATTERNS:
        for m in pat.finditer(text):
            g = m.groups()
            if len(g) == 4:                                   # two texts, two ids
                yield int(g[2]), g[0], line(m.start())
                yield int(g[3]), g[1], line(m.start())
            elif g[0].isdigit():
                yield int(g[0]), g[1], line(m.start())
            else:
                yield int(g[1]), g[0], line(m.start())
    # Range table: texts listed without ids count from the start of the
    # range; "first" ... "last" names both ends.
    for m in RANGE_ROW.finditer(text):
        first, last, cell = int(m.group(1)), int(m.group(2)), m.group(3)
        if re.search(r'\d+ "', cell):
            continue                                          # ids given inline
        texts = re.findall(Q, cell)
        if re.search(r'" \.\.\. "', cell) and len(texts) == 2:
            yield first, texts[0], line(m.start())
            yield last, texts[1], line(m.start())
            continue
        for i, t in enumerate(texts):
            yield first + i, t, line(m.start())


def extract(path):
    with open(path, encoding='utf-8') as f:
        text = SKIP.sub('', f.read())
    found, conflicts = {}, []
    for sid, txt, ln in pairs(text):
        if not in_ranges(sid) or txt.strip() != txt:
            continue
        if sid in found and found[sid][0] != txt:
            conflicts.append((sid, found[sid], (txt, ln)))
        found.setdefault(sid, (txt, ln))
    return found, conflicts


def unescape(s):
    return re.sub(r'\\(.)', lambda m: {'n': '\n', 't': '\t'}.get(m.group(1), m.group(1)), s)


def read_table(path):
    table = {}
    with open(path, encoding='utf-8') as f:
        for raw in f:
            raw = raw.rstrip('\n')
            if raw and not raw.startswith('#'):
                sid, _, txt = raw.partition('\t')
                table[int(sid)] = unescape(txt)
    return table


def main(argv):
    if len(argv) not in (2, 4) or (len(argv) == 4 and argv[2] != '--check'):
        sys.exit(__doc__)
    found, conflicts = extract(argv[1])
    bad = 0
    for sid, (a, la), (b, lb) in conflicts:
        print(f'conflict {sid}: "{a}" (line {la}) / "{b}" (line {lb})', file=sys.stderr)
        bad += 1
    if len(argv) == 2:
        for sid in sorted(found):
            print(f'{sid}\t{found[sid][0]}')
        return 1 if bad else 0
    table = read_table(argv[3])
    for sid in sorted(found):
        if table.get(sid) != found[sid][0]:
            print(f'{sid}: table has {table.get(sid)!r}, notes quote {found[sid][0]!r}',
                  file=sys.stderr)
            bad += 1
    missing = [n for a, b in RANGES for n in range(a, b + 1) if n not in table]
    extra = [n for n in table if not in_ranges(n)]
    for n in missing:
        print(f'{n}: missing from the table', file=sys.stderr)
    for n in extra:
        print(f'{n}: outside the known ranges', file=sys.stderr)
    bad += len(missing) + len(extra)
    print(f'{len(found)} quoted ids, {len(table)} table entries, {bad} problem(s)',
          file=sys.stderr)
    return 1 if bad else 0


if __name__ == '__main__':
    sys.exit(main(sys.argv))
