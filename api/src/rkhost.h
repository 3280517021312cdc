// rkhost.h - names of the computer and its operating system, number of processors.

#ifndef RAKOVA_RKHOST_H
#define RAKOVA_RKHOST_H

class rkHost {
public:
    rkHost();
    char const *text() const { return m_text; }
    char m_text[1024]; // host name
};

class rkOS {
public:
    rkOS();
    char const *text() const { return m_text; }
    char m_text[1024]; // "sysname (release, machine)"
};

int rkGetNumOfProcessors(); // online ones, at least 1

#endif
