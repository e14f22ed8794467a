// What the rules of the game fix: the measures of the pitch, in metres, and the shirt numbers.
//
// The field frame has its origin on the centre spot, x along the pitch and y across it, so that the
// goal lines are at x = +-HALF_LENGTH and the side lines at y = +-HALF_WIDTH.
#pragma once

#include <array>
#include <cstddef>

namespace vok {

inline constexpr double HALF_LENGTH = 52.5;
inline constexpr double HALF_WIDTH = 34.0;
inline constexpr double PENALTY_AREA_LENGTH = 16.5;
inline constexpr double PENALTY_AREA_X = HALF_LENGTH - PENALTY_AREA_LENGTH;  ///< |x| of its front
inline constexpr double PENALTY_AREA_HALF_WIDTH = 20.16;
inline constexpr double GOAL_AREA_LENGTH = 5.5;
inline constexpr double GOAL_AREA_HALF_WIDTH = 9.16;
inline constexpr double GOAL_HALF_WIDTH = 7.01;     ///< the simulator's default
inline constexpr double FREE_KICK_DISTANCE = 9.15;  ///< also the radius of the centre circle

inline constexpr int FIRST_SHIRT = 1;
inline constexpr int LAST_SHIRT = 11;
inline constexpr int FIRST_FIELD_PLAYER = 2;  ///< 1 is the goalie's number in this team

constexpr bool isShirtNumber(int number) {
  return FIRST_SHIRT <= number && number <= LAST_SHIRT;
}

/// One value for each player of a team, by shirt number. The slot 0 is there as well, for a client
/// without a number; iteration visits the players 1 to 11 only. An index outside 0..11 is the
/// caller's fault and not checked in a release build.
template <typename T>
struct Squad {
  std::array<T, LAST_SHIRT + 1> slots{};

  T& operator[](int number) { return slots[static_cast<std::size_t>(number)]; }
  const T& operator[](int number) const { return slots[static_cast<std::size_t>(number)]; }

  auto begin() { return slots.begin() + FIRST_SHIRT; }
  auto begin() const { return slots.begin() + FIRST_SHIRT; }
  auto end() { return slots.end(); }
  auto end() const { return slots.end(); }

  /// Sets every slot, 0 too.
  void fill(const T& value) { slots.fill(value); }

  bool operator==(const Squad&) const = default;
};

}  // namespace vok
