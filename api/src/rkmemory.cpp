// rkmemory.cpp - tracked, aligned memory.

#include "rkmemory.h"

#include <limits.h>
#include <stdint.h>
#include <stdlib.h>

#include "rkstream.h"

#if defined(__SANITIZE_ADDRESS__)
#define RK_ADDRESS_SANITIZER
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define RK_ADDRESS_SANITIZER
#endif
#endif

#ifdef RK_ADDRESS_SANITIZER
#include <sanitizer/asan_interface.h>
#include <sanitizer/lsan_interface.h>
#endif

AddressList *pAddressList;

static int VectorShift = 512;
static int VectorAlign = 0;
static bool AlignSrc = true;
static bool AlignByByte = true;

static int const boundary = 64;
static int const room = 256; // bytes of a raw block beyond the caller's
static int const slot = 128; // the raw block's address lies so far in front of the result

// ---- poison ---------------------------------------------------------------------

// In a sanitizer build only the caller's bytes of a block can be touched, so that a primitive that reads or
// writes beside its data is found.
#ifdef RK_ADDRESS_SANITIZER

static void poison(void *p, size_t size) {
    __asan_poison_memory_region(p, size);
}

static void unpoison(void *p, size_t size) {
    __asan_unpoison_memory_region(p, size);
}

// What is forgotten on purpose is no leak.
static void forget(void *list) {
    __lsan_ignore_object(list);
}

#else

static void poison(void *, size_t) {}
static void unpoison(void *, size_t) {}
static void forget(void *) {}

#endif

// ---- blocks ---------------------------------------------------------------------

void *rk_malloc(int size) {
    if (size < 0) return nullptr;
    size_t total = static_cast<size_t>(size) + room;
    char *raw = static_cast<char *>(malloc(total));
    if (!raw) return nullptr;
    char *block = raw + 192;
    block -= reinterpret_cast<uintptr_t>(block) % boundary;
    *reinterpret_cast<void **>(block - slot) = raw;
    poison(raw, total);
    unpoison(block, size);
    return block;
}

// A mask and no addition: only from a boundary does it lead to p + align.
void *getAlignedPtr(void *p, int align) {
    uintptr_t mask = static_cast<uintptr_t>(static_cast<intptr_t>(align) - boundary);
    return reinterpret_cast<void *>((reinterpret_cast<uintptr_t>(p) + boundary - 1) & mask);
}

// True if size bytes from p lie behind the slot of a block of total bytes and in front of its end.
static bool liesWithin(void *block, long long total, void *p, int size) {
    long long offset = static_cast<char *>(p) - static_cast<char *>(block);
    return offset >= static_cast<int>(sizeof(void *)) - slot && offset + size <= total + room - 192;
}

void *rk_malloc(void *&block, int size, int align, int shift) {
    int m = align % boundary;
    long long total = static_cast<long long>(size) + shift + m + boundary;
    block = nullptr;
    if (size < 0 || total < 0 || total > INT_MAX) return nullptr;
    block = rk_malloc(static_cast<int>(total));
    if (!block) return nullptr;
    void *p = getAlignedPtr(static_cast<char *>(block) + shift, m);
    if (!liesWithin(block, total, p, size)) {
        rk_free(block);
        block = nullptr;
        return nullptr;
    }
    poison(block, total);
    unpoison(p, size);
    return p;
}

void rk_free(void *block) {
    if (!block) return;
    void **hidden = reinterpret_cast<void **>(static_cast<char *>(block) - slot);
    unpoison(hidden, sizeof *hidden);
    free(*hidden);
}

// ---- list of blocks ---------------------------------------------------------------

static void fill(Address const &record, int *size, void **object) {
    if (size) *size = record.size;
    if (object) *object = record.object;
}

static AddressList::iterator position(AddressList const &list, void *pointer) {
    AddressList::iterator i = list.begin();
    while (i != list.end() && i->alignedPointer != pointer) ++i;
    return i;
}

AddressList::AddressList() : m_next(end()) {}

bool AddressList::find(void *pointer, Address &out) const {
    iterator i = position(*this, pointer);
    if (i == end()) return false;
    out = *i;
    return true;
}

bool AddressList::getInfo(void *pointer, int *size, void **object) const {
    iterator i = position(*this, pointer);
    if (i == end()) return false;
    fill(*i, size, object);
    return true;
}

void *AddressList::getNext(iterator i, int *size, void **object) {
    m_next = i;
    if (i == end()) return nullptr;
    ++m_next;
    fill(*i, size, object);
    return i->alignedPointer;
}

void *AddressList::remove(void *pointer) {
    iterator i = position(*this, pointer);
    if (i == end()) return nullptr;
    void *block = i->address;
    if (m_next == i) ++m_next; // a walk may free what it has not reached
    erase(i);
    return block;
}

// ---- recording --------------------------------------------------------------------

static void logBlock(char const *title, Address const &record) {
    g_ostrm << MsgMemory << title << "size:" << record.size << "  address:" << record.address
            << "  alignedPointer:" << record.alignedPointer << "\n"
            << EndMessageFlush;
}

void *rkMalloc(int size, int align, int shift, void *object) {
    void *block;
    void *pointer = rk_malloc(block, size, align, shift);
    if (!pointer) {
        g_ostrm << MsgError << "-- Memory error: can't allocate " << size << " bytes\n" << EndMessage;
        return nullptr;
    }
    if (!pAddressList) pAddressList = new AddressList;
    Address record = {block, pointer, size, object};
    pAddressList->push_back(record);
    logBlock(" - rkMalloc: ", record);
    return pointer;
}

void *rkMalloc(void *&pointer, int size, int align, int shift) {
    return pointer = rkMalloc(size, align, shift, nullptr);
}

void rkFree(void *pointer) {
    if (!pAddressList || !pointer) return;
    Address record;
    if (pAddressList->find(pointer, record)) logBlock(" - rkFree: ", record);
    rk_free(pAddressList->remove(pointer));
}

bool rkMallocInfo(void *pointer, int *size, void **object) {
    return pAddressList && pAddressList->getInfo(pointer, size, object);
}

void *rkMallocFirst(int *size, void **object) {
    return pAddressList ? pAddressList->getNext(pAddressList->begin(), size, object) : nullptr;
}

void *rkMallocNext(int *size, void **object) {
    return pAddressList ? pAddressList->getNext(pAddressList->m_next, size, object) : nullptr;
}

void rkFreeAll() {
    if (pAddressList) forget(pAddressList);
    pAddressList = nullptr;
}

// ---- settings ---------------------------------------------------------------------

int rkGetVectorShift() {
    return VectorShift;
}

void rkSetVectorShift(int shift) {
    VectorShift = shift;
}

int rkGetVectorAlign() {
    return VectorAlign;
}

void rkSetVectorAlign(int align) {
    VectorAlign = align % boundary;
}

bool rkGetAlignSrc() {
    return AlignSrc;
}

void rkSetAlignSrc(bool on) {
    AlignSrc = on;
}

bool rkGetAlignByByte() {
    return AlignByByte;
}

void rkSetAlignByByte(bool on) {
    AlignByByte = on;
}
