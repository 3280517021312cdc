// rktrace.h - which step of the program is running, for failure messages and for the trace of calls.

#ifndef RAKOVA_RKTRACE_H
#define RAKOVA_RKTRACE_H

#include <type_traits>

#include "rkstring.h"

// The list holds the names of the steps entered, latest first.
class rkTrace : public rkList<rkString> {
public:
    void traceIn(rkString name);
    // Closes the step and all that were entered after it without being closed.
    void traceOut(rkString name);
    rkString getCurName() const;    // "" if there is none
    void setCurName(rkString name); // forgets the steps entered after the latest one of this name
    void clearText();               // empties the log and the stars; the names stay
    void flush();

    rkString m_traceLog; // the latest trace lines, at most 64 KiB: the block is taken once, so that adding is
                         // cheap
    rkString m_level;    // one "*" for each open step
};

extern rkTrace g_trace;

// Runs a step between trace-in and trace-out. A step that throws stays open, so that the message can name it.
template <class Step>
auto rkTraced(char const *name, Step step) {
    g_trace.traceIn(name);
    if constexpr (std::is_void_v<decltype(step())>) {
        step();
        g_trace.traceOut(name);
    } else {
        auto result = step();
        g_trace.traceOut(name);
        return result;
    }
}

#endif
