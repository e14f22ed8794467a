// The replay of a match: frames unpacked from characters, drawn on one canvas.
//
// The page holds two texts: "match", an object with what changes seldom, and "frames", the places.
// filmwriter.cpp writes both and describes them; here they are read. A live page gets the same in
// pieces.
'use strict';

const PLAYERS = 22;
const BALL = 22;
const OBJECTS = 23;
const NOWHERE = -32768;  // the place of a player who is not on the field

/** The frames of a match. Places are in steps of `grid` metres, frame by frame. */
class Film {
  constructor(match) {
    this.match = match;
    this.frames = 0;
    this.x = new Int16Array(0);
    this.y = new Int16Array(0);
    this.body = new Uint8Array(0);   // in 64ths of a full turn
    this.state = new Uint8Array(0);  // stamina in 30ths (31: not told), 32 for a tackle
    this.changes = {cycles: [], modes: [], scores: [], types: [], cards: [], marks: [], messages: []};
    this.addChanges(match);
  }

  addChanges(news) {
    for (const [kind, list] of Object.entries(this.changes)) list.push(...(news[kind] || []));
  }

  grow(frames) {
    if (frames * OBJECTS <= this.x.length) return;
    const size = Math.max(frames, 2 * this.frames) * OBJECTS;
    for (const name of ['x', 'y', 'body', 'state']) {
      const larger = new this[name].constructor(size);
      larger.set(this[name]);
      this[name] = larger;
    }
  }

  /** Appends frames. Each has the ball, then each player: see filmwriter.cpp. */
  add(packed, count) {
    const {digits, step, absent, absolute, offset} = this.match.code;
    const value = new Int8Array(128);
    for (let i = 0; i < digits.length; ++i) value[digits.charCodeAt(i)] = i;
    let at = 0;
    const digit = () => value[packed.charCodeAt(at++)];
    const place = () => digit() * 64 + digit() - offset;
    this.grow(this.frames + count);
    for (let n = 0; n < count; ++n) {
      const now = this.frames * OBJECTS;
      this.x[now + BALL] = place();
      this.y[now + BALL] = place();
      for (let i = now; i < now + PLAYERS; ++i) {
        const first = digit();
        if (first === absent) {
          this.x[i] = this.y[i] = NOWHERE;
          continue;
        }
        if (first === absolute) {
          this.x[i] = place();
          this.y[i] = place();
        } else {
          this.x[i] = this.x[i - OBJECTS] + first - step;
          this.y[i] = this.y[i - OBJECTS] + digit() - step;
        }
        this.body[i] = digit();
        this.state[i] = digit();
      }
      ++this.frames;
    }
  }

  /** The last entry of a list of changes up to a frame; an entry begins with its frame. */
  static last(list, frame) {
    let low = 0;
    let high = list.length;
    while (low < high) {
      const middle = (low + high) >> 1;
      if (list[middle][0] <= frame) low = middle + 1; else high = middle;
    }
    return list[low - 1];
  }

  cycle(frame) {
    const from = Film.last(this.changes.cycles, frame) || [0, 0];
    return from[1] + frame - from[0];
  }

  /** The first frame of a cycle, or of the next one that there is. */
  frameOf(cycle) {
    let low = 0;
    let high = this.frames - 1;
    while (low < high) {
      const middle = (low + high) >> 1;
      if (this.cycle(middle) >= cycle) high = middle; else low = middle + 1;
    }
    return low;
  }

  mode(frame) { return (Film.last(this.changes.modes, frame) || [0, ''])[1]; }
  score(frame) { return (Film.last(this.changes.scores, frame) || [0, 0, 0]).slice(1); }

  /** The type of each player, by the changes up to a frame. */
  types(frame) {
    const types = new Array(PLAYERS).fill(-1);
    for (const [from, player, type] of this.changes.types) if (from <= frame) types[player] = type;
    return types;
  }

  cards(frame) {
    const cards = [];
    for (const [from, player, red] of this.changes.cards) {
      if (from <= frame) cards[player] = Math.max(cards[player] || 1, red ? 2 : 1);
    }
    return cards;
  }

  /** The coach's message that is shown in a cycle: the last one, for a while. */
  message(cycle) {
    const SHOWN = 40;
    const [from, told] = Film.last(this.changes.messages, cycle) || [cycle, null];
    return cycle < from + SHOWN ? told : null;
  }
}

