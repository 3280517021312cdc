// kmnames.h - names of modes of the library, for the map iterators of the suites.

#ifndef RAKOVA_KMNAMES_H
#define RAKOVA_KMNAMES_H

#include "km.h"

// Each table: names, their number, their values.
inline rkString const RndStr[] = {"zero", "near"};
inline int const RndNum = 2;
inline int const RndVal[] = {0, 1};

inline rkString const HintStr[] = {"none", "fast", "accurate"};
inline int const HintNum = 3;
inline int const HintVal[] = {0, 1, 2};

inline rkString const CmpStr[] = {"LT", "LE", "EQ", "GE", "GT"};
inline int const CmpNum = 5;
inline int const CmpVal[] = {0, 1, 2, 3, 4};

inline rkString const FlagStr[] = {"divFwdByN", "divInvByN", "divBySqrtN", "nodivByAny"};
inline int const FlagNum = 4;
inline int const FlagVal[] = {1, 2, 4, 8};

#endif
