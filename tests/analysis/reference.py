#!/usr/bin/env python3
"""The slow, obvious second implementation of the match analysis: what every number means, one
function per definition. Tests compare the programs' numbers with its numbers.

    tests/analysis/reference.py [options] GAMELOG      prints one JSON object; - is standard input
      --rcl FILE     the text log, if not beside the game log: adds holes and doubles
      --inferred     ignores counters and states, and infers touches from the ball's movement
      --check        checks identities between the numbers; with these two nothing is printed
      --expect FILE  compares the numbers with the JSON in FILE, which may be packed by gzip

Words used below: a side is 'l' or 'r', and its own frame has its goal at x = -52.5. A player is
known by its key (side, number). T is the cycle of a frame or of an announcement. Play is the mode
play_on. A cycle of play is a frame in play that is the first one of its T."""
import argparse
import collections
import itertools
import json
import math
import os
import re
import sys
import zlib

SIDES, PASSES = ('l', 'r'), ('completed', 'intercepted', 'out')
KEYS = [(side, number) for side in SIDES for number in range(1, 12)]
GOALIE, CATCH, CATCH_FAULT, TACKLE, TACKLE_FAULT = 0x8, 0x10, 0x20, 0x1000, 0x2000  # states
CARDS = (('yellow', 0x40000), ('red', 0x80000))
SET_PLAYS = ('kick_off', 'kick_in', 'free_kick', 'indirect_free_kick', 'corner_kick', 'goal_kick')
FAULTS = ('free_kick_fault', 'back_pass', 'catch_fault', 'illegal_defense')  # and all foul_...
BODY_COMMANDS = ('dash', 'turn', 'kick', 'catch', 'move', 'tackle')
GOAL_X, COLUMNS, ROWS = 52.5, 21, 14
FIELDS = 'type state x y body stamina effort recovery capacity kick tackle'.split()
Player = collections.namedtuple('Player', FIELDS)
SHOW = re.compile(r'\(show (\d+) \(\(b\) (\S+) (\S+) (\S+) (\S+)\)( .*\)\))\)$')
# The groups are side and number, then FIELDS; version 4 has no capacity.
PLAYER = re.compile(r' \(\((l|r) (\d+)\) (\d+) (0x[0-9a-f]+|0) (\S+) (\S+) \S+ \S+ (\S+) [^()]*\(v '
                    r'.*?\(s (\S+) (\S+) ([^ )]+)(?: ([^)]+))?\)'
                    r'.*?\(c (\d+)(?: \d+){7} (\d+)[ \d]*\)\)')

def other(side):
    return 'r' if side == 'l' else 'l'

def own(side, x, y):
    """The place (x, y) in the own frame of the side."""
    return (x, y) if side == 'l' else (-x, -y)

def distance(a, b):
    return math.hypot(a[0] - b[0], a[1] - b[1])

def mean(values):
    return sum(values) / len(values) if values else None

def share(count, total):
    return count / total if total else None

def split_call(mode):
    """'kick_in_l' is ('kick_in', 'l'); a mode of no side has the side None."""
    return (mode[:-2], mode[-1]) if mode and mode[-2:] in ('_l', '_r') else (mode, None)

def row(T, key, **more):
    return dict(cycle=T, side=key[0], number=key[1], **more)

# Reading.

def read_bytes(path):
    """The content of the file, unpacked, and whether the compression ended too early."""
    with (sys.stdin.buffer if path == '-' else open(path, 'rb')) as file:
        content = file.read()
    if content[:2] != b'\x1f\x8b':
        return content, False
    packed = zlib.decompressobj(wbits=31)
    content = packed.decompress(content)
    return content, not packed.eof

class Frame:
    """One show: who was where, and the calls announced between the frame before and this one."""
    def __init__(self, T, ball, players, calls, before):
        self.T, self.players, self.calls, self.before = T, players, calls, before
        self.x, self.y, self.vx, self.vy = ball
        self.place = (self.x, self.y)
        if set(players) != set(KEYS):
            raise ValueError('not the players of two teams')
        self.mode = calls[-1].mode if calls else before.mode if before else None
        self.standing = before is not None and self.T == before.T
        self.behind_gap = before is not None and self.T > before.T + 1
        self.in_play = self.mode == 'play_on'
        self.cycle_of_play = self.in_play and not self.standing
        for call in calls:
            call.frame, call.T = self, T

    def there(self, key):
        """A player counts in a frame when its state is not 0."""
        return self.players[key].state != 0

class Call:
    """A play mode, when it is announced; an interruption when it is not play_on."""
    touchers = frame = last = next = None
    def __init__(self, T, mode):
        self.T, self.mode = T, mode
        self.kind, self.side = split_call(mode)

