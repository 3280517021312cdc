// mpeg2tables.h - the variable-length codes of MPEG-2, in the form that the library makes its tables from.

#ifndef RAKOVA_MPEG2TABLES_H
#define RAKOVA_MPEG2TABLES_H

// Three numbers a code: length, code, value. A length of 0 ends the list.
extern int const MBAdressing[];
extern int const IMBType[];
extern int const PMBType[];
extern int const BMBType[];
extern int const MBPattern[];
extern int const MotionVector[];
extern int const dct_dc_size_luma[];
extern int const dct_dc_size_chroma[];

// Four numbers a code: length, code, run, level. These runs stand for codes that are no coefficient.
const int mpeg2EndOfBlock = 127, mpeg2Escape = 126;

extern int const dct_coeff_first_RL[];
extern int const dct_coeff_next_RL[];
extern int const Table15[];

#endif
