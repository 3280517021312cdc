// rkinfotest.h - the built-in tests that print the processor, the operating system and the computer.

#ifndef RAKOVA_RKINFOTEST_H
#define RAKOVA_RKINFOTEST_H

#include "rktest.h"

class __rkTarvoCpuTest : public __rkInfoTest {
public:
    using __rkInfoTest::__rkInfoTest;
    void printInformation() override;

    void printHeader();
    void printSignature();
    void printFlags();
    void printMultiThreading();
    void printCacheParms();
    static bool printCacheParms(unsigned int i); // false behind the last cache
    void printL2Features();
};

class __rkOSTest : public __rkInfoTest {
public:
    using __rkInfoTest::__rkInfoTest;
    void printInformation() override;
    static char const *s_os;
};

class __rkHostTest : public __rkInfoTest {
public:
    using __rkInfoTest::__rkInfoTest;
    void printInformation() override;
    static char const *shost;
};

#endif