class Log:
    """All that a game log says."""
    def __init__(self, path):
        content, self.cut = read_bytes(path)
        self.version, *lines = content.decode('latin-1').split('\n')
        self.parameters, self.types, self.result, self.complete = {}, [], None, False
        self.frames, self.calls, self.late_calls, self.teams = [], [], [], []
        if '[' == self.version[:1] or 'JSON' in self.version or lines and lines[0][:1] == '{':
            self.version, items = 'JSON', json_items
        elif self.version in ('ULG4', 'ULG5', 'ULG6'):
            items = text_items
        else:
            sys.exit('%s: not a game log of version 4, 5, 6 or JSON' % path)
        for line in lines:
            try:
                for item in items(line):
                    self.take(*item)
            except (ValueError, KeyError, TypeError, AttributeError):
                self.cut = True  # a refused line
        self.complete &= not self.cut

    def take(self, head, *values):
        if head == 'server_param':
            self.parameters.update(values[0])
        elif head == 'player_type':
            self.types.append(values[0])
        elif head == 'playmode':
            self.calls.append(Call(*values))
            self.late_calls.append(self.calls[-1])
        elif head == 'team':  # behind a shoot-out the end is the result, else time_over
            over = any(call.mode == 'time_over' for call in self.calls)
            self.teams.append(values)
            self.complete = bool(self.result if self.setups() else over)
        elif head == 'msg' and values[0].startswith('(result '):
            self.result = values[0][len('(result '):-1]
        elif head == 'show':
            before = self.frames[-1] if self.frames else None
            self.frames.append(Frame(*values, self.late_calls, before))
            self.late_calls = []

    def number(self, name, default):
        return float(self.parameters.get(name, default))

    def setups(self):
        return [call for call in self.calls if call.kind == 'penalty_setup']

    def end_before_shoot_out(self):
        """The log ends before the first penalty_setup and the frame with which it comes."""
        for first in self.setups()[:1]:
            self.calls = self.calls[:self.calls.index(first)]
            if first.frame:
                self.frames = self.frames[:self.frames.index(first.frame)]
            return first.T
        return math.inf

def text_items(line):
    words = line[1:-1].split()
    if line and line[-1] != ')':
        raise ValueError('cut line')
    if line.startswith('(show '):
        T, *ball, players = SHOW.match(line).groups()
        yield 'show', int(T), map(float, ball), {(side, int(number)): Player(
            int(kind), int(state, 16), *(float(value) if value else None for value in values))
            for side, number, kind, state, *values in PLAYER.findall(players)}
    elif line.startswith(('(server_param ', '(player_type ')):
        yield words[0], dict(re.findall(r'\((\w+) ("[^"]*"|[^()]*)\)', line))
    elif line.startswith('(playmode '):
        yield words[0], int(words[1]), words[2]
    elif line.startswith('(team '):
        score, *penalties = zip(*[map(int, words[4:])] * 2)
        yield 'team', [None if name == 'null' else name for name in words[2:4]], score, penalties
    elif line.startswith('(msg '):
        yield 'msg', line[line.index('"') + 1:line.rindex('")')]

def json_items(line):
    """The JSON form has an object a line."""
    for head, value in json.loads(line.strip('[], \r') or '{}').items():
        if head == 'show':
            ball = [float(value['ball'][name]) for name in ('x', 'y', 'vx', 'vy')]
            yield head, value['time'], ball, {(player['side'], player['unum']): Player(
                *map(player.get, FIELDS)) for player in value['players']}
        elif head == 'team':
            teams = [value[side] for side in SIDES]
            yield (head, [team.get('name') for team in teams], [team['score'] for team in teams],
                   [(team.get('pen_score', 0), team.get('pen_miss', 0)) for team in teams
                    if any('pen_score' in team or 'pen_miss' in team for team in teams)])
        elif head == 'playmode':
            yield head, value['time'], value['mode']
        else:
            yield head, value['message'] if head == 'msg' else value

# Touches.

def catches(frame, key):
    """CATCH is set, CATCH_FAULT is not, and CATCH was not set in the frame before."""
    before = frame.before.players[key].state if frame.before else 0
    return frame.players[key].state & (CATCH | CATCH_FAULT) == CATCH and not before & CATCH

def tackle_rose(frame, key):
    return bool(frame.before and frame.there(key)
                and frame.players[key].tackle > frame.before.players[key].tackle)

def tackle_won(frame, key):
    state = frame.players[key].state
    return tackle_rose(frame, key) and state & (TACKLE | TACKLE_FAULT) == TACKLE

def touches_by_counter(frame, key):
    return bool(frame.before and frame.there(key)) and (
        frame.players[key].kick > frame.before.players[key].kick or tackle_won(frame, key))

def touches(frame, key):
    return touches_by_counter(frame, key) or catches(frame, key)

class Touching:
    """All who touched the ball in one frame; single when they are one player."""
    mode = kind = last = next = shot = None
    def __init__(self, frame, touchers):
        self.T, self.frame, self.touchers = frame.T, frame, touchers
        self.place = frame.before.place  # where the ball was in the frame before
        self.player = touchers[0] if len(touchers) == 1 else None
        self.side = touchers[0][0] if len({side for side, _ in touchers}) == 1 else None

    def of(self, side):
        return [key for key in self.touchers if key[0] == side]

    def at(self):
        return {'x': self.place[0], 'y': self.place[1]}

