// rkfpu.h - the registers of the floating-point and SIMD units, one small operation each.

#ifndef RAKOVA_RKFPU_H
#define RAKOVA_RKFPU_H

// A masked write means: new = (old without mask) or (value and mask). SSX is the SIMD control and status
// register.
unsigned int rk_get_cw_fpu();
unsigned int rk_get_sw_fpu();
unsigned int rk_set_cw_fpu(unsigned int value, unsigned int mask); // returns the old word
unsigned int rk_clear_fpu(); // clears the exception flags, returns the status word as it was
unsigned int rk_get_ssx();
unsigned int rk_set_ssx(unsigned int value, unsigned int mask); // returns the old word
void rk_destroy_ssx();                                          // sets every bit of all 16 SIMD registers

// The rest of the kit, for tests.
unsigned int kel_clear_ssx(); // flags clear, all masked, round to nearest; returns the old word
void kel_set_cw_ssx(unsigned int value);
unsigned int kel_set_rc_ssx(unsigned int rc);
bool kel_tst_daz_ssx(); // the processor has denormals-are-zero
void kel_set_cw_fpu(unsigned int value);
unsigned int kel_set_rcpc_fpu(unsigned int value, unsigned int mask);
int kel_isnan(double x);
int kel_finite(double x);

// Control and status in a word whose bits do not depend on the processor.
unsigned int kel_control87(unsigned int value, unsigned int mask);
unsigned int kel_status87();
unsigned int kel_clear87();

#endif
