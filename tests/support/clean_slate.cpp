// Each test finds the server's parameters and the configuration as a new process has them.
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "Config.h"
#include "support/param_keeper.h"

namespace vok::test {
namespace {

class CleanSlate : public testing::EmptyTestEventListener {
  void OnTestStart(const testing::TestInfo&) override {
    // Not earlier than here: the tables may not be there yet.
    static const std::vector<double> PARAMETERS = ParamKeeper::values();
    ParamKeeper::store(PARAMETERS);
    Config::clear();
  }
};

const bool IS_INSTALLED = [] {
  testing::UnitTest::GetInstance()->listeners().Append(std::make_unique<CleanSlate>().release());
  return true;
}();

}  // namespace
}  // namespace vok::test