/** Draws a film's frames. */
class Picture {
  constructor(canvas, film) {
    this.canvas = canvas;
    this.film = film;
    this.out = canvas.getContext('2d');
    this.grass = document.createElement('canvas');
    const style = getComputedStyle(document.documentElement);
    this.colour = (name) => style.getPropertyValue('--' + name).trim();
    this.colours = {};
    for (const name of ['left', 'left-text', 'right', 'right-text', 'edge', 'ink', 'paper', 'ball', 'kicker',
      'opponent', 'low', 'grass', 'grass-rim', 'lines', 'yellow-card', 'red-card']) {
      this.colours[name] = this.colour(name);
    }
    this.typeColours = [0, 1, 2, 3, 4, 5, 6].map((n) => this.colour('type-' + n));
    this.chosen = -1;
    this.showMessages = true;
    this.places = new Float64Array(2 * OBJECTS);  // of the frame on the canvas, metres
    this.resize();
  }

  resize() {
    const WIDTH = 114;  // metres of the picture, 78 high
    const pixels = window.devicePixelRatio || 1;
    // The style gives the width, rounded here: a canvas that is stretched by a share of a pixel blurs.
    this.canvas.style.width = this.canvas.style.height = '';
    const width = Math.max(2 * Math.floor(this.canvas.getBoundingClientRect().width / 2), 200);
    const height = Math.round(width * 78 / WIDTH);
    this.canvas.style.width = width + 'px';
    this.canvas.style.height = height + 'px';
    this.scale = pixels * width / WIDTH;
    this.canvas.width = this.grass.width = Math.round(pixels * width);
    this.canvas.height = this.grass.height = Math.round(pixels * height);
    this.radius = Math.max(1.25, 7.5 * pixels / this.scale);  // of a player, metres
    this.drawGrass();
  }

  /** Metres as coordinates, the centre spot in the middle. */
  frame(out) { out.setTransform(this.scale, 0, 0, this.scale, this.canvas.width / 2, this.canvas.height / 2); }

  drawGrass() {
    const out = this.grass.getContext('2d');
    const c = this.colours;
    out.fillStyle = c['grass-rim'];
    out.fillRect(0, 0, this.grass.width, this.grass.height);
    this.frame(out);
    out.fillStyle = c.grass;
    out.fillRect(-52.5, -34, 105, 68);
    out.strokeStyle = c.lines;
    out.lineWidth = Math.max(0.18, 1 / this.scale);
    out.beginPath();
    out.rect(-52.5, -34, 105, 68);
    out.moveTo(0, -34);
    out.lineTo(0, 34);
    out.moveTo(9.15, 0);
    out.arc(0, 0, 9.15, 0, 2 * Math.PI);
    for (const side of [-1, 1]) {
      out.rect(side * 52.5, -20.16, -side * 16.5, 40.32);
      out.rect(side * 52.5, -9.16, -side * 5.5, 18.32);
      const half = Math.acos(5.5 / 9.15);
      const middle = side < 0 ? 0 : Math.PI;
      out.moveTo(side * 41.5 + 9.15 * Math.cos(middle - half), 9.15 * Math.sin(middle - half));
      out.arc(side * 41.5, 0, 9.15, middle - half, middle + half);
    }
    out.stroke();
    out.fillStyle = c.lines;
    const goal = this.film.match.goal / 2;
    for (const side of [-1, 1]) out.fillRect(Math.min(side * 52.5, side * 54.5), -goal, 2, 2 * goal);
  }

  /** The places at a time between frames, where nobody jumps. */
  place(position) {
    const JUMP = 60;  // steps of the grid
    const film = this.film;
    const frame = Math.floor(position);
    const share = position - frame;
    const now = frame * OBJECTS;
    const next = Math.min(frame + 1, film.frames - 1) * OBJECTS;
    const grid = film.match.code.grid;
    for (let i = 0; i < OBJECTS; ++i) {
      const x = film.x[now + i];
      const y = film.y[now + i];
      const stepX = film.x[next + i] - x;
      const stepY = film.y[next + i] - y;
      const moves = Math.abs(stepX) <= JUMP && Math.abs(stepY) <= JUMP && x !== NOWHERE;
      this.places[2 * i] = x === NOWHERE ? NaN : grid * (x + (moves ? share * stepX : 0));
      this.places[2 * i + 1] = grid * (y + (moves ? share * stepY : 0));
    }
    return frame;
  }

