// rkpriority.h - scheduling priority of the process around a measured stretch.

#ifndef RAKOVA_RKPRIORITY_H
#define RAKOVA_RKPRIORITY_H

// mode: 0 none, 1 high, 2 normal, 3 low. For any user but root nothing changes.
void rkSetPriority(int mode);
void rkResetPriority(); // back to what it was at the last rkSetPriority

extern bool _bSavedPrio; // between a set of a mode other than 0 and its reset

#endif
