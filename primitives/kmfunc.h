// kmfunc.h - the name of a primitive, and what it tells of types, channels and layout.

#ifndef RAKOVA_KMFUNC_H
#define RAKOVA_KMFUNC_H

#include "rkstring.h"

#include "kmtype.h"

// prefix "kels" or "keli", base, "_", one to three type tokens, "_", descriptor: keliSAD16x16_8u32s_C1R. The
// base may hold "_" itself; the types begin behind the first "_" that a type token follows. Every query
// parses the text anew; what a name does not have is "", 0 or false.
class kmFunc : public rkString {
public:
    kmFunc() = default;
    kmFunc(char const *name) : rkString(name) {}
    kmFunc(rkString const &name) : rkString(name) {}

    // Exceptions to the naming convention, applied behind the general parse.
    virtual void updateTypes(kmType &src, kmType &src2, kmType &dst, kmType &dst2) const;
    virtual void updateChannels(int &src, int &dst) const;
    virtual void updatePlanes(bool &src, bool &dst) const;

    rkString prefix() const;
    rkString baseName() const;
    rkString typeName() const;  // all type tokens, such as "8u16s"
    rkString descrName() const; // all behind the types
    void parseFunction(rkString &base, rkString &types, rkString &descr) const;
    // One token serves all three, two are source and destination, three are two sources and a destination.
    void parseFunction(rkString &base, rkString &t1, rkString &t2, rkString &t3, rkString &descr) const;

    kmType type(int n) const; // of token 1, 2, 3; 0: what the base tells, else of token 1
    kmType type(kmArg arg) const;
    kmType srcType() const;
    kmType src2Type() const;
    kmType dstType() const;
    kmType dst2Type() const;
    void getTypes(kmType &src, kmType &src2, kmType &dst, kmType &dst2) const;
    kmType typeFromBase() const;

    // Channel texts such as "C1", "AC4", "P3"; a number n is 1 for the source and 2 for the destination.
    rkString channelsName(int n) const;
    rkString channelsName(kmArg arg) const;
    rkString srcChannelsName() const;
    rkString dstChannelsName() const;
    void getChannelsName(rkString &src, rkString &dst) const;

    int channels(int n) const;
    int channels(kmArg arg) const;
    int srcChannels() const;
    int dstChannels() const;
    void getChannels(int &src, int &dst) const;

    bool plane(int n) const;
    bool plane(kmArg arg) const;
    bool srcPlane() const;
    bool dstPlane() const;
    void getPlanes(bool &src, bool &dst) const;

    bool alpha(int n) const;
    bool alpha(kmArg arg) const;
    bool srcAlpha() const;
    bool dstAlpha() const;
    void getAlpha(bool &src, bool &dst) const;

    // Plain searches in the descriptor: any capital "R" makes a roi.
    bool inplace() const;
    bool mask() const;
    bool scale() const; // integer result scaled by a factor
    bool roi() const;   // works on a region of interest
    bool coi() const;   // works on a channel of interest

    // The order of the list of tests: base, first type, descriptor. Negative, 0 or positive. Cheap enough to
    // sort with.
    int compare(kmFunc const &other) const;
    static int compareTypes(rkString const &a, rkString const &b);
    static int compareDescr(rkString const &a, rkString const &b);

    static rkString typeToString(kmType type); // "undef" for an undefined type
    static kmType stringToType(rkString const &text);
    static int kelType(kmType type); // the library's code of a data type, 0 if it has none
    int kelChannels(int n) const;    // the library's code of a channel layout

private:
    bool isSignal() const;
    bool isImage() const;
    void updateSignalTypes(kmType &src, kmType &src2, kmType &dst, kmType &dst2) const;
    void updateImageTypes(kmType &src2, kmType &dst, kmType &dst2) const;
};

#endif