def told(log, touchers):
    """Touchings and interruptions in their order: within a frame the touching comes first. A
    standing frame, the first one and one behind a gap have no touching."""
    events = []
    for frame in log.frames:
        if touchers[frame] and frame.before and not frame.standing and not frame.behind_gap:
            events.append(Touching(frame, touchers[frame]))
        events += [call for call in frame.calls if call.mode != 'play_on']
    events += [call for call in log.calls if call.mode != 'play_on' and call not in events]
    for one, two in zip(events, events[1:]):
        one.next, two.last = two, one
    return events

def stretch_before(call):
    """The touchings between an interruption and the one before it."""
    touchings = []
    while call.last and call.last.touchers:
        call = call.last
        touchings.insert(0, call)
    return touchings

# Touches without counters.

def reach_ratio(log, frame, key):
    """How far the ball is from the player, in terms of what he reaches: up to 1 by a kick, from
    there up to 2 by a tackle."""
    player = frame.players[key]
    entry = log.types[player.type] if player.type < len(log.types) else {}
    reach = log.number('ball_size', 0.085) + sum(
        float(entry.get(*part)) for part in (('player_size', 0.3), ('kickable_margin', 0.7)))
    ratio = distance(frame.place, (player.x, player.y)) / reach
    angle, dx, dy = math.radians(player.body), frame.x - player.x, frame.y - player.y
    ahead = (dx * math.cos(angle) + dy * math.sin(angle)) / log.number('tackle_dist', 2)
    aside = abs(dy * math.cos(angle) - dx * math.sin(angle)) / log.number('tackle_width', 1.25)
    tackle = 1 + max(ahead, aside) if 0 <= ahead <= 1 and aside <= 1 else math.inf
    return ratio if ratio <= 1 else tackle

def beyond_noise(log, frame, vx, vy, rounding):
    """The velocity differs from the one shown in the frame by more than the ball's noise."""
    noise = log.number('ball_rand', 0.05) * math.hypot(frame.vx, frame.vy) + rounding
    return abs(vx - frame.vx) > noise or abs(vy - frame.vy) > noise

def inferred_touchers(log, frame, goalie):
    """Where the ball strayed, the nearest of those who reach it touched it, unless it only hit
    somebody: then it goes back with a tenth of its velocity. A free kick that interrupts the play
    with a goalie at the ball is his catch; play_on behind a set play is the touch of the taker, the
    nearest of his side."""
    before, back = frame.before, -0.1 * log.number('ball_decay', 0.94)
    if before is None or frame.T != before.T + 1:
        return []
    strayed = beyond_noise(log, before, frame.x - before.x, frame.y - before.y, 0.0002)
    only_hit = not beyond_noise(log, before, frame.vx / back, frame.vy / back, 0.001)
    there = [key for key in KEYS if frame.there(key) and before.there(key)]
    near = [key for ratio, key in sorted((reach_ratio(log, before, key), key) for key in there)
            if ratio <= 2]
    if before.in_play and frame.in_play:
        return near[:1] if strayed and not only_hit else []
    kind, side = split_call(frame.mode)
    if before.in_play and kind == 'free_kick':
        key = (side, goalie[side])
        return [key] if distance(frame.place, frame.players[key][2:4]) < 2 else []
    kind, side = split_call(before.mode)
    if kind == 'goal_kick':  # it stays in this mode until the ball has left the penalty area
        return [key for key in near if key[0] == side][:1] if strayed else []
    if kind in SET_PLAYS and frame.in_play:
        return sorted((key for key in there if key[0] == side),
                      key=lambda key: distance(before.place, before.players[key][2:4]))[:1]
    return []

# Who is goalie, who shoots penalties, who holds the ball.

def goalies(log):
    """Who showed GOALIE anywhere in the log, the last of several; else number 1."""
    numbers = {'l': 1, 'r': 1}
    for frame in log.frames:
        numbers.update(key for key in KEYS if frame.players[key].state & GOALIE)
    return numbers

def shoot_out(log):
    """For each penalty_setup the side, the first of it who then touches by a counter, and the
    result. An unannounced one is a miss when the final table has more of them than were called."""
    setups, rows, ends = log.setups(), [], {'penalty_score': 'goal', 'penalty_miss': 'miss'}
    place = {None: len(log.frames), **{frame: i for i, frame in enumerate(log.frames)}}
    for call, after in zip(setups, setups[1:] + [None]):
        until = place[after.frame] + 1 if after else None
        takers = [number for frame in log.frames[place[call.frame] + 1:until]
                  for number in range(1, 12) if touches_by_counter(frame, (call.side, number))]
        said = log.calls[log.calls.index(call):log.calls.index(after) if after else None]
        results = [ends[one.kind] for one in said if one.kind in ends and one.side == call.side]
        missed = [one for one in log.calls if one.mode == 'penalty_miss_' + call.side]
        penalties = log.teams[-1][2] if log.teams else []
        counted = penalties[SIDES.index(call.side)][1] if penalties else 0
        results += ['miss' if counted > len(missed) else None]
        rows.append({'side': call.side, 'number': (takers + [None])[0], 'result': results[0]})
    return rows

