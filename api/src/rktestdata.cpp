// rktestdata.cpp - the blocks of test data: where each one lies, and their reset between calls.

#include "rkobject.h"
#include "rktest.h"

static const int shiftRange = 32768; // bytes; the shifts start over when they reach it

void *rkTest::allocate(int size, int align) {
    return allocate(size, align, MEM_OBJECT_IS_BUFFER);
}

void *rkTest::allocate(int size, int align, void *object) {
    if (align < 0) {
        bool misaligned = m_vectorNum == 0 || !rkGetAlignSrc();
        align = misaligned ? -align * rkGetVectorAlign() : 0;
    }
    void *pointer = rkMalloc(size, align, m_vectorShift, object ? object : MEM_OBJECT_IS_BUFFER);
    if (!pointer) return nullptr;
    ++m_vectorNum;
    m_vectorShift += rkGetVectorShift();
    if (m_vectorShift >= shiftRange) m_vectorShift = 0;
    return pointer;
}

void rkTest::deallocate(void *pointer) {
    rkFree(pointer);
}

static int forAllObjects(bool (rkObject::*operation)()) {
    int successes = 0;
    void *object = nullptr;
    for (void *p = rkMallocFirst(nullptr, &object); p; p = rkMallocNext(nullptr, &object)) {
        if (object && (static_cast<rkObject *>(object)->*operation)()) ++successes;
    }
    return successes;
}

int rkTest::reserveAllVectors() {
    return forAllObjects(&rkObject::reserveCopy);
}
int rkTest::resetAllVectors() {
    return forAllObjects(&rkObject::setReservedCopy);
}
