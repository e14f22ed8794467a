// Each test finds the server's parameters and the configuration as a new process has them.
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "Config.h"
#include "support/param_keeper.h"

namespace vok::test {
namespace {

class CleanSlate : public testing::EmptyTestEventListener {
  void OnTestProgramStart(const testing::UnitTest&) override {
    parameters_ = ParamKeeper::values();  // not earlier: the tables may not be there yet
  }
  void OnTestEnd(const testing::TestInfo&) override {
    ParamKeeper::store(parameters_);
    Config::clear();
  }

  std::vector<double> parameters_;
};

const bool IS_INSTALLED = [] {
  testing::UnitTest::GetInstance()->listeners().Append(std::make_unique<CleanSlate>().release());
  return true;
}();

}  // namespace
}  // namespace vok::test