def possession(log, touchings):
    """The holder of the ball in each frame: the side of the last touching; nobody behind one of
    both sides, and from where the play is interrupted."""
    side_of = {touching.frame: touching.side for touching in touchings}
    holder, holders = None, {}
    for frame in log.frames:
        holder = side_of.get(frame, holder)
        if frame.before and frame.before.in_play and not frame.in_play:
            holder = None
        holders[frame] = holder
    return holders

# Shots and goals.

def crossing(log, touching, side):
    """|y| where the ball crosses the goal line, and the length of its way in that cycle. Its ways
    are the one of this frame, then those of its velocity: 25 in all."""
    frame, decay = touching.frame, log.number('ball_decay', 0.94)
    here, there = own(side, *touching.place), own(side, *frame.place)
    velocity = own(side, frame.vx, frame.vy)
    for _ in range(25):
        if here[0] < GOAL_X <= there[0]:
            part = (GOAL_X - here[0]) / (there[0] - here[0])
            return abs(here[1] + part * (there[1] - here[1])), distance(here, there)
        here, there = there, (there[0] + velocity[0], there[1] + velocity[1])
        velocity = (velocity[0] * decay, velocity[1] * decay)
    return math.inf, 0

def shot(log, touching):
    """A single touching before the goal line, at most 40 m from the goal's centre, from where the
    ball crosses the line at most 2 m beside the goal, in a cycle whose way is at least 0.5 m."""
    if touching.player is None:
        return None
    place, post = own(touching.side, *touching.place), log.number('goal_width', 14.02) / 2
    y, way = crossing(log, touching, touching.side)
    if place[0] >= GOAL_X or distance(place, (GOAL_X, 0)) > 40 or y >= post + 2 or way < 0.5:
        return None
    return row(touching.T, touching.player, on_target=y < post, outcome=None)

def goal(call, touchings):
    """Who scored. One of the side in the last touching shot, whatever the ball's way said; else the
    last touching of the side counts if it was a shot; else it is an own goal."""
    side, last = call.side, touchings[-1] if touchings else None
    mine = [touching for touching in touchings if touching.of(side)]
    if last and last.of(side):
        last.shot = row(last.T, min(last.of(side)), on_target=True, outcome='goal')
        return row(call.T, min(last.of(side)), own=False)
    if mine and mine[-1].shot:
        mine[-1].shot.update(on_target=True, outcome='goal')
        return row(call.T, mine[-1].player, own=False)
    return row(call.T, (side, min(last.touchers)[1] if last else None), own=last is not None)

def outcome(touching, goalie):
    """What became of a shot that was no goal, by the next touching without an interruption."""
    if not touching.shot['on_target']:
        return 'off_target'
    side = other(touching.shot['side'])
    theirs = touching.next.of(side) if touching.next and touching.next.touchers else []
    return 'saved' if (side, goalie[side]) in theirs else 'blocked' if theirs else 'other'

def way_to_goal(call, touchings, set_plays):
    """The last five touchings, the set play if its taker's touching is among them, and the last
    recovery of the stretch."""
    play = set_plays.get((touchings[0] if touchings else call).last)
    taken = play and play['side'] == call.side and play['taker'] and len(touchings) <= 5
    recovered = [one for one in touchings if recovers(one) and one.side == call.side][-1:]
    return {'touchings': [{'cycle': one.T, **one.at(), 'players': [
                {'side': side, 'number': number} for side, number in one.touchers]}
                for one in touchings[-5:]],
            'set_play': play if taken else None,
            'recovery': row(recovered[0].T, recovered[0].player, **recovered[0].at())
                        if recovered else None}

# Passes, dribbles, recoveries, set plays.

def passing(touching):
    """What became of a touching as a pass: completed, intercepted, out, or None: it was none."""
    side, after = touching.side, touching.next
    if touching.player is None or touching.shot or after is None:
        return None
    if not after.touchers:
        out = after.kind in ('kick_in', 'corner_kick', 'goal_kick') and after.side == other(side)
        return 'out' if out or after.mode == 'offside_' + side else None
    if after.player in (None, touching.player) or distance(touching.place, after.place) < 2.0:
        return None
    return 'completed' if after.side == side else 'intercepted'

def dribbles(events):
    """Two or more single touchings in a row by one player, at least 2 m from first to last."""
    runs = itertools.groupby(events, lambda event: event.touchers and event.player)
    runs = [list(run) for player, run in runs if player]
    return [row(run[0].T, run[0].player, touches=len(run)) for run in runs
            if len(run) > 1 and distance(run[0].place, run[-1].place) >= 2.0]

def recovers(touching):
    """A single touching behind one that was the other side's alone."""
    return bool(touching.player and touching.last and touching.last.touchers
                and touching.last.side == other(touching.side))

