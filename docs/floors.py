#!/usr/bin/env python3
"""Draws the folders of the sources on their floors, with arrows to the folders that they include:

    docs/floors.py > docs/floors.svg

It reads the #include lines of the tree that it lies in. Every include that goes up, or across to
another folder of the same floor, is reported on standard error, and the exit status is then 1.
A new folder needs an entry in FLOORS."""
import os
import re
import sys
from collections import defaultdict
from html import escape

TOP = os.path.join(os.path.dirname(os.path.abspath(__file__)), '..')
SOURCES = ('libVOK', 'modules', 'analysis', 'OnlineCoach', 'gamelogs', 'tools', 'examples')

# From the bottom: the floor's name, then its folders with the left and right edge of their boxes.
# The subfolders of modules/ share one box.
FLOORS = (
    ('values, text', {'libVOK/base': (0, 985)}),
    ('configuration', {'libVOK/config': (0, 150)}),
    ('protocol', {'libVOK/protocol': (180, 760)}),
    ('messages', {'libVOK/messages': (180, 760)}),
    ('connection', {'libVOK/connection': (0, 620)}),
    ('world', {'libVOK/world': (0, 620)}),
    ('modules', {'modules': (0, 300)}),
    ('analysis, main loop', {'analysis': (640, 760), 'libVOK': (320, 450)}),
    ('coach, game logs', {'OnlineCoach': (0, 125), 'gamelogs': (640, 760)}),
    ('tools’ library', {'tools/common': (780, 900)}),
    ('programs', {'examples/team': (0, 92), 'tools/confcheck': (100, 196),
                  'tools/formationview': (204, 312), 'tools/typecheck': (320, 416),
                  'tools/seecheck': (424, 516), 'examples/player_listener': (524, 657),
                  'tools/saydecode': (665, 765), 'tools/practicematch': (773, 885),
                  'tools/matchreport': (893, 985)}),
)
# A box of a folder's own files, without those of its subfolders, which have boxes of their own.
LABELS = {'libVOK': 'libVOK/*.cpp'}
MARGIN, FLOOR_HEIGHT, BOX_HEIGHT = 118, 64, 40
FLOOR_OF = {folder: floor for floor, (_, folders) in enumerate(FLOORS) for folder in folders}
EDGES_OF = {folder: edges for _, folders in FLOORS for folder, edges in folders.items()}


def folder_of(path):
    """The drawn folder of a source file; None for one that has no entry."""
    folder = os.path.dirname(path)
    if folder.startswith('modules/'):
        folder = 'modules'
    return folder if folder in FLOOR_OF else None


def source_files():
    for source in SOURCES:
        for where, folders, files in os.walk(os.path.join(TOP, source)):
            folders.sort()
            for name in sorted(files):
                if name.endswith(('.h', '.cpp')):
                    yield os.path.relpath(os.path.join(where, name), TOP)


def read_includes(errors):
    """Folder -> folders that it includes, of the tree's own headers only."""
    files = list(source_files())
    headers = defaultdict(list)
    for path in files:
        headers[os.path.basename(path)].append(path)
    includes = defaultdict(set)
    for path in files:
        folder = folder_of(path)
        if folder is None:
            errors.append(f'{path}: its folder has no floor')
            continue
        with open(os.path.join(TOP, path), encoding='utf-8') as text:
            for number, line in enumerate(text, 1):
                found = re.match(r'#include ["<]([^">]+)[">]', line)
                if not found:
                    continue
                candidates = headers[os.path.basename(found[1])]
                beside = [p for p in candidates if os.path.dirname(p) == os.path.dirname(path)]
                for target in (beside or candidates)[:1]:
                    to = folder_of(target)
                    if to is None or to == folder:
                        continue
                    includes[folder].add(to)
                    if FLOOR_OF[to] >= FLOOR_OF[folder]:
                        errors.append(f'{path}:{number}: the include of {target} does not go down')
    return includes


def reached(includes, folder):
    """Everything below a folder, itself not counted."""
    found, open_ends = set(), list(includes.get(folder, ()))
    while open_ends:
        at = open_ends.pop()
        if at not in found:
            found.add(at)
            open_ends += includes.get(at, ())
    return found


def drawn(includes):
    """The includes without those that other arrows lead to as well, the short ones first."""
    pairs = [(a, b) for a in includes for b in includes[a]
             if not any(b in reached(includes, c) for c in includes[a] if c != b)]
    return sorted(pairs, key=lambda pair: (FLOOR_OF[pair[0]] - FLOOR_OF[pair[1]], pair))


