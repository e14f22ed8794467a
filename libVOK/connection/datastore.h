// The queue of parsed datagrams between the receive loop and the world model.
#pragma once

#include <array>
#include <vector>

#include "sensordata.h"

namespace vok {

/// What the server tells of a change of a player's type, see `SensorData`.
struct TypeChange {
  explicit TypeChange(const SensorData& data)
      : number(data.number),
        ourTeamChanged(data.ourTeamChanged),
        heteroType(data.heteroType),
        announcedType(data.announcedType) {}
  SensorData record() const;

  int number;
  bool ourTeamChanged;
  int heteroType;
  int announcedType;
};

/// A ring of 20 whole records that holds 19; a record too many drops the oldest one. Player types
/// and changes of types among the dropped are set aside, since none of them may be lost: after a
/// check-in more announcements come than the ring holds, and while the clock stands in a foul, the
/// views alone fill it.
class SensorDataStore {
 public:
  static constexpr int SIZE = 20;

  SensorDataStore();

  /// Appends a record.
  void put(const SensorData& data);

  /// Puts a record behind all of smaller time and before those of equal or greater time. When the
  /// ring has wrapped it appends.
  void insert(const SensorData& data);

  /// Takes the oldest record; false leaves `out` as it is.
  bool getNext(SensorData& out);

  /// The same without a copy: the record lives until the next one is stored. Null when there is
  /// none.
  const SensorData* takeNext();

  /// Player types that the ring had to drop, in the order of their arrival.
  const std::vector<PlayerType>& setAside() const { return droppedTypes_; }
  /// Changes of types that it had to drop, in the order of their arrival.
  const std::vector<TypeChange>& changesSetAside() const { return droppedChanges_; }
  void clearSetAside();

 private:
  void advanceWrite();
  void setTypeAside(const PlayerType& type);

  std::array<SensorData, SIZE> store_;
  int readIndex = 0;
  int writeIndex = 0;
  std::vector<PlayerType> droppedTypes_;
  std::vector<TypeChange> droppedChanges_;
};

}  // namespace vok
