// The heterogeneous player types of a match and their texts.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "dice.h"

namespace vok::practicematch {

/// One type; metres and cycles. Starts as the default type, id 0.
struct HeteroType {
  double speedMax = 1.05;
  double staminaIncMax = 45;
  double decay = 0.4;
  double inertia = 5;
  double dashPowerRate = 0.006;
  double size = 0.3;
  double kickableMargin = 0.7;
  double kickRand = 0.1;
  double extraStamina = 50;
  double effortMax = 1;
  double effortMin = 0.6;
};

/// The default type and `count` - 1 others. What is better in one respect is worse in another.
std::vector<HeteroType> drawTypes(int count, Dice& dice);

std::string playerTypeText(int id, const HeteroType& type);
std::string playerParamText(int types, int ptMax, std::uint64_t seed);

/// The server's parameters. `synch`: the clock waits for the coach.
std::string serverParamText(int halfTimeCycles, bool synch, int port);

/// Six significant digits, as the server writes every real number.
void appendNumber(std::string& text, double number);

}  // namespace vok::practicematch
