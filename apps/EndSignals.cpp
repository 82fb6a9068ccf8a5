#include "EndSignals.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdint>

#include "Files.h"

namespace {

constexpr std::array kSignals{SIGINT, SIGTERM, SIGHUP};

// A signal's handler reaches nothing but what is static.
int wakened = -1;
volatile std::sig_atomic_t signalThatCame = 0;

void wake() {
  const std::uint64_t lngOne = 1;
  // Full is what it is when it was asked before; there is nothing else that a handler could do.
  static_cast<void>(::write(wakened, &lngOne, sizeof lngOne) + 0);
}

extern "C" void noteSignal(int signal) {
  signalThatCame = signal;
  wake();
}

}  // namespace

EndSignals::EndSignals() {
  wakened = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  if (wakened < 0) fail("eventfd");
  for (const int signal : kSignals) {
    struct sigaction before {};
    ::sigaction(signal, nullptr, &before);
    if (before.sa_handler == SIG_IGN) continue;  // as `nohup` wants it
    struct sigaction action {};
    action.sa_handler = noteSignal;
    action.sa_flags = static_cast<int>(SA_RESETHAND) | SA_RESTART;
    ::sigaction(signal, &action, nullptr);
  }
}

EndSignals::~EndSignals() {
  for (const int signal : kSignals) {
    struct sigaction now {};
    ::sigaction(signal, nullptr, &now);
    if (now.sa_handler == noteSignal) std::signal(signal, SIG_DFL);
  }
  ::close(wakened);
}

int EndSignals::descriptor() const { return wakened; }

void EndSignals::ask() const { wake(); }

void EndSignals::endIfAsked() const {
  if (signalThatCame == 0) return;
  std::signal(signalThatCame, SIG_DFL);
  std::raise(signalThatCame);
}
