// rkctrl.cpp - guards that gather what the floating-point units saw.

#include "rkctrl.h"

rk87 g_ctrl87;
rkSSX g_ssx;

static bool isBad(rkString const &text) {
    return text.find("?") != rkString::npos;
}

// ---- x87 ----------------------------------------------------------------------

rk87::rk87() : m_base(new ts87Base) {
    init();
}

rk87::~rk87() {
    delete m_base;
}

void rk87::init() {
    m_cw = m_sw = 0;
    m_base->setDefault();
}

void rk87::clear() {
    m_cw = m_sw = 0;
    m_base->clear();
}

void rk87::start() {
    m_base->clear();
}

void rk87::stop() {
    m_sw |= m_base->getSW();
    m_cw |= m_base->getCW();
}

rkString rk87::strSW() const {
    return ts87Base::strSW(m_sw);
}

rkString rk87::strCW() const {
    return ts87Base::strCW(m_cw);
}

bool rk87::badStatus() const {
    return isBad(strSW());
}

// ---- SIMD ---------------------------------------------------------------------

rkSSX::rkSSX() : m_base(new tsSSXBase) {
    init();
}

rkSSX::~rkSSX() {
    delete m_base;
}

void rkSSX::init() {
    m_ssx = 0;
    m_base->destroy();
    m_base->setDefault();
}

void rkSSX::clear() {
    m_ssx = 0;
    m_base->destroy();
    m_base->clear();
}

void rkSSX::start() {
    m_base->destroy();
}

void rkSSX::stop() {
    m_ssx |= m_base->get();
}

rkString rkSSX::strExceptionState() const {
    return m_base->strExceptionState(m_ssx);
}

rkString rkSSX::strCW() const {
    return m_base->strCW(m_ssx);
}

bool rkSSX::badStatus() const {
    return isBad(strExceptionState());
}
