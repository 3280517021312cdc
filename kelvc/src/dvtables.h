// dvtables.h - the variable-length codes of DV, in the form that the library makes its table from.

#ifndef RAKOVA_DVTABLES_H
#define RAKOVA_DVTABLES_H

// Codes in two parts, each ended by 0; the library takes tables of this size.
const int dvTable1Size = 240, dvTable2Size = 496;

extern unsigned int const dvTable1[dvTable1Size];
extern unsigned int const dvTable2[dvTable2Size];

#endif