  draw(position) {
    const out = this.out;
    const frame = this.place(position);
    out.setTransform(1, 0, 0, 1, 0, 0);
    out.drawImage(this.grass, 0, 0);
    if (this.film.frames === 0) return;
    this.frame(out);
    const types = this.film.types(frame);
    const cards = this.film.cards(frame);
    const message = this.showMessages ? this.film.message(this.film.cycle(frame)) : null;
    if (this.chosen >= 0) this.drawTrail(this.chosen, frame);
    if (message) this.drawPlacesTold(message);
    for (let i = 0; i < PLAYERS; ++i) this.drawPlayer(i, frame, types[i], cards[i]);
    this.drawBall();
    if (message) this.drawNamed(message);
  }

  disc(x, y, radius) {
    this.out.beginPath();
    this.out.arc(x, y, radius, 0, 2 * Math.PI);
  }

  label(text, x, y, size) {
    this.out.font = 'bold ' + size + 'px system-ui, "DejaVu Sans", Arial, sans-serif';
    this.out.textAlign = 'center';
    this.out.textBaseline = 'middle';
    this.out.fillText(text, x, y + 0.06 * size);
  }

  drawPlayer(i, frame, type, card) {
    const x = this.places[2 * i];
    const y = this.places[2 * i + 1];
    if (Number.isNaN(x)) return;
    const out = this.out;
    const c = this.colours;
    const r = this.radius;
    const state = this.film.state[frame * OBJECTS + i];
    const left = i < 11;
    const body = this.film.body[frame * OBJECTS + i] * Math.PI / 32;
    // The direction of the body: a wedge beyond the disc.
    out.fillStyle = c.edge;
    out.beginPath();
    out.moveTo(x + 2 * r * Math.cos(body), y + 2 * r * Math.sin(body));
    out.lineTo(x + 1.3 * r * Math.cos(body + 0.45), y + 1.3 * r * Math.sin(body + 0.45));
    out.lineTo(x + 1.3 * r * Math.cos(body - 0.45), y + 1.3 * r * Math.sin(body - 0.45));
    out.fill();
    this.disc(x, y, r);
    out.fillStyle = left ? c.left : c.right;
    out.fill();
    out.lineWidth = 0.1 * r;
    out.strokeStyle = c.edge;
    out.setLineDash(state & 32 ? [0.45 * r, 0.3 * r] : []);
    out.stroke();
    out.setLineDash([]);
    this.drawStamina(x, y, state & 31);
    out.fillStyle = left ? c['left-text'] : c['right-text'];
    this.label(i % 11 + 1, x, y, 1.15 * r);
    if (type >= 0 && r * this.scale >= 9) this.drawType(x, y, type);
    if (card) {
      out.fillStyle = card > 1 ? c['red-card'] : c['yellow-card'];
      out.fillRect(x - 1.35 * r, y - 1.5 * r, 0.55 * r, 0.8 * r);
      out.strokeRect(x - 1.35 * r, y - 1.5 * r, 0.55 * r, 0.8 * r);
    }
    if (i === this.chosen) {
      out.lineWidth = 0.2 * r;
      out.strokeStyle = c.ink;
      this.disc(x, y, 1.6 * r);
      out.stroke();
    }
  }

  /** A ring that is full with full stamina; in another colour when the effort falls. */
  drawStamina(x, y, thirtieths) {
    if (thirtieths > 30) return;
    const out = this.out;
    out.lineWidth = 0.2 * this.radius;
    out.strokeStyle = thirtieths / 30 < this.film.match.low ? this.colours.low : this.colours.paper;
    out.beginPath();
    out.arc(x, y, 1.15 * this.radius, -Math.PI / 2, -Math.PI / 2 + thirtieths * Math.PI / 15);
    out.stroke();
  }

  drawType(x, y, type) {
    const r = this.radius;
    this.disc(x + r, y + r, 0.6 * r);
    this.out.fillStyle = this.typeColours[type === 0 ? 0 : (type - 1) % 6 + 1];
    this.out.fill();
    this.out.lineWidth = 0.08 * r;
    this.out.strokeStyle = this.colours.edge;
    this.out.stroke();
    this.out.fillStyle = this.colours.ink;
    this.label(type, x + r, y + r, 0.75 * r);
  }

  drawBall() {
    const r = 0.55 * this.radius;
    this.disc(this.places[2 * BALL], this.places[2 * BALL + 1], r);
    this.out.fillStyle = this.colours.ball;
    this.out.fill();
    this.out.lineWidth = 0.4 * r;
    this.out.strokeStyle = this.colours.edge;
    this.out.stroke();
  }

