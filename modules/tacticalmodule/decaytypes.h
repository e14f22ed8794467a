// The opponents' types from the decay of their speed.
//
// A player that touches nothing moves by its velocity, noise included, and then keeps its type's
// decay times that velocity: new velocity = decay * way, in both coordinates. The views show both
// with six significant digits, so a type fits a step when the equation holds within half a unit of
// the last printed digits, and a step of half a metre tells decays apart that differ by 0.0002. The
// bounds are hard: the true type fits every step without a contact, and after a contact hardly any
// type fits. So a few steps decide. Where one step ends the next begins: steps in a row, taken
// together, show the decay as one long step does, and so tell types apart that are nearly the same.
#pragma once

#include <vector>

#include "playertypedata.h"
#include "worldmodel.h"

namespace vok {

class DecayTypes {
 public:
  using Opponents = Squad<WPlayer>;
  using Verdicts = Squad<int>;

  /// `types` is the number of player types; world and beliefs have as many.
  explicit DecayTypes(std::size_t types);

  /// Once a cycle. `before` are the opponents at the previous call, `nextCycle` when that was one
  /// cycle ago. Updates the beliefs and, where the evidence suffices, the verdicts (-1: none).
  void observe(const Worldmodel& world, const Opponents& before, bool nextCycle,
               TypeBeliefs& beliefs, Verdicts& verdicts);

 private:
  /// The evidence about one opponent; the votes of its types are the beliefs' scores.
  struct Evidence {
    int steps = 0;       ///< that told something
    int against = 0;     ///< steps that the verdict does not fit
    bool inRow = false;  ///< the tracks lead to the previous view
    /// The two greatest accelerations that were certainly reached, metres per cycle.
    double strongest = 0;
    double secondStrongest = 0;
  };

  /// How far the true coordinate may lie from the printed one, metres.
  struct Offset {
    double low = 0;
    double high = 0;
  };

  /// What a type leaves open of a player's true place, after the steps in a row that fit it.
  struct Track {
    Offset x;
    Offset y;
    bool holds = false;
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
  bool mayHaveTouched(const Worldmodel& world, int n) const;
  void verify(const Worldmodel& world, int n, const Step& step, TypeBeliefs& beliefs,
              Verdicts& verdicts);
  bool count(const Worldmodel& world, int n, const Step& step,
             std::vector<PlayerTypeData>& beliefs);
  void decide(const Worldmodel& world, int n, TypeBeliefs& beliefs, Verdicts& verdicts);
  bool isUnlikelyTwin(const Worldmodel& world, int n, std::size_t type,
                      const Verdicts& verdicts) const;
  void endTracks(int n);
  void forget(int n, TypeBeliefs& beliefs, Verdicts& verdicts);

  Squad<Evidence> evidence_;
  Squad<std::vector<Track>> tracks_;  ///< by shirt number and type
  Squad<int> changesSeen_;
  Limits limits_;
  bool wasInPlay_ = false;
};

}  // namespace vok
