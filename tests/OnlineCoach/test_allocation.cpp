// Nothing is allocated in a cycle of the running match. The operators below serve the whole test
// program and do nothing but count, and that only while a test measures. They are replaced
// together, since a sanitizer's own operators would not take back what another one's have given;
// those for arrays call them, but for a sanitizer's.
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

#include "Config.h"
#include "cycleloop.h"
#include "gamelog.h"
#include "matchanalysis.h"
#include "matchrecorder.h"
#include "support/coach.h"

namespace {

bool counting = false;
long allocations = 0;

void* allocate(std::size_t size) noexcept {
  if (counting) ++allocations;
  return std::malloc(size == 0 ? 1 : size);
}

}  // namespace

void* operator new(std::size_t size) {
  if (void* memory = allocate(size)) return memory;
  throw std::bad_alloc();
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return allocate(size);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}

namespace vok::test {
namespace {

// What is allocated while the coach takes in a text and runs the cycle that it may begin.
long allocatedBy(VokCoach& coach, const std::string& text) {
  allocations = 0;
  counting = true;
  coach.comm->receiveText(text.c_str());
  coach.step();
  counting = false;
  return allocations;
}

// With the optional keys on, ten answers to the requests for types come as well.
class Cycle : public CoachTest, public testing::WithParamInterface<bool> {};

TEST_P(Cycle, AllocatesNothing) {
  for (const char* key : {"tac_typesFromDecay", "types_withinLimits", "types_replaceTired"})
    setEntry(key, GetParam() ? "1" : "0");
  setEntry("types_byAbility", GetParam() ? "2" : "0");
  Lines texts = recording();
  // What the recording lacks: a substitution in the match, types beside the queue, noise.
  for (const char* text :
       {"(hear 301 referee goal_l_1)", "(change_player_type 7, 2)",
        "(hear 301 online_coach_left (freeform \"vokqq\"))", "(", "(nonsense 4)"})
    texts.emplace_back(text);
  texts.insert(texts.end(), 30, playerType(3));
  for (const long time : {301, 305}) texts.push_back(view(time));

  counting = true;
  checkIn(texts);
  EXPECT_GT(allocations, 0) << "nothing is counted";
  std::size_t said = 0;
  std::size_t asked = 0;
  for (std::size_t i = 3; i < texts.size(); ++i) {
    EXPECT_EQ(allocatedBy(*coach, texts[i]), 0) << i << texts[i].substr(0, 60);
    const std::string sent = server.sent();
    said += count(sent, "(say ");
    for (std::size_t n = count(sent, "(change_player_type "); n > 0; --n, ++asked)
      EXPECT_EQ(allocatedBy(*coach, "(warning max_of_that_type_on_field)"), 0) << sent;
  }
  EXPECT_EQ(said, 5U) << "kick-off, free kick, corner kick and its repetition, free kick";
  EXPECT_GE(asked, GetParam() ? 11U : 9U) << "the refused are asked for again within the limits";
}

INSTANTIATE_TEST_SUITE_P(Keys, Cycle, testing::Bool());

TEST(Recording, AllocatesNothing) {
  MatchRecorder recorder("/dev/null");
  recorder.start();
  const std::string text = view(7) + "\n";
  allocations = 0;
  counting = true;
  for (int i = 0; i < 3000; ++i) recorder.received(text);
  counting = false;
  EXPECT_EQ(allocations, 0);
}

TEST(MatchStatistics, AllocateNothingAfterTheirStart) {
  gamelogs::GameLog log;
  analysis::MatchAnalysis match;
  std::string error;
  ASSERT_TRUE(log.open(VOK_SOURCE_DIR "/tests/analysis/data/full6.rcg.gz", error)) << error;
  analysis::Told told = log.next();
  match.start(log.rules());
  int frames = 0;
  allocations = 0;
  counting = true;
  for (; told != analysis::Told::END; told = log.next()) {
    if (told == analysis::Told::FRAME) match.frame(log.frame());
    if (told == analysis::Told::CALL) match.call(log.call());
    if (told == analysis::Told::SCORE) match.score(log.score());
    if (told == analysis::Told::FRAME) ++frames;
  }
  counting = false;
  EXPECT_GT(frames, 100);
  EXPECT_EQ(allocations, 0);
}

// A player's, from recorded senses to what its modules answer.
TEST(PlayerCycle, AllocatesNothing) {
  ASSERT_TRUE(Config::readFile(PLAIN_CONFIG));
  const std::string file =
      runCommand("cat " VOK_SOURCE_DIR "/tests/data/player_right_10.txt").second;
  TextServer server;
  Lines texts;
  for (const std::string& line : lines(file)) {
    if (line.find("\t<\t") != std::string::npos) texts.push_back(line.substr(line.find('<') + 2));
  }
  for (std::size_t i = 0; i < 3; ++i) server.add(texts[i]);
  Comm comm("Beta", CLIENT_FIELDPLAYER, server, 0, false, 7, 8, SIDE_RIGHT);
  ASSERT_EQ(comm.connect(), COMM_OK);
  Worldmodel world(&comm);
  TacticalModule tactical(&world, nullptr);
  const GoalShotEval shots;
  const PassEval passes(&shots);
  std::array<char, PlayerMessage::LENGTH + 1> said{};
  int ratings = 0;
  const StderrCapture errors;
  for (std::size_t i = 3; i < texts.size(); ++i) {
    allocations = 0;
    counting = true;
    comm.receiveText(texts[i].c_str());
    if (takeCycle(comm, world)) {
      tactical.feedbackWorld();
      for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n)
        ratings += passes.ourEvalProp(&world, n).score + shots.otherEval(&world, n).score;
      tactical.encodeAudio(tactical.determineMessageType(), said.data());
    }
    counting = false;
    EXPECT_EQ(allocations, 0) << i << texts[i].substr(0, 60);
  }
  EXPECT_LE(world.my.age, 1);
  EXPECT_GT(world.time, 290);
  EXPECT_GT(ratings, 0);
}

}  // namespace
}  // namespace vok::test
