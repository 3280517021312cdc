// rkobject.h - base of all objects that own tracked blocks of memory.

#ifndef RAKOVA_RKOBJECT_H
#define RAKOVA_RKOBJECT_H

#include "rkstring.h"

// The record of a tracked block names its owner, so that walks over all blocks can ask for sizes
// and texts, and reset the data between two calls of a primitive.
class rkObject {
public:
    virtual int objectSize() const { return 0; } // bytes
    virtual rkString objectInfo() const { return rkString(); }
    virtual bool reserveCopy() { return false; }     // keeps a copy of the data
    virtual bool setReservedCopy() { return false; } // brings the data back
    virtual void deleteReservedCopy() {}

protected:
    ~rkObject() = default;
};

// Markers for blocks without an object of their own: a plain buffer of a test,
// and a block that belongs to a larger object and is not listed by itself.
extern rkObject *MEM_OBJECT_IS_BUFFER;
extern rkObject *MEM_OBJECT_IS_SUBOBJECT;

#endif