  /** Where a player came from in the last cycles, up to a jump. */
  drawTrail(player, frame) {
    const CYCLES = 80;
    const film = this.film;
    const out = this.out;
    const grid = film.match.code.grid;
    out.strokeStyle = this.colours.ink;
    out.lineWidth = 0.3 * this.radius;
    out.lineJoin = 'round';
    out.beginPath();
    for (let n = frame; n >= Math.max(frame - CYCLES, 0); --n) {
      const at = n * OBJECTS + player;
      if (film.x[at] === NOWHERE) break;
      if (n < frame && Math.hypot(film.x[at] - film.x[at + OBJECTS], film.y[at] - film.y[at + OBJECTS]) > 30) break;
      out.lineTo(grid * film.x[at], grid * film.y[at]);
    }
    out.stroke();
  }

  /** Crosses where the coach told its players that everybody is. */
  drawPlacesTold(message) {
    const out = this.out;
    const d = 0.5 * this.radius;
    out.strokeStyle = this.colours.opponent;
    out.lineWidth = 0.15 * this.radius;
    out.beginPath();
    for (let i = 0; i < message.places.length; i += 2) {
      const x = message.places[i];
      const y = message.places[i + 1];
      out.moveTo(x - d, y - d);
      out.lineTo(x + d, y + d);
      out.moveTo(x - d, y + d);
      out.lineTo(x + d, y - d);
    }
    out.stroke();
  }

  /** The kicker, the two opponents, and the types that the message names. */
  drawNamed(message) {
    const out = this.out;
    const r = this.radius;
    const theirs = message.side === 'l' ? 11 : 0;
    const ring = (player, colour, dash) => {
      out.strokeStyle = colour;
      out.lineWidth = 0.35 * r;
      out.setLineDash(dash);
      this.disc(this.places[2 * player], this.places[2 * player + 1], 1.9 * r);
      out.stroke();
      out.setLineDash([]);
    };
    if (message.kicker > 0) ring(11 - theirs + message.kicker - 1, this.colours.kicker, []);
    for (const shirt of message.opponents) ring(theirs + shirt - 1, this.colours.opponent, [0.9 * r, 0.6 * r]);
    out.fillStyle = this.colours.opponent;
    for (let n = 0; n < 11; ++n) {
      const player = theirs + n;
      if (message.types[n] >= 0 && !Number.isNaN(this.places[2 * player])) {
        this.label('type ' + message.types[n], this.places[2 * player], this.places[2 * player + 1] - 2.3 * r, 0.95 * r);
      }
    }
  }

  /** The player at a point of the canvas, -1 for none. */
  playerAt(clientX, clientY) {
    const box = this.canvas.getBoundingClientRect();
    const metres = 114 / box.width;
    const x = (clientX - box.left - box.width / 2) * metres;
    const y = (clientY - box.top - box.height / 2) * metres;
    let best = -1;
    let least = Math.max(1.8 * this.radius, 22 * metres);
    for (let i = 0; i < PLAYERS; ++i) {
      const away = Math.hypot(this.places[2 * i] - x, this.places[2 * i + 1] - y);
      if (away < least) [best, least] = [i, away];
    }
    return best;
  }
}

/** Plays a film: time, buttons, keys, the time line. */
class Replay {
  constructor(film) {
    this.film = film;
    this.position = 0;  // frames, with a share between two of them
    this.playing = false;
    this.live = false;  // shows the newest frame
    this.element = (id) => document.getElementById(id);
    this.picture = new Picture(this.element('pitch'), film);
    this.element('left').textContent = film.match.teams[0];
    this.element('right').textContent = film.match.teams[1];
    this.listen();
    this.showMarks();
    this.seek(0);
  }

  get speed() { return Number(this.element('speed').value); }
  get frame() { return Math.floor(this.position); }

  seek(position) {
    this.position = Math.min(Math.max(position, 0), Math.max(this.film.frames - 1, 0));
    this.show();
  }

  seekCycle(cycle) { this.seek(this.film.frameOf(cycle)); }

  step(frames) {
    this.pause();
    this.seek(this.frame + frames);
  }