def set_play(call, caught):
    """Who takes it, who touches the ball next, and what comes of it. A free kick announced with the
    frame of a catch is of a kind of its own."""
    play = {'cycle': call.T, 'side': call.side, 'taker': None, 'second': None, 'outcome': None,
            'kind': 'catch' if call.kind == 'free_kick' and call.frame in caught else call.kind}
    taking = call.next
    if taking and taking.touchers and taking.player and taking.side == call.side:
        second = taking.next.player if taking.next and taking.next.touchers else None
        play.update(taker=taking.player[1], outcome=set_play_outcome(taking, call.side),
                    second={'side': second[0], 'number': second[1]} if second else None)
    return play

def set_play_outcome(taking, side):
    """By what comes first: a shot, a goal, a touching of the other side alone or an interruption;
    kept when none of them comes within 100 cycles."""
    event = taking
    while event and event.T <= taking.T + 100:
        if not event.touchers:
            return 'goal' if event.mode == 'goal_' + side else 'lost'
        if event.shot and event.shot['side'] == side:
            return 'goal' if event.shot['outcome'] == 'goal' else 'shot'
        if event.side == other(side):
            return 'lost'
        event = event.next
    return 'kept'

# Places.

def counted_cells(places):
    """Cells of 5 m and 68/14 m from (-52.5, -34); what lies outside counts in the outermost."""
    cells = [[0] * ROWS for _ in range(COLUMNS)]
    for x, y in places:
        column, line = math.floor((x + 52.5) / 5), math.floor((y + 34) / (68 / ROWS))
        cells[min(max(column, 0), COLUMNS - 1)][min(max(line, 0), ROWS - 1)] += 1
    return cells

def territory(cycles):
    """Share of the cycles of play with the ball in each third and cell, in the log's frame."""
    third_of = [0 if frame.x < -17.5 else 1 if frame.x <= 17.5 else 2 for frame in cycles]
    return {'thirds': [share(third_of.count(third), len(cycles)) for third in range(3)],
            'cells': [[share(count, len(cycles)) for count in column]
                      for column in counted_cells([frame.place for frame in cycles])]}

def in_area(side, frame):
    """The ball is in the penalty area that the side attacks."""
    x, y = own(side, *frame.place)
    return x > 36.0 and abs(y) < 20.16

def enters(side, frame, first_of):
    """A cycle of play with the ball in the area, that before it in play with the ball outside."""
    before = first_of.get(frame.T - 1)
    return bool(in_area(side, frame) and before and before.in_play and not in_area(side, before))

def own_places(side, frame, left_out=None):
    """The places of the side's players who count in the frame, in its own frame."""
    return {number: own(side, *frame.players[(side, number)][2:4]) for number in range(1, 12)
            if number != left_out and frame.there((side, number))}

def formation(side, cycles, goalie):
    """Mean places of the players other than the goalie who were there in at least half of the
    cycles, the name of their lines, and the smallest step between two lines."""
    seen = collections.defaultdict(list)
    for frame in cycles:
        for number, place in own_places(side, frame, goalie).items():
            seen[number].append(place)
    places = [{'number': number, 'x': mean([x for x, _ in seen[number]]),
               'y': mean([y for _, y in seen[number]])}
              for number in sorted(seen) if len(seen[number]) * 2 >= len(cycles)]
    name, separation = formation_name(sorted(place['x'] for place in places))
    return {'name': name, 'separation': separation, 'places': places}

def squares(cut):
    return sum((x - mean(line)) ** 2 for line in cut for x in line)

def best_cut(xs, lines):
    """The cut of the sorted xs into lines of one to five with the least sum of squares."""
    cuts = []
    for sizes in itertools.product(range(1, 6), repeat=lines):
        ends = list(itertools.accumulate(sizes))
        if ends[-1] == len(xs):
            cuts.append([xs[end - size:end] for size, end in zip(sizes, ends)])
    return min(cuts, key=squares)

def formation_name(xs):
    """Three lines, or four where these fit much better and lie apart; "4-3-3" from the back."""
    if len(xs) < 8:
        return 'unclear', None
    three, four = best_cut(xs, 3), best_cut(xs, 4)
    apart = min(mean(two) - mean(one) for one, two in zip(four, four[1:]))
    lines = four if squares(four) < squares(three) / 3 and apart >= 4.0 else three
    separation = min(two[0] - one[-1] for one, two in zip(lines, lines[1:]))
    within = max(two - one for line in lines for one, two in zip(line, line[1:]))
    clear = separation >= 2.0 and separation > within
    return '-'.join(str(len(line)) for line in lines) if clear else 'unclear', separation

def hull_area(points):
    """The area of the convex hull: its corners in order, then the sum of cross products."""
    def cross(a, b, c):
        return (b[0] - a[0]) * (c[1] - a[1]) - (b[1] - a[1]) * (c[0] - a[0])
    corners = []
    for ordered in (sorted(points), sorted(points, reverse=True)):
        chain = []
        for point in ordered:
            while len(chain) > 1 and cross(*chain[-2:], point) <= 0:
                chain.pop()
            chain.append(point)
        corners += chain[:-1]
    return abs(sum(cross(corners[0], a, b) for a, b in zip(corners, corners[1:]))) / 2

