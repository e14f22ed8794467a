// One function names all members, for writing and for reading; what it is given decides. Integers
// come with the range in which a world can have them, so that a damaged one cannot become an index.
#include "worldstream.h"

#include <charconv>
#include <climits>
#include <cmath>
#include <cstdint>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <string>
#include <string_view>
#include <system_error>

namespace vok {

namespace {

constexpr std::string_view HEAD = "world 1";
constexpr std::size_t LONGEST_TEXT = 4'000'000;
constexpr long MOST_TYPES = 1000;    // as the parameters' limits, see `numPlayerTypes`
constexpr long MOST_CHANGES = 1011;  // those of `numSubsMax`, and a change of each player

class Writer {
 public:
  explicit Writer(std::ostream& out) : out_(out) {}

  void group(std::string_view name) {
    out_ << (empty_ ? "" : "\n") << name;
    empty_ = false;
  }
  template <typename T>
  void integer(const T& value, long, long) {
    write(static_cast<long>(value));
  }
  void real(double value) { write(value); }
  template <typename T>
  void resize(const std::vector<T>& values, long most) {
    integer(values.size(), 0, most);
  }

 private:
  template <typename Number>
  void write(Number number) {
    char text[40];
    const auto end = std::to_chars(std::begin(text), std::end(text), number).ptr;
    out_ << ' ' << std::string_view(text, end);
  }

  std::ostream& out_;
  bool empty_ = true;
};

/// After a fault it reads no more; the values then are of no use.
class Reader {
 public:
  explicit Reader(std::istream& in) : in_(in) {}

  void group(std::string_view name) {
    group_ = name;
    if (next() != name) fail("is not there");
  }
  template <typename T>
  void integer(T& value, long low, long high) {
    const long number = read<long>();
    if (number < low || number > high) return fail("has a number out of range");
    value = static_cast<T>(number);
  }
  void real(double& value) { value = read<double>(); }
  void real(Angle& value) { value = read<double>(); }
  template <typename T>
  void resize(std::vector<T>& values, long most) {
    long size = 0;
    integer(size, 0, most);
    values.resize(static_cast<std::size_t>(size));
  }

  void fail(const char* what) {
    if (fault_.empty()) fault_ = group_ + " " + what;
  }
  const std::string& fault() const { return fault_; }

 private:
  const std::string& next() {
    constexpr int LONGEST = 64;
    text_.clear();
    if (fault_.empty() && !(in_ >> std::setw(LONGEST) >> text_)) fail("ends early");
    return text_;
  }
  template <typename Number>
  Number read() {
    Number number{};
    const std::string& text = next();
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end || !std::isfinite(static_cast<double>(number))) {
      fail("has something that is no number");
    }
    return number;
  }