  play() {
    if (this.playing) return;
    if (this.frame >= this.film.frames - 1 && !this.live) this.position = 0;
    this.playing = true;
    this.element('play').textContent = 'Pause';
    let last = performance.now();
    const tick = (now) => {
      if (!this.playing) return;
      const SECOND = 1000;
      const passed = Math.min(Math.max(now - last, 0), SECOND / 4);
      last = now;
      const end = this.film.frames - 1;
      this.seek(this.position + passed * this.speed / this.film.match.step);
      if (this.position >= end && !this.live) this.pause();
      requestAnimationFrame(tick);
    };
    requestAnimationFrame(tick);
  }

  pause() {
    this.playing = false;
    this.element('play').textContent = 'Play';
  }

  show() {
    this.picture.draw(this.position);
    if (this.film.frames === 0) return;
    const frame = this.frame;
    const cycle = this.film.cycle(frame);
    if (frame !== this.shown) this.tell(frame, cycle);
    this.shown = frame;
    const share = frame / Math.max(this.film.frames - 1, 1);
    this.element('cursor').style.left = 100 * share + '%';
  }

  /** The words beside the picture, written when they change. */
  tell(frame, cycle) {
    const [left, right] = this.film.score(frame);
    const write = (id, text) => {
      const node = this.element(id);
      if (node.textContent !== text) node.textContent = text;
    };
    write('score', left + ' : ' + right);
    write('cycle', 'cycle ' + cycle);
    write('mode', this.words(this.film.mode(frame)));
    write('player', this.aboutPlayer(frame));
    write('told', this.aboutMessage(cycle));
    const line = this.element('line');
    line.setAttribute('aria-valuemax', this.film.frames - 1);
    line.setAttribute('aria-valuenow', frame);
    line.setAttribute('aria-valuetext', 'cycle ' + cycle + ', ' + left + ' to ' + right);
  }

  /** A play mode in words: "kick in, Alpha". */
  words(mode) {
    const sided = /^(.*)_([lr])$/.exec(mode);
    const {teams} = this.film.match;
    return (sided ? sided[1] + ', ' + teams[sided[2] === 'l' ? 0 : 1] : mode).replaceAll('_', ' ');
  }

  aboutPlayer(frame) {
    const player = this.picture.chosen;
    if (player < 0) return '';
    const {match} = this.film;
    const at = frame * OBJECTS + player;
    const name = match.teams[player < 11 ? 0 : 1] + ' ' + (player % 11 + 1);
    if (this.film.x[at] === NOWHERE) return name + ': not on the field';
    const grid = match.code.grid;
    const parts = [];
    const type = this.film.types(frame)[player];
    if (type >= 0) parts.push('type ' + type);
    parts.push('at ' + (grid * this.film.x[at]).toFixed(1) + ', ' + (grid * this.film.y[at]).toFixed(1));
    const before = Math.max(frame - 5, 0) * OBJECTS + player;
    if (frame >= 5 && this.film.x[before] !== NOWHERE) {
      const way = grid * Math.hypot(this.film.x[at] - this.film.x[before], this.film.y[at] - this.film.y[before]);
      parts.push((way / 5 / match.step * 1000).toFixed(1) + ' m/s');
    }
    const stamina = this.film.state[at] & 31;
    if (stamina <= 30) parts.push('stamina ' + Math.round(stamina / 0.3) + ' %');
    const numbers = (match.players || [])[player];
    return name + ': ' + parts.join(', ') + (numbers ? '. In the match: ' + numbers : '');
  }

  aboutMessage(cycle) {
    const told = this.film.message(cycle);
    if (!told) return '';
    const team = this.film.match.teams[told.side === 'l' ? 0 : 1];
    const types = told.types.map((type, n) => (type < 0 ? '' : (n + 1) + ' has ' + type)).filter(Boolean);
    return 'Coach of ' + team + ' in cycle ' + Film.last(this.film.changes.messages, cycle)[0] + ': ' +
      (told.kicker > 0 ? told.kicker + ' takes the kick' : 'nobody is to take a kick') +
      (told.opponents.length ? '; rearmost opponents ' + told.opponents.join(' and ') : '') +
      (types.length ? '; types: ' + types.join(', ') : '; no types known') + '.';
  }

  choose(player) {
    this.picture.chosen = player === this.picture.chosen ? -1 : player;
    this.shown = -1;
    this.show();
  }

