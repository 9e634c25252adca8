#include "host/progress/interrupt_guard.h"

#include <atomic>
#include <csignal>

namespace ombrix {

namespace {

std::atomic<int> interruptAsked{0};
static_assert(std::atomic<int>::is_always_lock_free, "a signal handler writes it");
int guardCount = 0;
struct sigaction earlierInterrupt, earlierTerminate;

void onSignal(int number)
{
    if (interruptAsked.exchange(1) == 0) return;
    ::signal(number, SIG_DFL);
    ::raise(number);
}

} // namespace

InterruptGuard::InterruptGuard()
{
    if (guardCount++ > 0) return;
    struct sigaction action = {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    ::sigaction(SIGINT, &action, &earlierInterrupt);
    ::sigaction(SIGTERM, &action, &earlierTerminate);
}

InterruptGuard::~InterruptGuard()
{
    if (--guardCount > 0) return;
    ::sigaction(SIGINT, &earlierInterrupt, nullptr);
    ::sigaction(SIGTERM, &earlierTerminate, nullptr);
    interruptAsked = 0;
}

bool InterruptGuard::interrupted()
{
    return interruptAsked != 0;
}

} // namespace ombrix
