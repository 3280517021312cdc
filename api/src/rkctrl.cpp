// rkctrl.cpp - guards of the floating-point state.

#include "rkctrl.h"
