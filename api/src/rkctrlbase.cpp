// rkctrlbase.cpp - defaults and texts of the floating-point control and status words.

#include "rkctrlbase.h"

#include "rkcpuid.h"
#include "rkfpu.h"

static const unsigned int flags = 63;      // x87 flags and masks, SSX flags
static const unsigned int masksSSX = 8064; // the same six, 7 bits up
static const unsigned int inexact87 = 32;
static const unsigned int inexactSSX = 4096;
static const unsigned int defaults87 = 3903;   // all fields of the control word
static const unsigned int defaultsSSX = 65471; // all but denormals-are-zero
static char const *const noSSX = "cpu has not SSX extension";

unsigned int ts87Base::Precision = 512;
unsigned int ts87Base::Rounding = 0;
unsigned int ts87Base::Exception = 59; // all masked but a division by zero

unsigned int tsSSXBase::Rounding = 0;
unsigned int tsSSXBase::FlushZero = 32768;
unsigned int tsSSXBase::Exception = 8064;

// ---- texts --------------------------------------------------------------------

namespace {

struct BitText {
    unsigned int value;
    char const *text;
};

// Both units, by the positions in the words of the x87. A "?" makes a status bad.
const BitText exceptionStatusBits[] = {
    {1, "?Invalid "},  {2, "?Denormal "},   {4, "?Zerodivide "},
    {8, "?Overflow "}, {16, "?Underflow "}, {32, "_Inexact "},
};
const BitText exceptionControlBits[] = {
    {1, "Invalid "},  {2, "Denormal "},   {4, "Zerodivide "},
    {8, "Overflow "}, {16, "Underflow "}, {32, "Inexact "},
};
const BitText precisionBits87[] = {{0, "24 "}, {512, "53 "}, {768, "64 "}};
const BitText roundingBits[] = {{3072, "Zero "}, {2048, "Up "}, {1024, "Down "}, {0, "Near "}};
const BitText flushZeroBitSSX[] = {{32768, "FlushToZero "}, {0, "NoFlushToZero "}};

} // namespace

template <int N>
static rkString bitTexts(BitText const (&rows)[N], unsigned int word) {
    rkString text;
    for (BitText const &row : rows) {
        if (word & row.value) text << row.text;
    }
    return text;
}

// Empty for a field that has no row.
template <int N>
static rkString fieldText(BitText const (&rows)[N], unsigned int field) {
    for (BitText const &row : rows) {
        if (field == row.value) return row.text;
    }
    return "";
}

static rkString orOk(rkString text) {
    return text.length() > 0 ? text : rkString("Ok");
}

// ---- x87 ----------------------------------------------------------------------

unsigned int ts87Base::getCW() {
    return rk_get_cw_fpu();
}

unsigned int ts87Base::getSW() {
    return rk_get_sw_fpu();
}

void ts87Base::set(unsigned int cw, unsigned int mask) {
    rk_clear_fpu();
    rk_set_cw_fpu(cw, mask);
}

void ts87Base::clear() {
    rk_clear_fpu();
}

void ts87Base::enableExceptions() {
    rk_set_cw_fpu(0, flags);
}

void ts87Base::disableExceptions() {
    rk_set_cw_fpu(flags, flags);
}

void ts87Base::disableInexactException() {
    rk_set_cw_fpu((rk_get_sw_fpu() & flags) | inexact87, flags);
}

void ts87Base::setDefault() {
    set(Exception | Precision | Rounding, defaults87);
}

rkString ts87Base::strSW(unsigned int sw) {
    return orOk(bitTexts(exceptionStatusBits, sw));
}

rkString ts87Base::strCW(unsigned int cw) {
    return fieldText(roundingBits, cw & 3072) + fieldText(precisionBits87, cw & 768) +
           bitTexts(exceptionControlBits, cw);
}

// ---- SIMD ---------------------------------------------------------------------

tsSSXBase::tsSSXBase() : m_hasSSX(kel_is_ssx_extension() != 0) {
    setDefault();
}

unsigned int tsSSXBase::get() {
    return m_hasSSX ? rk_get_ssx() : 0;
}

unsigned int tsSSXBase::set(unsigned int value, unsigned int mask) {
    return m_hasSSX ? rk_set_ssx(value, mask) : value;
}

void tsSSXBase::clear() {
    set(0, flags);
}

void tsSSXBase::enableExceptions() {
    set(0, masksSSX);
}

void tsSSXBase::disableExceptions() {
    set(masksSSX, masksSSX);
}

void tsSSXBase::disableInexactException() {
    set((get() & masksSSX) | inexactSSX, masksSSX);
}

void tsSSXBase::setDefault() {
    set(Rounding | Exception | FlushZero, defaultsSSX);
}

void tsSSXBase::destroy() {
    if (m_hasSSX) rk_destroy_ssx();
}

rkString tsSSXBase::strExceptionState(unsigned int value) {
    return m_hasSSX ? orOk(bitTexts(exceptionStatusBits, value)) : rkString(noSSX);
}

rkString tsSSXBase::strCW(unsigned int value) {
    if (!m_hasSSX) return noSSX;
    // The rounding lies 3 bits above that of the x87, the masks 7.
    return fieldText(roundingBits, value >> 3 & 3072) + bitTexts(exceptionControlBits, value >> 7) +
           fieldText(flushZeroBitSSX, value & 32768);
}
