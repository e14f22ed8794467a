#include "stopsignals.h"

#include <unistd.h>

#include <array>
#include <csignal>

namespace vok {

namespace {

constexpr std::array STOP_SIGNALS = {SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t stopRequested = 0;
volatile std::sig_atomic_t isInOrder = 0;
bool isHandled = false;

// Before `stopInOrder` it is empty.
sigset_t waitMask = [] {
  sigset_t none;
  sigemptyset(&none);
  return none;
}();

void requestStop(int /*signal*/) {
  if (isInOrder == 0) _exit(0);  // reading a file or asking a name server may take long
  stopRequested = 1;
}

}  // namespace

void stopOnSignals() {
  // Without a handler an alarm would end the process before the cycle timing installs its own.
  struct sigaction action {};
  sigemptyset(&action.sa_mask);
  action.sa_handler = [](int) {};
  sigaction(SIGALRM, &action, nullptr);

  // Writing to a standard error that is closed or full must not end the process either.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);

  action.sa_handler = requestStop;
  for (const int number : STOP_SIGNALS) {
    struct sigaction before {};
    sigaction(number, nullptr, &before);
    const bool startedByNohup = number == SIGHUP && before.sa_handler == SIG_IGN;
    if (!startedByNohup) sigaction(number, &action, nullptr);
  }
  isHandled = true;
}

void stopInOrder() {
  isInOrder = 1;
  sigset_t held;
  sigemptyset(&held);
  sigaddset(&held, SIGALRM);
  // A program without our handlers keeps its own ways with the others.
  if (isHandled) {
    for (const int number : STOP_SIGNALS) sigaddset(&held, number);
  }
  sigset_t before;
  sigemptyset(&before);
  sigprocmask(SIG_BLOCK, &held, &before);
  // What was held before by the caller stays so in waits, but for those that end them.
  waitMask = before;
  for (const int number : {SIGALRM, SIGINT, SIGTERM, SIGHUP}) {
    if (sigismember(&held, number) == 1) sigdelset(&waitMask, number);
  }
}

bool isStopRequested() {
  return stopRequested != 0;
}

const sigset_t& signalsInWaits() {
  return waitMask;
}

}  // namespace vok
