// The opponents' types from the decay of their speed.
//
// A player that touches nothing moves by its velocity, noise included, and then keeps its type's
// decay times that velocity: new velocity = decay * way, in both coordinates. The views show both
// with six significant digits, so a type fits a step when the equation holds within half a unit of
// the last printed digits, and a step of half a metre tells decays apart that differ by 0.0002. The
// bounds are hard: the true type fits every step without a contact, and after a contact hardly any
// type fits. So a few steps decide, and types that are nearly the same are told apart in time.
#pragma once

#include <array>

#include "playertypedata.h"
#include "worldmodel.h"

namespace vok {

class DecayTypes {
 public:
  using Opponents = std::array<WPlayer, 12>;
  using Verdicts = std::array<int, 12>;

  /// Once a cycle. `before` are the opponents at the previous call, `nextCycle` when that was one
  /// cycle ago. Updates the beliefs and, where the evidence suffices, the verdicts (-1: none).
  void observe(const Worldmodel& world, const Opponents& before, bool nextCycle,
               TypeBeliefs& beliefs, Verdicts& verdicts);

 private:
  /// The evidence about one opponent; the votes of its types are the beliefs' scores.
  struct Evidence {
    int steps = 0;    ///< that told something
    int against = 0;  ///< steps that the verdict does not fit
    /// The two greatest accelerations that were certainly reached, metres per cycle.
    double strongest = 0;
    double secondStrongest = 0;
  };

  /// What all announced types have in common.
  struct Limits {
    bool known = false;  ///< all types are announced
    double way = 0;      ///< that a player covers in a cycle
    double contact = 0;  ///< distance at which two players may have touched
    double ballContact = 0;
  };

  struct Step;

  void readLimits(const Worldmodel& world);
  bool mayHaveTouched(const Worldmodel& world, std::size_t n) const;
  void verify(const Worldmodel& world, std::size_t n, const Step& step, TypeBeliefs& beliefs,
              Verdicts& verdicts);
  void count(const Worldmodel& world, std::size_t n, const Step& step,
             std::vector<PlayerTypeData>& beliefs);
  void decide(const Worldmodel& world, std::size_t n, TypeBeliefs& beliefs, Verdicts& verdicts);
  bool isUnlikelyTwin(const Worldmodel& world, std::size_t n, std::size_t type,
                      const Verdicts& verdicts) const;
  void forget(std::size_t n, TypeBeliefs& beliefs, Verdicts& verdicts);

  std::array<Evidence, 12> evidence;
  std::array<int, 12> changesSeen{};
  Limits limits;
  bool wasInPlay = false;
};

}  // namespace vok
