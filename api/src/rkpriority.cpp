// rkpriority.cpp - scheduling priority.

#include "rkpriority.h"
