// rkctrl.h - guards that gather what the floating-point units saw during a measurement.

#ifndef RAKOVA_RKCTRL_H
#define RAKOVA_RKCTRL_H

#include "rkctrlbase.h"

// start and stop stand next to the calls of the primitive: single register operations. A bit once seen stays
// until init or clear. Bad is any exception but Inexact.
class rk87 {
public:
    rk87();
    ~rk87();
    rk87(rk87 const &) = delete;
    rk87 &operator=(rk87 const &) = delete;

    void init();
    void clear();
    void start();
    void stop();
    unsigned int getCW() const { return m_cw; }
    unsigned int getSW() const { return m_sw; }
    rkString strSW() const;
    rkString strCW() const;
    bool badStatus() const;

    ts87Base *m_base; // owned
    unsigned int m_cw;
    unsigned int m_sw;
};

class rkSSX {
public:
    rkSSX();
    ~rkSSX();
    rkSSX(rkSSX const &) = delete;
    rkSSX &operator=(rkSSX const &) = delete;

    void init();
    void clear();
    void start();
    void stop();
    unsigned int get() const { return m_ssx; }
    rkString strExceptionState() const;
    rkString strCW() const;
    bool badStatus() const;

    tsSSXBase *m_base; // owned
    unsigned int m_ssx;
};

extern rk87 g_ctrl87;
extern rkSSX g_ssx;

#endif
