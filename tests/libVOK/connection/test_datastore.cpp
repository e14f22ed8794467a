#include "datastore.h"

#include <gtest/gtest.h>

#include <numeric>

#include "support/server.h"

namespace vok::test {
namespace {

SensorData at(long time, int number = -1) {
  SensorData data;
  data.time = time;
  data.number = number;
  return data;
}

/// The times of all records; negative that of one with a number.
std::vector<long> drain(SensorDataStore& store) {
  std::vector<long> times;
  for (SensorData data; store.getNext(data);)
    times.push_back(data.number < 0 ? data.time : -data.time);
  return times;
}

TEST(DataStore, HoldsNineteenRecordsAndDumpsTheOldestOfTwenty) {
  SensorDataStore store;
  StderrCapture errors;
  SensorData data = at(7);
  EXPECT_FALSE(store.getNext(data));
  EXPECT_EQ(data.time, 7) << "an empty one leaves the target as it is";
  std::vector<long> kept(19);
  std::iota(kept.begin(), kept.end(), 2);
  for (long t = 1; t <= 19; ++t) store.put(at(t));
  EXPECT_EQ(errors.take(), "");
  store.put(at(20));
  EXPECT_EQ(errors.take(),
            "DataStore: more than 20 unprocessed SensorDatas, dumping oldest one.\n");
  EXPECT_EQ(drain(store), kept);
}

TEST(DataStore, InsertsByTimeBeforeEqualOnesAndInAWrappedRingAtTheEnd) {
  SensorDataStore store;
  for (const long t : {4, 6, 7}) store.put(at(t));
  for (const SensorData& late : {at(5), at(6, 1), at(3)}) store.insert(late);
  EXPECT_EQ(drain(store), (std::vector<long>{3, 4, 5, -6, 6, 7}));
  for (long t = 6; t < 19; ++t) store.put(at(t));
  drain(store);
  store.put(at(30));
  store.put(at(31));  // the write index is now below the read index
  store.insert(at(10));
  EXPECT_EQ(drain(store), (std::vector<long>{30, 31, 10}));
}

TEST(DataStore, SetsDumpedPlayerTypesAside) {
  SensorDataStore store;
  StderrCapture errors;
  for (int id = 0; id < 22; ++id) {
    SensorData data;
    data.type = SENSOR_TYPE_PLAYER_TYPE;
    data.playerType.player_type = id % 2;  // announced again and again
    data.playerType.player_decay = id;
    store.put(data);
  }
  ASSERT_EQ(store.setAside().size(), 2);
  EXPECT_EQ(store.setAside()[0].player_type, 0);
  EXPECT_EQ(store.setAside()[0].player_decay, 2) << "the latest dumped announcement counts";
  EXPECT_EQ(store.setAside()[1].player_decay, 1);
  store.clearSetAside();
  EXPECT_TRUE(store.setAside().empty());
}

}  // namespace
}  // namespace vok::test
