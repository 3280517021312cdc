// kmbitvector.cpp - reading and writing bits, and their texts.

#include "km.h"
