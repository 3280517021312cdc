// rkobject.cpp - the two markers of owners of memory.

#include "rkobject.h"

namespace {
struct Marker : rkObject {};
} // namespace

static Marker g_buffer, g_subObject;

rkObject *MEM_OBJECT_IS_BUFFER = &g_buffer;
rkObject *MEM_OBJECT_IS_SUBOBJECT = &g_subObject;
