// rkparse.cpp - cuts a text into words.

#include "rkparse.h"
