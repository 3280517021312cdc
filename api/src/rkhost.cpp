// rkhost.cpp - names of the computer and its operating system, number of processors.

#include "rkhost.h"

#include <limits.h>
#include <stdio.h>
#include <sys/utsname.h>
#include <unistd.h>

rkHost::rkHost() : m_text() {
    gethostname(m_text, sizeof m_text);
    m_text[sizeof m_text - 1] = '\0'; // a name that is cut off need not be terminated
}

rkOS::rkOS() : m_text() {
    utsname names;
    if (uname(&names) != 0) return;
    snprintf(m_text, sizeof m_text, "%s (%s, %s)", names.sysname, names.release, names.machine);
}

int rkGetNumOfProcessors() {
    long n = sysconf(_SC_NPROCESSORS_ONLN);
    if (n > INT_MAX) return INT_MAX;
    return n < 1 ? 1 : static_cast<int>(n);
}
