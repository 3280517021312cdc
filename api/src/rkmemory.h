// rkmemory.h - tracked blocks of test data, placed at chosen offsets from 64-byte boundaries.

#ifndef RAKOVA_RKMEMORY_H
#define RAKOVA_RKMEMORY_H

#include "rklist.h"

// One allocation.
struct Address {
    void *address;        // from rk_malloc(int)
    void *alignedPointer; // what the caller has
    int size;             // bytes asked for
    void *object;         // owner: an rkObject, a marker, or null
};

class AddressList : public rkList<Address> {
public:
    AddressList();
    bool find(void *pointer, Address &out) const; // by alignedPointer
    bool getInfo(void *pointer, int *size, void **object) const;
    // The aligned pointer at position or null at the end; m_next takes the position behind it.
    void *getNext(iterator position, int *size, void **object);
    void *remove(void *pointer); // returns the block to free, or null

    iterator m_next; // where rkMallocNext goes on
};

extern AddressList *pAddressList; // null until the first block

// A block of size bytes on a 64-byte boundary with a hidden slot 128 bytes in front of it, or null.
void *rk_malloc(int size);
// A block at the offsets align (modulo 64) and shift from a 64-byte boundary; block is what rk_free takes.
void *rk_malloc(void *&block, int size, int align, int shift);
void rk_free(void *block); // null is ignored
void *getAlignedPtr(void *p, int align);

// Placed and recorded. Failure: a message and null.
void *rkMalloc(int size, int align, int shift, void *object);
void *rkMalloc(void *&pointer, int size, int align, int shift);
void rkFree(void *pointer); // a pointer without a record is ignored
// Outputs may be null; all return null or false where there is no record.
bool rkMallocInfo(void *pointer, int *size, void **object);
void *rkMallocFirst(int *size, void **object);
void *rkMallocNext(int *size, void **object);
void rkFreeAll(); // forgets all records; the process is about to end

int rkGetVectorShift(); // bytes between the placements of successive blocks
void rkSetVectorShift(int shift);
int rkGetVectorAlign(); // misalignment, -63 to 63
void rkSetVectorAlign(int align);
bool rkGetAlignSrc(); // only the first block of a parameter set is misaligned
void rkSetAlignSrc(bool on);
bool rkGetAlignByByte(); // misalignment counts bytes, otherwise elements
void rkSetAlignByByte(bool on);

#endif