  std::istream& in_;
  std::string text_;
  std::string group_;
  std::string fault_;
};

// The order of the members is that of their declarations.

template <typename Form, typename V>
void vector(Form& form, V& v) {
  form.real(v.x);
  form.real(v.y);
}

template <typename Form, typename Object>
void object(Form& form, Object& o) {
  vector(form, o.pos);
  form.integer(o.age, 0, NEVER);
  form.integer(o.state, UNSAFE, VISUAL);
}

template <typename Form, typename Object>
void moved(Form& form, Object& o) {
  object(form, o);
  vector(form, o.v);
  for (auto* value : {&o.decay, &o.vmax, &o.size}) form.real(*value);
  form.integer(o.coneTime, INT_MIN, INT_MAX);
}

template <typename Form, typename Player>
void player(Form& form, Player& p) {
  moved(form, p);
  form.integer(p.bodyAge, 0, NEVER);
  for (auto* angle : {&p.bodyDir, &p.faceDir, &p.pointDir, &p.headAngle}) form.real(*angle);
  form.integer(p.number, -1, LAST_SHIRT);
  form.integer(p.isGoalie, GOALIE_UNKNOWN, GOALIE_FALSE);
  form.integer(p.tacticalNo, -1, LAST_SHIRT);
  form.integer(p.cyclesSinceTackle, 0, NEVER);
  for (auto* value :
       {&p.stamina, &p.effort, &p.recovery, &p.staminaIncMax, &p.inertiaFactor, &p.dashPowerRate,
        &p.kickableMargin, &p.kickRand, &p.extraStamina, &p.effortMin, &p.effortMax}) {
    form.real(*value);
  }
  vector(form, p.push);
  form.integer(p.type, -1, MOST_TYPES - 1);
}

template <typename Form, typename Type>
void playerType(Form& form, Type& t) {
  auto& [state, speedMax, decay, size, staminaInc, inertia, dashRate, margin, rand, extra,
         effortMin, effortMax] = t;
  form.integer(state, -1, MOST_TYPES - 1);
  for (auto* value : {&speedMax, &decay, &size, &staminaInc, &inertia, &dashRate, &margin, &rand,
                      &extra, &effortMin, &effortMax}) {
    form.real(*value);
  }
}

template <typename Form, typename Known>
void gaussian(Form& form, Known& known) {
  for (auto& value : known.mean) form.real(value);
  for (auto& row : known.cov) {
    for (auto& value : row) form.real(value);
  }
}

template <typename Form, typename World>
void members(Form& form, World& world) {
  // A new member stops the compiler here: it belongs to a group, too.
  auto& [my, ourTeam, otherTeam, ourGoalieNo, otherGoalieNo, maxPlayersOurTeam, maxPlayersOtherTeam,
         ball, ourGoal, otherGoal, collState, time, visualAge, cyclesSinceCatch, cyclesSincePointTo,
         ourSide, penaltySide, playMode, ourScore, otherScore, action, types, ourSubs, otherSubs,
         numOurSubs, numOtherSubs, ourTypeChanges, otherTypeChanges, ownChangesWithoutComma,
         kickCount, dashCount, turnCount, sayCount, turnNeckCount, catchCount, moveCount,
         changeViewCount, tackleCount, pointToCount, attentionToCount, viewWidth, viewQuality, vDir,
         vAngle, vAge, vCounter, aOppDir, aOppAge, aOppCounter, aOurDir, aOurAge, aOurCounter,
         heard, heardCount, oldBallRelpos, oldMy, waitForSenseBody, seenAs, place, ourMotion,
         otherMotion, ballMotion, neck, comm] = world;
  static_cast<void>(comm);

  form.group("match");
  form.integer(time, 0, INT_MAX);
  form.integer(ourSide, SIDE_UNKNOWN, SIDE_RIGHT);
  form.integer(penaltySide, SIDE_UNKNOWN, SIDE_RIGHT);
  form.integer(playMode, PLAY_MODE_UNKNOWN, PLAY_MODE_PENALTY_SCORE_THEM);
  for (auto* score : {&ourScore, &otherScore}) form.integer(*score, INT_MIN, INT_MAX);
  for (auto* number : {&ourGoalieNo, &otherGoalieNo}) form.integer(*number, -1, LAST_SHIRT);
  for (auto* size : {&maxPlayersOurTeam, &maxPlayersOtherTeam}) form.integer(*size, 0, LAST_SHIRT);
  form.group("ages");
  for (auto* age : {&visualAge, &cyclesSinceCatch, &cyclesSincePointTo}) {
    form.integer(*age, 0, NEVER);
  }
  form.group("counts");
  for (auto* count :
       {&kickCount, &dashCount, &turnCount, &sayCount, &turnNeckCount, &catchCount, &moveCount,
        &changeViewCount, &tackleCount, &pointToCount, &attentionToCount}) {
    form.integer(*count, LONG_MIN, LONG_MAX);
  }

  form.group("my");
  player(form, my);
  form.group("oldMy");
  player(form, oldMy);
  form.group("ball");
  moved(form, ball);
  vector(form, oldBallRelpos);
  form.integer(collState, 0, static_cast<long>(CollisionState::PROCESSED));
  form.group("goals");
  object(form, ourGoal);
  object(form, otherGoal);
  form.group("ourTeam");
  for (auto& mate : ourTeam.slots) player(form, mate);
  form.group("otherTeam");
  for (auto& opponent : otherTeam.slots) player(form, opponent);

  form.group("types");
  form.resize(types, MOST_TYPES);
  for (auto& type : types) playerType(form, type);
  form.group("changes");
  for (auto* ring : {&ourSubs, &otherSubs}) {
    form.resize(*ring, MOST_CHANGES);
    for (auto& change : *ring) {
      form.integer(change.number, 0, LAST_SHIRT);
      form.integer(change.time, LONG_MIN, LONG_MAX);
    }
  }
  for (auto* count : {&numOurSubs, &numOtherSubs}) form.integer(*count, 0, INT_MAX);
  for (auto* counts : {&ourTypeChanges, &otherTypeChanges}) {
    for (auto& count : counts->slots) form.integer(count, 0, INT_MAX);
  }
  form.integer(ownChangesWithoutComma, 0, 1);

  form.group("action");
  form.integer(action.command, NO_COMMAND, TACKLE_COMMAND);
  form.real(action.moment);
  form.real(action.power);
  vector(form, action.pos);
  form.group("sight");
  form.integer(viewWidth, VIEW_WIDTH_NARROW, VIEW_WIDTH_NONE);
  form.integer(viewQuality, VIEW_QUALITY_LOW, VIEW_QUALITY_HIGH);
  form.integer(waitForSenseBody, 0, 1);
  for (auto* angles : {&vDir, &vAngle, &aOppDir, &aOurDir}) {
    for (auto& angle : *angles) form.real(angle);
  }
  for (auto* ages : {&vAge, &aOppAge, &aOurAge}) {
    for (auto& age : *ages) form.integer(age, 0, NEVER);
  }
  for (auto* slot : {&vCounter, &aOppCounter, &aOurCounter}) form.integer(*slot, 0, 9);
  for (auto& seen : seenAs) {
    form.integer(seen.team, TEAM_UNKNOWN, TEAM_THEM);
    form.integer(seen.number, -1, LAST_SHIRT);
  }
  form.group("heard");
  form.integer(heardCount, 0, LONG_MAX);
  for (auto& message : heard) {
    form.integer(message.sender, -1, LAST_SHIRT);
    for (auto& character : message.text) form.integer(character, CHAR_MIN, CHAR_MAX);
  }
  form.group("known");
  form.real(neck);
  Localisation::reveal(place, [&form](auto& state, auto& isKnown) {
    gaussian(form, state);
    form.integer(isKnown, 0, 1);
  });
  gaussian(form, ballMotion);
  for (auto* motions : {&ourMotion, &otherMotion}) {
    for (auto& motion : motions->slots) gaussian(form, motion);
  }
}

/// FNV-1a.
std::uint64_t checksum(std::string_view text) {
  std::uint64_t sum = 0xcbf29ce484222325;
  for (const char c : text) sum = (sum ^ static_cast<unsigned char>(c)) * 0x100000001b3;
  return sum;
}

/// The text up to its last line, which holds the checksum. Empty when there is none.
std::string takeText(std::istream& in, std::string& checksum) {
  std::string text;
  for (std::string line; text.size() <= LONGEST_TEXT && std::getline(in, line);) {
    if (line.starts_with("end ")) {
      checksum = line.substr(4);
      return text;
    }
    text += line + "\n";
  }
  return "";
}

bool refuse(const std::string& why) {
  std::cerr << "Worldmodel: cannot read the world: " << why << "\n";
  return false;
}

}  // namespace

void writeWorld(std::ostream& out, const Worldmodel& world) {
  std::ostringstream text;
  text << HEAD << "\n";
  Writer writer(text);
  members(writer, world);
  text << "\n";
  out << text.str() << "end " << std::to_string(checksum(text.str())) << "\n";
}

bool readWorld(std::istream& in, Worldmodel& world) {
  std::string told;
  const std::string text = takeText(in, told);
  if (text.empty()) return refuse("it has no end");
  if (told != std::to_string(checksum(text))) return refuse("it was changed, by its checksum");
  std::istringstream lines(text);
  std::string head;
  if (!std::getline(lines, head) || head != HEAD) return refuse("its first line is another");

  Worldmodel read = world;
  Reader reader(lines);
  members(reader, read);
  if (!reader.fault().empty()) return refuse(reader.fault());
  if (std::string rest; lines >> rest) return refuse("there is more than its members");
  world = std::move(read);
  return true;
}

}  // namespace vok
