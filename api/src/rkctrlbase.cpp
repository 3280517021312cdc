// rkctrlbase.cpp - control and status words in text.

#include "rkctrlbase.h"
