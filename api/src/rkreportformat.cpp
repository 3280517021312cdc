// rkreportformat.cpp - layout of the framed blocks.

#include "rkreportformat.h"