  /** Puts the marks on the time line: a row for each kind, dark for the left team, light for the right. */
  showMarks() {
    const line = this.element('line');
    for (const old of line.querySelectorAll('i, s')) old.remove();
    for (const [cycle, kind, side, text] of this.film.changes.marks) {
      const mark = document.createElement('i');
      mark.className = kind + ' ' + side;
      mark.title = 'cycle ' + cycle + ': ' + text;
      mark.style.left = 100 * this.film.frameOf(cycle) / Math.max(this.film.frames - 1, 1) + '%';
      line.append(mark);
    }
    const last = this.film.cycle(this.film.frames - 1);
    const step = [100, 500, 1000, 5000, 10000].find((cycles) => last / cycles <= 7) || last;
    for (let cycle = step; cycle < last; cycle += step) {
      const tick = document.createElement('s');
      tick.textContent = cycle;
      tick.style.left = 100 * this.film.frameOf(cycle) / Math.max(this.film.frames - 1, 1) + '%';
      line.append(tick);
    }
  }

  /** To the next mark of the time line in a direction. */
  jump(direction) {
    const LEAD = 20;  // cycles before it
    const cycle = this.film.cycle(this.frame);
    const starts = this.film.changes.marks.map((mark) => Math.max(mark[0] - LEAD, 0)).sort((a, b) => a - b);
    const next = direction > 0 ? starts.find((start) => start > cycle) : starts.findLast((start) => start < cycle);
    if (next !== undefined) this.seekCycle(next);
  }

  /** Opens the scene that the address names: "#t=1234". */
  openScene() {
    const named = /^#t=(\d{1,9})$/.exec(location.hash);
    if (!named) return false;
    this.pause();
    this.live = false;
    this.seekCycle(Number(named[1]));
    this.element('replay').scrollIntoView({block: 'start'});
    return true;
  }

  listen() {
    const on = (id, act) => this.element(id).addEventListener('click', act);
    on('play', () => (this.playing ? this.pause() : this.play()));
    on('back', () => this.step(-1));
    on('forth', () => this.step(1));
    on('previous', () => this.jump(-1));
    on('next', () => this.jump(1));
    this.element('messages').addEventListener('change', (event) => {
      this.picture.showMessages = event.target.checked;
      this.show();
    });
    this.picture.canvas.addEventListener('click', (event) => {
      this.choose(this.picture.playerAt(event.clientX, event.clientY));
    });
    this.listenToLine();
    document.addEventListener('keydown', (event) => this.key(event));
    window.addEventListener('hashchange', () => this.openScene());
    // A link to a scene in this page plays it, also the one that the address already names.
    document.addEventListener('click', (event) => {
      const link = event.target.closest('a');
      if (!link || !/^#t=/.test(link.getAttribute('href') || '')) return;
      event.preventDefault();
      history.replaceState(null, '', link.getAttribute('href'));
      if (this.openScene()) this.play();
    });
    window.addEventListener('resize', () => {
      this.picture.resize();
      this.show();
    });
  }

  listenToLine() {
    const line = this.element('line');
    const seek = (event) => {
      const box = line.getBoundingClientRect();
      this.live = false;
      this.seek(Math.round((event.clientX - box.left) / box.width * (this.film.frames - 1)));
    };
    line.addEventListener('pointerdown', (event) => {
      line.setPointerCapture(event.pointerId);
      seek(event);
    });
    line.addEventListener('pointermove', (event) => {
      if (line.hasPointerCapture(event.pointerId)) seek(event);
    });
  }

  key(event) {
    if (event.ctrlKey || event.altKey || event.metaKey || event.target.closest('select, input, a, summary')) return;
    const SECOND = 10;
    const frames = event.shiftKey ? SECOND : 1;
    const acts = {
      ' ': () => (this.playing ? this.pause() : this.play()),
      ArrowLeft: () => this.step(-frames),
      ArrowRight: () => this.step(frames),
      Home: () => this.step(-this.film.frames),
      End: () => this.step(this.film.frames),
      n: () => this.jump(1),
      p: () => this.jump(-1),
      Escape: () => this.choose(-1),
    };
    // Keys of the whole page are for the replay only while it can be seen, but its own always are.
    if (!acts[event.key] || (event.key === ' ' && event.target.closest('button'))) return;
    const box = this.element('replay').getBoundingClientRect();
    if (box.bottom < 0 || box.top > window.innerHeight) return;
    event.preventDefault();
    acts[event.key]();
  }
}

document.documentElement.classList.add('scripted');
{
  const match = JSON.parse(document.getElementById('match').textContent);
  const film = new Film(match);
  film.add(document.getElementById('frames').textContent, match.frames);
  window.replay = new Replay(film);
  window.replay.openScene();
}
