// rkctrlbase.h - defaults and texts of the floating-point control and status words.

#ifndef RAKOVA_RKCTRLBASE_H
#define RAKOVA_RKCTRLBASE_H

#include "rkstring.h"

// The x87 unit. A division by zero traps on purpose.
class ts87Base {
public:
    ts87Base() { setDefault(); }

    unsigned int getCW();
    unsigned int getSW();
    void set(unsigned int cw, unsigned int mask);
    void clear();
    void enableExceptions();
    void disableExceptions();
    void disableInexactException(); // the flags now raised become masks
    void setDefault();
    static rkString strSW(unsigned int sw); // raised exceptions, "Ok" if there are none
    static rkString strCW(unsigned int cw); // rounding, precision, masked exceptions

    static unsigned int Precision;
    static unsigned int Rounding;
    static unsigned int Exception;
};

// The SIMD unit. Without one, writers do nothing and the texts say so.
class tsSSXBase {
public:
    tsSSXBase();

    unsigned int get();
    unsigned int set(unsigned int value, unsigned int mask);
    void clear();
    void enableExceptions();
    void disableExceptions();
    void disableInexactException();
    void setDefault();
    void destroy(); // fills the SIMD registers with NaNs
    rkString strExceptionState(unsigned int value);
    rkString strCW(unsigned int value);

    bool m_hasSSX;

    static unsigned int Rounding;
    static unsigned int FlushZero;
    static unsigned int Exception;
};

#endif
