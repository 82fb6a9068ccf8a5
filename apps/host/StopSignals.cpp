#include "host/StopSignals.h"

#include <poll.h>
#include <pthread.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <csignal>

#include "Files.h"

StopSignals::StopSignals() {
  sigset_t signals;
  ::sigemptyset(&signals);
  ::sigaddset(&signals, SIGTERM);
  ::sigaddset(&signals, SIGINT);
  const int error = ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  if (error != 0) fail("pthread_sigmask", error);
  descriptor_ = ::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
  if (descriptor_ < 0) fail("signalfd");
}

// They stay blocked: one that came would end the program in the middle of its own end.
StopSignals::~StopSignals() { ::close(descriptor_); }

bool StopSignals::comeWithin(std::chrono::milliseconds time) const {
  pollfd signal{.fd = descriptor_, .events = POLLIN, .revents = 0};
  return ::poll(&signal, 1, static_cast<int>(time.count())) > 0;
}
