#include "cli/interruption.h"

#include <unistd.h>

#include <csignal>
#include <initializer_list>

#include "cli/exit_status.h"

namespace cli {
namespace {

volatile std::sig_atomic_t notesOnly = 0;
volatile std::sig_atomic_t noted = 0;
volatile std::sig_atomic_t last = 0;

/// Who says the same thing twice won't wait. A terminal that closes may send two different signals for one wish.
extern "C" void onSignal(int signal) {
    const bool isRepeated = signal == last;
    last = signal;
    if (notesOnly && !isRepeated) {
        if (!noted) noted = signal;
        return;
    }
    static constexpr char sentence[] = "\nvornaset: stopped; no file was written.\n";
    [[maybe_unused]] ssize_t written = ::write(STDERR_FILENO, sentence, sizeof sentence - 1);
    ::_exit(exitSignalBase + signal);
}

}  // namespace

void watchSignals() {
    struct sigaction action {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction former {};
        ::sigaction(signal, nullptr, &former);
        // Who started the program with a signal ignored (nohup, a background job) means it.
        if (former.sa_handler != SIG_IGN) ::sigaction(signal, &action, nullptr);
    }
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}

void noteSignalsOnly() {
    notesOnly = 1;
}

int notedSignal() {
    return noted;
}

}  // namespace cli