def shape(side, cycles, goalie):
    """Means over the cycles with at least two players besides the goalie. The last line is the
    second smallest x of all, goalie included."""
    rows = []
    for frame in cycles:
        places = list(own_places(side, frame, goalie).values())
        if len(places) >= 2:
            xs, ys = zip(*places)
            line = sorted(x for x, _ in own_places(side, frame).values())[1]
            rows.append((max(xs) - min(xs), max(ys) - min(ys), hull_area(places), line, mean(xs),
                         mean(ys)))
    names = ('length', 'width', 'hull_area', 'last_line', 'x', 'y')
    return {name: mean([values[i] for values in rows]) for i, name in enumerate(names)}

# Players.

def distance_run(key, frames):
    """Ways between frames of T and T + 1, the latter in play; ways above 1.5 m are left out."""
    ways = [distance(frame.before.players[key][2:4], frame.players[key][2:4]) for frame in frames
            if frame.before and frame.T == frame.before.T + 1 and frame.in_play
            and frame.there(key) and frame.before.there(key)]
    return sum(way for way in ways if way <= 1.5)

def stamina(log, key, frames, half_time):
    """At half-time and at the end; over the cycles of play the least values and the cycles low."""
    seen = [(frame, frame.players[key]) for frame in frames if frame.there(key)]
    early = [player.stamina for frame, player in seen if frame.T <= half_time]
    played = [player for frame, player in seen if frame.cycle_of_play]
    low = log.number('effort_dec_thr', 0.3) * log.number('stamina_max', 8000)
    return {'half_time': early[-1] if early else None,
            'end': seen[-1][1].stamina if seen else None,
            'minimum': min((player.stamina for player in played), default=None),
            'low_cycles': sum(player.stamina < low for player in played),
            'effort': min((player.effort for player in played), default=None),
            'recovery': min((player.recovery for player in played), default=None),
            'capacity': seen[-1][1].capacity if seen else None}

def types(key, frames):
    """The player's type with the T of the frame from which it has it."""
    seen = [(frame.T, frame.players[key].type) for frame in frames if frame.there(key)]
    return [{'from': T, 'type': kind} for (T, kind), (_, before) in zip(seen, [(None, None)] + seen)
            if kind != before]

def presence(key, frames):
    """The first and last T with a state other than 0, and the spans of T without it in between."""
    present = {frame.T for frame in frames if frame.there(key)}
    first, last = min(present, default=None), max(present, default=None)
    between = sorted({frame.T for frame in frames if present and first < frame.T < last})
    runs = [(there, list(run)) for there, run in itertools.groupby(between, present.__contains__)]
    return {'first': first, 'last': last,
            'absent': [[run[0], run[-1]] for there, run in runs if not there]}

def cards(frames):
    """Frames in which YELLOW or RED appears."""
    return [row(frame.T, key, card=name) for frame in frames for key in KEYS for name, bit in CARDS
            if frame.players[key].state & bit
            and not (frame.before and frame.before.players[key].state & bit)]

# The text log.

def commands_of(text):
    """The names of the commands in a player's text, without what stands inside or in quotes."""
    text, nested = re.sub(r'"[^"]*"', '', text), 1
    while nested:
        text, nested = re.subn(r'(\([^()]*)\([^()]*\)', r'\1', text)
    return re.findall(r'\(\s*(\w+)', text)

def body_commands(path, names, end):
    """How many body commands each player gave in each instant (T, S), up to the shoot-out."""
    given = {key: collections.Counter() for key in KEYS}
    for line in read_bytes(path)[0].decode('latin-1').split('\n'):
        parts = re.match(r'(\d+),(\d+)\tRecv (.*)_(\d+): (.*)', line)
        if parts and parts[3] in names and int(parts[1]) < end and 1 <= int(parts[4]) <= 11:
            count = sum(name in BODY_COMMANDS for name in commands_of(parts[5]))
            if count:
                key = (SIDES[names.index(parts[3])], int(parts[4]))
                given[key][(int(parts[1]), int(parts[2]))] += count
    return given

def holes(instants):
    """Cycles (instants T,0) without a body command between the first command and the last one."""
    first, last = min(instants, default=(0, 0)), max(instants, default=(0, 0))
    return [T for T in range(first[0], last[0] + 1)
            if first < (T, 0) < last and (T, 0) not in instants]

# The report.