def top_of(folder):
    return (len(FLOORS) - 1 - FLOOR_OF[folder]) * FLOOR_HEIGHT + (FLOOR_HEIGHT - BOX_HEIGHT) // 2


class Lanes:
    """The vertical lines, so that no two lie on each other and none runs through a box."""

    def __init__(self):
        self.taken = []  # (x, top, bottom)

    def free(self, x, top, bottom):
        for folder, (left, right) in EDGES_OF.items():
            if left - 8 < x < right + 8 and top < top_of(folder) + BOX_HEIGHT and \
                    top_of(folder) < bottom:
                return False
        return all(abs(x - other) >= 16 or bottom <= up or down <= top
                   for other, up, down in self.taken)

    def take(self, left, right, top, bottom):
        """The free place that is nearest to the middle; None without one."""
        middle = (left + right) / 2
        places = [x for x in range(int(left) + 12, int(right) - 11) if self.free(x, top, bottom)]
        if not places:
            return None
        x = min(places, key=lambda place: abs(place - middle))
        self.taken.append((x, top, bottom))
        return x


def arrow(lanes, bus, folder, to):
    """The path from one box to another below it: straight down, or where the boxes do not lie above
    each other along a horizontal line, which all arrows to the same box share."""
    top, bottom = top_of(folder) + BOX_HEIGHT, top_of(to)
    left = max(EDGES_OF[folder][0], EDGES_OF[to][0])
    right = min(EDGES_OF[folder][1], EDGES_OF[to][1])
    x = lanes.take(left, right, top, bottom)
    if x is not None:
        return f'M{x} {top}V{bottom - 1}'
    x = lanes.take(*EDGES_OF[folder], top, top + 8)
    if x is None:
        raise SystemExit(f'{sys.argv[0]}: no way for an arrow from {folder} to {to}')
    if to not in bus:
        bus[to] = lanes.take(*EDGES_OF[to], bottom - 12, bottom)
    end = bus[to]
    return f'M{x} {top}V{top + 8}H{end}V{bottom - 1}'


def label(folder, middle, top, width):
    """The folder's path, in two lines where one would be too long."""
    folder = LABELS.get(folder, folder)
    fits = len(folder) * 9 < width
    lines = [folder] if fits else [folder[:folder.index('/') + 1], folder[folder.index('/') + 1:]]
    first = top + BOX_HEIGHT / 2 + 5 - 8 * (len(lines) - 1)
    return [f'<text x="{middle}" y="{first + 16 * i}" text-anchor="middle" fill="black">'
            f'{escape(line)}</text>' for i, line in enumerate(lines)]


def draw(includes):
    width, height = MARGIN + 975, len(FLOORS) * FLOOR_HEIGHT
    out = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}" '
           'font-family="sans-serif" font-size="13">',
           '<defs><marker id="tip" viewBox="0 0 8 8" refX="7" refY="4" markerWidth="8" '
           'markerHeight="8" orient="auto"><path d="M0 0L8 4L0 8z"/></marker></defs>',
           '<rect width="100%" height="100%" fill="white"/>']
    for floor, (name, _) in enumerate(FLOORS):
        y = (len(FLOORS) - floor) * FLOOR_HEIGHT
        if floor:
            out.append(f'<path d="M0 {y}H{width}" stroke="#ccc" stroke-dasharray="2 4"/>')
        out.append(f'<text x="8" y="{y - FLOOR_HEIGHT / 2 + 4}" fill="#555">{floor + 1}  '
                   f'{escape(name)}</text>')
    out.append(f'<g transform="translate({MARGIN}.5 .5)" fill="none">')
    lanes, bus = Lanes(), {}
    paths = [arrow(lanes, bus, *pair) for pair in drawn(includes)]
    # The straight lines pass over the others, which their white edges interrupt.
    for straight in (False, True):
        group = [path for path in paths if ('H' not in path) == straight]
        out += [f'<path d="{path}" stroke="white" stroke-width="7"/>' for path in group]
        out += [f'<path d="{path}" stroke="black" marker-end="url(#tip)"/>' for path in group]
    for folder, (left, right) in EDGES_OF.items():
        top = top_of(folder)
        out.append(f'<rect x="{left}" y="{top}" width="{right - left}" height="{BOX_HEIGHT}" '
                   'rx="3" fill="#eee" stroke="black"/>')
        out += label(folder, (left + right) / 2, top, right - left)
    out.append('</g></svg>')
    return '\n'.join(out)


def main():
    errors = []
    includes = read_includes(errors)
    print('\n'.join(errors), end='\n' if errors else '', file=sys.stderr)
    if errors:
        return 1
    print(draw(includes))
    return 0


sys.exit(main())
