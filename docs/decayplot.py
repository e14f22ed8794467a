#!/usr/bin/env python3
"""Draws, for each cycle of play, the quotient of a player's new velocity and the distance that it
covered, and the decays of the player types. Reads a recording (milliseconds, tab, text) from
standard input; the arguments are team, shirt number and number of cycles:

    docs/decayplot.py Beta 5 160 < tests/data/types_left.txt > docs/types-from-decay.svg

The lower panel enlarges the range around the player's own decay. There each step has a bar, which
shows the decays that are possible within the rounding of the printed numbers. Orange marks at the
lower edge are steps that fit no decay, after a contact."""
import math
import re
import sys

PLAYER = re.compile(r'\(\(p "([^"]+)" (\d+)(?: goalie)?\) (\S+) (\S+) (\S+) (\S+)')
LEFT, WIDTH, GAP = 64, 640, 46
PANELS = ((34, 250), (34 + 250 + GAP, 250))  # top and height


def print_error(value):
    """Half a unit of the last of six significant digits."""
    size = abs(value)
    if size < 0.1:
        return 5e-8
    return 0.5 * 10 ** (math.floor(math.log10(size)) - 5)


def bounds(way, way_error, left, left_error):
    """The range of decays that one coordinate allows."""
    if abs(way) <= way_error:
        return 0, 1
    ends = [(left + a) / (way + b) for a in (-left_error, left_error)
            for b in (-way_error, way_error)]
    return min(ends), max(ends)


def step(before, now):
    """The quotient, and the range of decays that the step allows: an empty one after a contact."""
    ways = [now[i] - before[i] for i in (0, 1)]
    limits = [bounds(ways[i], print_error(now[i]) + print_error(before[i]), now[i + 2],
                     print_error(now[i + 2])) for i in (0, 1)]
    return (math.hypot(now[2], now[3]) / math.hypot(*ways), max(limits[0][0], limits[1][0]),
            min(limits[0][1], limits[1][1]))


def read(lines, team, number, cycles):
    decays, steps = {}, []
    mode, before, count = '', None, 0
    for line in lines:
        text = line.rstrip('\n').split('\t', 1)[1]
        if text.startswith('(player_type '):
            kind = int(re.search(r'\(id (\d+)\)', text)[1])
            decays[kind] = float(re.search(r'\(player_decay ([^)]+)\)', text)[1])
        call = re.match(r'\(hear \d+ referee (\w+)\)', text)
        if call:
            mode, before = call[1], None
        if not text.startswith('(see_global '):
            continue
        seen = [m for m in PLAYER.findall(text) if m[0] == team and m[1] == number]
        now = [float(x) for x in seen[0][2:]] if seen and mode == 'play_on' else None
        if now:
            count += 1
            if before and math.dist(before[:2], now[:2]) > 0.02:
                steps.append((count, *step(before, now)))
        before = now
        if count == cycles:
            break
    return decays, steps


def panel(out, decays, steps, cycles, top, height, low, high, bars, own):
    def x(cycle):
        return LEFT + WIDTH * cycle / cycles

    def y(decay):
        return top + height * (high - decay) / (high - low)

    out.append(f'<rect x="{LEFT}" y="{top}" width="{WIDTH}" height="{height}" fill="none" '
               'stroke="#888"/>')
    last = 0
    for kind, decay in sorted(decays.items(), key=lambda item: -item[1]):
        if not low < decay < high:
            continue
        colour = '#c22' if kind == own else '#9bd'
        out.append(f'<path d="M{LEFT} {y(decay):.1f}h{WIDTH}" stroke="{colour}"/>')
        place = max(y(decay) + 3, last + 9)
        last = place
        out.append(f'<text x="{LEFT + WIDTH + 4}" y="{place:.1f}" fill="{colour}">type {kind}: '
                   f'{decay:g}</text>')
    digits = 2 if high - low > 0.05 else 4
    for i in range(5):
        value = low + (high - low) * i / 4
        out.append(f'<text x="{LEFT - 5}" y="{y(value) + 3:.1f}" text-anchor="end">'
                   f'{value:.{digits}f}</text>')
    for i in range(0, cycles + 1, 10):
        out.append(f'<text x="{x(i):.1f}" y="{top + height + 12}" text-anchor="middle">{i}</text>')
    for cycle, quotient, least, most in steps:
        clean = least <= most
        if bars and clean and least < high and most > low:
            ends = [y(min(high, max(low, value))) for value in (least, most)]
            out.append(f'<path d="M{x(cycle):.1f} {ends[0]:.1f}V{ends[1]:.1f}" stroke="#555"/>')
        if clean and low < quotient < high:
            out.append(f'<circle cx="{x(cycle):.1f}" cy="{y(quotient):.1f}" r="1.8" '
                       'fill="#222"/>')
        if not clean:
            out.append(f'<path d="M{x(cycle):.1f} {top + height}v-9" stroke="#e80"/>')


def main():
    team, number, cycles = sys.argv[1], sys.argv[2], int(sys.argv[3])
    decays, steps = read(sys.stdin, team, number, cycles)
    fitting = {kind: sum(s[2] <= decay <= s[3] for s in steps) for kind, decay in decays.items()}
    own = max(fitting, key=fitting.get)
    bottom = PANELS[1][0] + PANELS[1][1]
    out = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{LEFT + WIDTH + 110}" '
           f'height="{bottom + 34}" font-family="sans-serif" font-size="10">',
           '<rect width="100%" height="100%" fill="white"/>',
           f'<text x="{LEFT}" y="20" font-size="13">{team} {number}: new velocity / distance '
           'covered in each cycle, and the decays of the types</text>']
    panel(out, decays, steps, cycles, *PANELS[0], 0.28, 0.52, False, own)
    panel(out, decays, steps, cycles, *PANELS[1], decays[own] - 0.001, decays[own] + 0.0016, True,
          own)
    out.append(f'<text x="{LEFT + WIDTH / 2}" y="{bottom + 27}" text-anchor="middle">'
               'cycles of play</text></svg>')
    print('\n'.join(out))


main()
