// rkexception.cpp - hardware faults become exceptions.

#include "rkexception.h"

#include <signal.h>
#include <stdio.h>
#include <string.h>

jmp_buf tsSignal::m_jmpbuf;
int tsSignal::m_code;
int tsSignal::m_guards;

tsSignal _g_signal;

// The handlers' own stack, so that running out of the other one can be told.
alignas(16) static char g_handlerStack[128 * 1024];

rkException::rkException(rkString const &info) {
    snprintf(m_info, sizeof m_info, "%s", info.c_str());
    snprintf(m_msg, sizeof m_msg, "--KEL. Exception: %s", info.c_str());
}

rkException::rkException(char const *info) {
    m_info[0] = 0;
    snprintf(m_msg, sizeof m_msg, "--KEL. Signal: %s", info ? info : "");
}

// Without a guard there is nowhere to jump to. A fault comes again when the handler returns; a signal that
// was sent does not, so it is sent anew.
static void onSignal(int sig, siginfo_t *info, void *) {
    if (tsSignal::m_guards > 0) tsSignal::sig_fpe(sig, 0);
    signal(sig, SIG_DFL);
    if (info->si_code <= 0) raise(sig);
}

tsSignal::tsSignal() {
    stack_t stack = {};
    stack.ss_sp = g_handlerStack;
    stack.ss_size = sizeof g_handlerStack;
    sigaltstack(&stack, nullptr);

    struct sigaction action = {};
    action.sa_sigaction = onSignal;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK | SA_NODEFER;
    sigemptyset(&action.sa_mask);
    sigaction(SIGFPE, &action, nullptr);
    sigaction(SIGILL, &action, nullptr);
    sigaction(SIGSEGV, &action, nullptr);
}

void tsSignal::sig_fpe(int sig, int) {
    m_code = sig;
    longjmp(m_jmpbuf, -1);
}

char const *tsSignal::getInfo() {
    switch (m_code) {
        case SIGFPE:
            return "FP error, such as overflow, division by zero, invalid operation.";
        case SIGILL:
            return "Illegal instruction.";
        case SIGSEGV:
            return "Illegal storage access.";
        default:
            return "Unknown exception";
    }
}

rkSignalGuard::rkSignalGuard() {
    memcpy(m_outer, tsSignal::m_jmpbuf, sizeof m_outer);
    ++tsSignal::m_guards;
}

rkSignalGuard::~rkSignalGuard() {
    memcpy(tsSignal::m_jmpbuf, m_outer, sizeof m_outer);
    --tsSignal::m_guards;
}
