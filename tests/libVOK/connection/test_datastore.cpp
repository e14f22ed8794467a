#include "datastore.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "support/server.h"

namespace vok::test {
namespace {

/// The announcement of a type at a time, which its decay tells as well.
SensorData at(long time, int type = 0) {
  SensorData data;
  data.type = SENSOR_TYPE_PLAYER_TYPE;
  data.time = time;
  data.playerType.player_type = type;
  data.playerType.player_decay = static_cast<double>(time);
  return data;
}

/// The times of all records; negative those of type 1.
std::vector<long> drain(SensorDataStore& store) {
  std::vector<long> times;
  for (SensorData data; store.getNext(data);)
    times.push_back(data.playerType.player_type == 1 ? -data.time : data.time);
  return times;
}

TEST(DataStore, HoldsNineteenRecordsAndSetsTheTypesThatItDumpsAside) {
  SensorDataStore store;
  StderrCapture errors;
  for (int t = 1; t <= 19; ++t) store.put(at(t, t % 2));
  EXPECT_EQ(errors.take(), "");
  store.put(at(20));
  EXPECT_EQ(errors.take(),
            "DataStore: more than 20 unprocessed SensorDatas, dumping oldest one.\n");
  for (const int t : {21, 22}) store.put(at(t));
  ASSERT_EQ(store.setAside().size(), 2);
  EXPECT_EQ(store.setAside()[0].player_decay, 3) << "the latest dumped announcement counts";
  EXPECT_EQ(store.setAside()[1].player_decay, 2);
  const std::vector<long> kept = drain(store);
  EXPECT_EQ(std::pair(kept.size(), kept.front()), std::pair(19UL, 4L));
}

TEST(DataStore, InsertsByTimeBeforeEqualOnesAndInAWrappedRingAtTheEnd) {
  SensorDataStore store;
  for (const long t : {4, 6, 7}) store.put(at(t));
  for (const SensorData& late : {at(5), at(6, 1), at(3)}) store.insert(late);
  EXPECT_EQ(drain(store), (std::vector<long>{3, 4, 5, -6, 6, 7}));
  for (long t = 6; t < 19; ++t) store.put(at(t));
  drain(store);
  for (const long t : {30, 31}) store.put(at(t));  // the write index passes the ring's end
  store.insert(at(10));
  EXPECT_EQ(drain(store), (std::vector<long>{30, 31, 10}));
}

}  // namespace
}  // namespace vok::test
