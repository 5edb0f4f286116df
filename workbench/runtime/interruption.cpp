#include "workbench/runtime/interruption.h"

#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include "workbench/runtime/temporary_files.h"

namespace workbench {
namespace {

constexpr int statusOfSignals = 128;

struct LastAct {
  std::mutex mutex;
  std::function<void()> act;
};

LastAct& lastAct() {
  static LastAct& theAct = *new LastAct;  // never destroyed, as the thread that uses it may outlive all else
  return theAct;
}

bool isIgnored(int signal) {
  struct sigaction action{};
  return ::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

[[noreturn]] void end(int signal) {
  temporaryFiles().removeForGood();
  {
    const std::lock_guard lock(lastAct().mutex);
    if (lastAct().act) lastAct().act();
  }
  ::_exit(statusOfSignals + signal);
}

}  // namespace

void endOnInterruption() {
  sigset_t signals;
  ::sigemptyset(&signals);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    if (!isIgnored(signal)) ::sigaddset(&signals, signal);
  }
  // Threads that are made from here on block them as well, so that only the waiting one gets them.
  sigset_t before;
  ::pthread_sigmask(SIG_BLOCK, &signals, &before);
  try {
    std::thread([signals] {
      int signal = 0;
      while (::sigwait(&signals, &signal) != 0) continue;
      end(signal);
    }).detach();
  } catch (const std::system_error&) {
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);  // without a thread to spare the signals do what they always do
  }
}

void beforeInterruptedEnd(std::function<void()> act) {
  const std::lock_guard lock(lastAct().mutex);
  lastAct().act = std::move(act);
}

}  // namespace workbench
