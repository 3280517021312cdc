// rkexception.h - the one exception, and the turning of hardware faults into it.

#ifndef RAKOVA_RKEXCEPTION_H
#define RAKOVA_RKEXCEPTION_H

#include <exception>
#include <setjmp.h>

#include "rkstring.h"

// Thrown by value; has no heap part. Longer texts are cut to the arrays.
class rkException : public std::exception {
public:
    explicit rkException(rkString const &info); // an error of the system: "--KEL. Exception: "
    explicit rkException(char const *info); // a signal, or a literal: "--KEL. Signal: "; info() stays empty

    char *msg() { return m_msg; }   // with the prefix, for the user
    char *info() { return m_info; } // the bare text

    char m_msg[256];
    char m_info[256];
};

// Installs the handlers of SIGFPE, SIGILL and SIGSEGV, which run on a stack of their own, leave their signal
// unblocked and jump to m_jmpbuf. A signal outside of any guard takes its default action.
class tsSignal {
public:
    tsSignal();

    [[noreturn]] static void sig_fpe(int sig, int);
    static int code() { return m_code; }
    static char const *getInfo(); // text of the last signal

    static jmp_buf m_jmpbuf;
    static int m_code;   // last signal
    static int m_guards; // guards in force
};

extern tsSignal _g_signal; // its construction installs the handlers

// Opens a guarded stretch; while it lives, m_jmpbuf is this guard's. At its end the outer guard's is back.
//
//     rkSignalGuard guard;
//     try {
//         if (_setjmp(tsSignal::m_jmpbuf)) throw rkException(tsSignal::getInfo());
//         ...
//     } catch (rkException &e) { ... }
class rkSignalGuard {
public:
    rkSignalGuard();
    ~rkSignalGuard();
    rkSignalGuard(rkSignalGuard const &) = delete;
    rkSignalGuard &operator=(rkSignalGuard const &) = delete;

private:
    jmp_buf m_outer;
};

#endif
