// scripts/start-team, with a player that ends as it is told.
#include <gtest/gtest.h>

#include "support/server.h"

namespace vok::test {
namespace {

const std::string SCRIPT = VOK_SOURCE_DIR "/scripts/start-team";

/// Lost, killed, refused, without an answer, and at last at the end of the match.
const std::string PLAYER = R"(#!/bin/sh
echo "$*" >>"${0%/*}/calls"
echo "player: number 7 of Alpha on the left"
case $(wc -l <"${0%/*}/calls") in 1) exit 2 ;; 2) kill -9 $$ ;; 3) exit 3 ;; 4) exit 4 ;; esac
)";

TEST(StartTeam, BringsAPlayerBackUnderTheNumberThatTheServerGave) {
  const std::string run =
      "d=$(mktemp -d) && cd $d && touch agent.conf && cat >player <<'END'\n" + PLAYER +
      "END\nchmod +x player && " + SCRIPT +
      " -t Alpha -p 7 host $d 1 2>/dev/null; echo $? >>calls; cat calls; rm -r $d";
  const Lines calls = lines(runCommand(run).second);
  ASSERT_EQ(calls.size(), 6U);
  EXPECT_TRUE(calls[0].starts_with("-t Alpha -h host -p 7 -f /") && calls[0].ends_with(" -g"));
  for (std::size_t i = 1; i < 5; ++i) EXPECT_EQ(calls[i], calls[0] + " -r 7");
  EXPECT_EQ(calls[5], "0");
}

TEST(StartTeam, WrongArgumentsGetOneLine) {
  const std::string place = " host " VOK_BIN_DIR;
  // The status stands behind the one line.
  for (const std::string& arguments : Lines{place, place + " 0", place + " 13", "host /no 3",
                                            "-p 65534" + place + " 3", "-t a.b" + place + " 3"})
    EXPECT_EQ(lines(runCommand(SCRIPT + " " + arguments + " 2>&1; echo $?").second).at(1), "2");
}

}  // namespace
}  // namespace vok::test