class Match:
    """What follows from the log as a whole; `tables` then takes the parts of it."""
    def __init__(self, path, rcl=None, inferred=False):
        self.log, self.inferred = Log(path), inferred
        log = self.log
        self.goalie, self.shoot_out = goalies(log), shoot_out(log)
        end = log.end_before_shoot_out()
        self.touchers = {frame: inferred_touchers(log, frame, self.goalie) if inferred else
                         [key for key in KEYS if touches(frame, key)] for frame in log.frames}
        self.events = told(log, self.touchers)
        self.touchings = [event for event in self.events if event.touchers]
        self.calls = [event for event in self.events if not event.touchers and event.side]
        self.holders = possession(log, self.touchings)
        self.first_of = {frame.T: frame for frame in log.frames if not frame.standing}
        self.half_time = log.number('half_time', 300) * 1000 / log.number('simulator_step', 100)
        for one in self.touchings:
            one.shot = shot(log, one)
        stretches = [(call, stretch_before(call)) for call in self.calls if call.kind == 'goal']
        self.goals = [goal(*stretch) for stretch in stretches]
        for one in self.touchings:
            if one.shot and one.shot['outcome'] is None:
                one.shot['outcome'] = outcome(one, self.goalie)
        caught = [frame for frame in log.frames if any(catches(frame, key) for key in KEYS)]
        if inferred:
            caught = [frame for frame, keys in self.touchers.items()
                      if keys and frame.before.in_play and not frame.in_play]
        plays = {call: set_play(call, caught) for call in self.calls if call.kind in SET_PLAYS}
        self.set_plays = list(plays.values())
        for entry, stretch in zip(self.goals, stretches):
            entry['way'] = way_to_goal(*stretch, plays)
        self.types = {key: types(key, log.frames) for key in KEYS}
        self.names, self.score, self.penalties = log.teams[-1] if log.teams else ([None] * 2,) * 3
        self.commands = body_commands(rcl, self.names, end) if rcl else None

    def report(self):
        """All tables, over the match and by half: up to half-time, up to twice that, later."""
        half, log = self.half_time, self.log
        whole, by_half = self.tables(lambda T: True), {
            'first': self.tables(lambda T: T <= half),
            'second': self.tables(lambda T: half < T <= 2 * half)}
        if any(frame.T > 2 * half for frame in log.frames):
            by_half['extra'] = self.tables(lambda T: T > 2 * half)
        match = {'key': log.result, 'left': self.names[0], 'right': self.names[1],
                 'score': self.score, 'penalties': self.penalties or None,
                 'cycles': whole['cycles'], 'play_cycles': whole['play_cycles'],
                 'complete': log.complete, 'source': log.version, 'inferred': self.inferred}
        return {'match': match, **whole, 'shoot_out': self.shoot_out, 'by_half': by_half}

    def tables(self, within):
        """All tables over the frames and events with a T within the part."""
        frames = [frame for frame in self.log.frames if within(frame.T)]
        cycles = [frame for frame in frames if frame.cycle_of_play]
        touchings = [one for one in self.touchings if within(one.T)]
        calls = [(call.kind, {'cycle': call.T, 'side': call.side}) for call in self.calls
                 if within(call.T)]
        passes = [(one, passing(one)) for one in touchings]
        network = collections.Counter((one.player, one.next.player) for one, result in passes
                                      if result == 'completed')
        changes = [row(new['from'], key, old_type=old['type'], new_type=new['type'])
                   for key in KEYS for old, new in zip(self.types[key], self.types[key][1:])]
        part = lambda entries: [entry for entry in entries if within(entry['cycle'])]
        lists = {
            'passes': [{'side': one[0], 'from': one[1], 'to': two[1], 'count': count}
                       for (one, two), count in sorted(network.items())],
            'shots': [one.shot for one in touchings if one.shot],
            'goals': part(self.goals), 'set_plays': part(self.set_plays),
            'dribbles': part(dribbles(self.events)),
            'recoveries': [row(one.T, one.player, **one.at())
                           for one in touchings if recovers(one)],
            'entries': [{'cycle': frame.T, 'side': side} for frame in cycles for side in SIDES
                        if enters(side, frame, self.first_of)],
            'cards': [] if self.inferred else cards(frames),
            'fouls': [{**entry, 'kind': kind} for kind, entry in calls
                      if kind in FAULTS or kind.startswith('foul_')],
            'offsides': [entry for kind, entry in calls if kind == 'offside'],
            'substitutions': part(sorted(changes, key=lambda change: change['cycle']))}
        players = [self.player(key, frames, cycles, passes, lists, within) for key in KEYS]
        return {'cycles': sum(not frame.standing for frame in frames), 'play_cycles': len(cycles),
                'sides': {side: self.side(side, cycles, players, lists) for side in SIDES},
                'players': players, **lists, 'territory': territory(cycles)}

    def player(self, key, frames, cycles, passes, lists, within):
        count = lambda name: sum((one['side'], one['number']) == key for one in lists[name])
        tally = lambda test: None if self.inferred else sum(test(frame, key) for frame in frames)
        results = [result for one, result in passes if one.player == key]
        entry = {
            'side': key[0], 'number': key[1],
            'touches': sum(key in self.touchers[frame] for frame in frames),
            'distance': distance_run(key, frames),
            'passes': {name: results.count(name) for name in PASSES},
            'dribbles': count('dribbles'), 'recoveries': count('recoveries'),
            'catches': tally(catches),
            'tackles': {'tried': tally(tackle_rose), 'won': tally(tackle_won)},
            'stamina': None if self.inferred else stamina(self.log, key, frames, self.half_time),
            'types': [entry for entry in self.types[key] if within(entry['from'])],
            'presence': presence(key, frames),
            'heat_map': counted_cells([frame.players[key][2:4] for frame in cycles
                                       if frame.there(key)])}
        if self.commands:
            given = self.commands[key]
            entry['holes'] = sum(map(within, holes(given)))
            entry['doubles'] = sum(count - 1 for (T, _), count in given.items() if within(T))
        return entry

    def side(self, side, cycles, players, lists):
        mine = [player for player in players if player['side'] == side]
        shots = [one for one in lists['shots'] if one['side'] == side]
        held = {one: [frame for frame in cycles if self.holders[frame] == one] for one in SIDES}
        parts = {'with_ball': held[side], 'without_ball': held[other(side)]}
        goalie = self.goalie[side]
        return {
            'goalie': goalie, 'possession_cycles': len(held[side]),
            'possession': share(len(held[side]), len(held['l']) + len(held['r'])),
            'touches': sum(player['touches'] for player in mine),
            'passes': {name: sum(player['passes'][name] for player in mine) for name in PASSES},
            'shots': {'total': len(shots), 'on_target': sum(one['on_target'] for one in shots),
                      'goals': sum(one['outcome'] == 'goal' for one in shots)},
            'distance': sum(player['distance'] for player in mine),
            'entries': sum(one['side'] == side for one in lists['entries']),
            'formation': {name: formation(side, part, goalie) for name, part in parts.items()},
            'shape': {name: shape(side, part, goalie) for name, part in parts.items()}}

