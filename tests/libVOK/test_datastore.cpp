#include "datastore.h"

#include <gtest/gtest.h>

#include "support/server.h"

namespace vok::test {
namespace {

constexpr const char* dumping =
    "DataStore: more than 20 unprocessed SensorDatas, dumping oldest one.\n";

SensorData at(long time) {
  SensorData data;
  data.time = time;
  return data;
}

std::vector<long> drain(SensorDataStore& store) {
  std::vector<long> times;
  for (SensorData data; store.getNext(data);) times.push_back(data.time);
  return times;
}

TEST(DataStore, HoldsNineteenRecordsAndDumpsTheOldestOfTwenty) {
  SensorDataStore store;
  StderrCapture errors;
  SensorData data = at(7);
  EXPECT_FALSE(store.getNext(data));
  EXPECT_EQ(data.time, 7) << "an empty one leaves the target as it is";
  for (long t = 1; t <= 19; ++t) store.put(at(t));
  EXPECT_EQ(errors.take(), "");
  store.put(at(20));
  EXPECT_EQ(errors.take(), dumping);
  for (long t = 2; t <= 20; ++t) {
    EXPECT_TRUE(store.getNext(data));
    EXPECT_EQ(data.time, t);
  }
}

TEST(DataStore, InsertsByTimeBeforeEqualOnesAndInAWrappedRingAtTheEnd) {
  SensorDataStore store;
  for (const long t : {4, 6, 7}) store.put(at(t));
  store.insert(at(5));
  SensorData first = at(6);
  first.number = 1;
  store.insert(first);
  SensorData data;
  for (const auto& [time, number] : {std::pair(4, -1), {5, -1}, {6, 1}, {6, -1}, {7, -1}}) {
    ASSERT_TRUE(store.getNext(data));
    EXPECT_EQ(std::pair(static_cast<int>(data.time), data.number), std::pair(time, number));
  }
  for (long t = 5; t < 19; ++t) store.put(at(t));
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
