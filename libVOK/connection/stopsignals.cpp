#include "stopsignals.h"

#include <unistd.h>

#include <csignal>
#include <ctime>

namespace vok {

namespace {

constexpr long STOP_ALARM_NS = 50'000'000;

timer_t stopTimer{};
volatile std::sig_atomic_t stopRequested = 0;
volatile std::sig_atomic_t isInOrder = 0;

void requestStop(int /*signal*/) {
  if (isInOrder == 0) _exit(0);  // reading a file or asking a name server may take long
  stopRequested = 1;
  const itimerspec soon{{0, STOP_ALARM_NS}, {0, STOP_ALARM_NS}};
  timer_settime(stopTimer, 0, &soon, nullptr);
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

  // A request that comes just before a wait does not interrupt it. So each request starts a timer
  // whose repeated alarms interrupt the wait.
  sigevent alarm{};
  alarm.sigev_notify = SIGEV_SIGNAL;
  alarm.sigev_signo = SIGALRM;
  if (timer_create(CLOCK_MONOTONIC, &alarm, &stopTimer) != 0) return;

  action.sa_handler = requestStop;
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
  struct sigaction before {};
  sigaction(SIGHUP, nullptr, &before);
  const bool startedByNohup = before.sa_handler == SIG_IGN;
  if (!startedByNohup) sigaction(SIGHUP, &action, nullptr);
}

void stopInOrder() {
  isInOrder = 1;
}

bool isStopRequested() {
  return stopRequested != 0;
}

}  // namespace vok
