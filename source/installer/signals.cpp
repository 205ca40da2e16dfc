// signals.cpp: the handlers and what they write.
#include "installer/signals.h"

#include "installer/console_log.h"
#include "installer/installer_state.h"

#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>

namespace {

constexpr std::size_t message_size = title_size + 64;

// Formatted beforehand: a handler may only write.
struct SignalMessage {
    char text[message_size];
    std::size_t length;
};

SignalMessage sigterm_message;
SignalMessage sigint_message;
SignalMessage sighup_message;

void prepare(SignalMessage* message, const char* name) {
    const int length = std::snprintf(message->text, message_size, "** INFO ** %s: Caught %s\n",
                                     installer.title, name);
    message->length = length < 0 ? 0 : static_cast<std::size_t>(length);
    if (message->length >= message_size) {
        message->length = message_size - 1;
    }
}

std::atomic<std::int32_t> handlers_at_work{0};

void request_cancel(const SignalMessage& message) {
    const int saved_errno = errno;
    handlers_at_work += 1;
    // In this order: whatever becomes of the line, the run is over.
    installer.cancel_requested = 1;
    log_without_waiting(message.text, message.length);
    handlers_at_work -= 1;
    errno = saved_errno;
}

void on_sigterm(int /*signal*/) {
    request_cancel(sigterm_message);
}

void on_sigint(int /*signal*/) {
    request_cancel(sigint_message);
}

void on_sighup(int /*signal*/) {
    request_cancel(sighup_message);
}

void install(int signal, void (*handler)(int), struct sigaction* saved) {
    struct sigaction action {};
    action.sa_handler = handler;
    sigemptyset(&action.sa_mask);
    sigaction(signal, &action, saved);
}

sigset_t handled_signals() {
    sigset_t handled;
    sigemptyset(&handled);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        sigaddset(&handled, signal);
    }
    return handled;
}

} // namespace

void ignore_failed_writes() {
    install(SIGPIPE, SIG_IGN, nullptr);
    install(SIGXFSZ, SIG_IGN, nullptr);
}

void install_signal_handlers() {
    prepare(&sigterm_message, "SIGTERM");
    prepare(&sigint_message, "SIGINT");
    prepare(&sighup_message, "SIGHUP");
    install(SIGTERM, on_sigterm, &installer.saved_sigterm);
    install(SIGINT, on_sigint, &installer.saved_sigint);
    install(SIGHUP, on_sighup, &installer.saved_sighup);
    take_signals_here(true); // a parent may have left them blocked
}

void take_signals_here(bool here) {
    const sigset_t handled = handled_signals();
    pthread_sigmask(here ? SIG_UNBLOCK : SIG_BLOCK, &handled, nullptr);
}

void wait_for_handlers() {
    while (handlers_at_work != 0) {
        usleep(1000);
    }
}

void restore_signal_handlers() {
    sigaction(SIGTERM, &installer.saved_sigterm, nullptr);
    sigaction(SIGINT, &installer.saved_sigint, nullptr);
    sigaction(SIGHUP, &installer.saved_sighup, nullptr);
}