# Checks.

def identities(report):
    """Pairs of numbers that must be equal, by name."""
    halves, whole = report['by_half'].values(), report['sides'].items()
    of = lambda entries, side: [entry for entry in entries if entry['side'] == side]
    for part in [report, *halves]:
        for cells in [part['territory']['thirds'], sum(part['territory']['cells'], [])]:
            yield 'territory', round(sum(filter(None, cells)), 9), part['play_cycles'] > 0
        for side, sums in part['sides'].items():
            yield 'network', sum(pair['count'] for pair in of(part['passes'], side)), \
                sums['passes']['completed']
            for player in of(part['players'], side):
                there = sum(map(sum, player['heat_map']))
                yield 'heat map', min(there, part['play_cycles']), there
    for name in ('shots', 'goals', 'set_plays', 'dribbles', 'recoveries', 'entries', 'cards',
                 'fouls', 'offsides', 'substitutions'):
        yield name, sum((part[name] for part in halves), []), report[name]
    for side, sums in whole:
        for name in ('possession_cycles', 'touches', 'entries', 'distance'):
            yield name, round(sum(part['sides'][side][name] for part in halves) - sums[name], 6), 0
        goals = of(report['goals'], side)
        if report['match']['complete']:
            yield 'score', len(goals), report['match']['score'][SIDES.index(side)]
        yield 'scored', sum(one['number'] is not None and not one['own'] for one in goals), \
            sums['shots']['goals']

def differences(name, expected, found):
    """Every number of `expected` that `found` has otherwise or not at all."""
    if isinstance(expected, dict) and isinstance(found, dict):
        for key in expected:
            yield from differences(name + '.' + key, expected[key], found.get(key, 'missing'))
    elif isinstance(expected, (list, tuple)) and len(expected) == len(found or []):
        for i, pair in enumerate(zip(expected, found)):
            yield from differences('%s[%d]' % (name, i), *pair)
    elif not (isinstance(expected, float) and isinstance(found, (int, float))
              and math.isclose(expected, found, rel_tol=1e-9, abs_tol=1e-9)) and expected != found:
        yield '%s: %.200r, not %.200r' % (name, found, expected)

def main():
    parser = argparse.ArgumentParser(description='The reference of the match analysis.')
    parser.add_argument('log')
    for option, action in (('rcl', 'store'), ('expect', 'store'), ('inferred', 'store_true'),
                           ('check', 'store_true')):
        parser.add_argument('--' + option, action=action)
    options = parser.parse_args()
    beside = re.sub(r'\.rcg', '.rcl', options.log)
    if not options.rcl and beside != options.log and os.path.exists(beside):
        options.rcl = beside
    report, wrong = Match(options.log, options.rcl, options.inferred).report(), []
    if options.check:
        wrong += ['%s: %r is not %r' % pair for pair in identities(report) if pair[1] != pair[2]]
    if options.expect:
        wrong += differences('', report, json.loads(read_bytes(options.expect)[0]))
    if not (options.check or options.expect):
        print(json.dumps(report, separators=(',', ':')))
    sys.exit('\n'.join(wrong) if wrong else 0)

if __name__ == '__main__':
    main()
