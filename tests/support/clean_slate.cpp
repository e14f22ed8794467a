// Each test finds the server's parameters and the configuration as a new process has them.
#include <gtest/gtest.h>

#include <memory>

#include "Config.h"
#include "support/param_keeper.h"

namespace vok::test {
namespace {

class CleanSlate : public testing::EmptyTestEventListener {
  void OnTestProgramStart(const testing::UnitTest&) override {
    // Never destroyed: the process of a death test ends after the tables of the parameters.
    parameters = std::make_unique<ParamKeeper>().release();
  }
  void OnTestEnd(const testing::TestInfo&) override {
    parameters->restore();
    Config::clear();
  }
  const ParamKeeper* parameters = nullptr;
};

const bool isInstalled = [] {
  testing::UnitTest::GetInstance()->listeners().Append(std::make_unique<CleanSlate>().release());
  return true;
}();

}  // namespace
}  // namespace vok::test
