#include "datastore.h"

#include <algorithm>
#include <cstddef>
#include <iostream>

namespace vok {

namespace {

constexpr int next(int index) {
  return (index + 1) % SensorDataStore::SIZE;
}

// As many types as a server can announce. The bound keeps the memory flat whatever comes.
constexpr std::size_t MAX_SET_ASIDE = 1000;

}  // namespace

SensorData TypeChange::record() const {
  SensorData data;
  data.type = SENSOR_TYPE_PLAYER_CHANGED;
  data.number = number;
  data.ourTeamChanged = ourTeamChanged;
  data.heteroType = heteroType;
  data.announcedType = announcedType;
  return data;
}

SensorDataStore::SensorDataStore() {
  droppedTypes_.reserve(MAX_SET_ASIDE);
  droppedChanges_.reserve(MAX_SET_ASIDE);
}

void SensorDataStore::put(const SensorData& data) {
  store_[static_cast<std::size_t>(writeIndex)] = data;
  advanceWrite();
}

void SensorDataStore::insert(const SensorData& data) {
  int pos = writeIndex;
  // Slot numbers, not ring distances: a wrapped ring moves nothing.
  for (; pos > readIndex; --pos) {
    const SensorData& before = store_[static_cast<std::size_t>(pos - 1)];
    if (before.time < data.time) break;
    store_[static_cast<std::size_t>(pos)] = before;
  }
  store_[static_cast<std::size_t>(pos)] = data;
  advanceWrite();
}

void SensorDataStore::advanceWrite() {
  writeIndex = next(writeIndex);
  if (writeIndex != readIndex) return;
  const SensorData& oldest = store_[static_cast<std::size_t>(readIndex)];
  if (oldest.type == SENSOR_TYPE_PLAYER_TYPE) setTypeAside(oldest.playerType);
  if (oldest.type == SENSOR_TYPE_PLAYER_CHANGED && droppedChanges_.size() < MAX_SET_ASIDE) {
    droppedChanges_.emplace_back(oldest);
  }
  readIndex = next(writeIndex);
  std::cerr << "DataStore: more than " << SIZE << " unprocessed SensorDatas, dumping oldest one.\n";
}

void SensorDataStore::setTypeAside(const PlayerType& type) {
  const auto known =
      std::find_if(droppedTypes_.begin(), droppedTypes_.end(),
                   [&](const PlayerType& t) { return t.player_type == type.player_type; });
  if (known != droppedTypes_.end()) {
    *known = type;
  } else if (droppedTypes_.size() < MAX_SET_ASIDE) {
    droppedTypes_.push_back(type);
  }
}

void SensorDataStore::clearSetAside() {
  droppedTypes_.clear();
  droppedChanges_.clear();
}

bool SensorDataStore::getNext(SensorData& out) {
  const SensorData* record = takeNext();
  if (record != nullptr) out = *record;
  return record != nullptr;
}

const SensorData* SensorDataStore::takeNext() {
  if (readIndex == writeIndex) return nullptr;
  const SensorData* record = &store_[static_cast<std::size_t>(readIndex)];
  readIndex = next(readIndex);
  return record;
}

}  // namespace vok
