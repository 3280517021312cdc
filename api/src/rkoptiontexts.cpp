// rkoptiontexts.cpp - help texts of the keys.

#include "rkoption.h"
