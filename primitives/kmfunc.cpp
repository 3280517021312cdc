// kmfunc.cpp - the parts of a primitive's name, its types and its order.

#include "kmfunc.h"

#include <string.h>

#include "kmname.h"

namespace {

kmNameParts partsOf(rkString const &name) {
    return kmNameParts(name.c_str(), name.length());
}

rkString slice(rkString const &text, int begin, int end) {
    return begin < end ? text.substr(begin, end - begin) : rkString();
}

bool contains(rkString const &text, char c) {
    return strchr(text.c_str(), c) != nullptr;
}

bool startsWith(rkString const &text, char const *start) {
    return strncmp(text.c_str(), start, strlen(start)) == 0;
}

// Real types come before complex ones of the same size; a missing type comes first.
int compareTs(char const *a, int lenA, char const *b, int lenB) {
    if (lenA == 0 || lenB == 0) return (lenA != 0) - (lenB != 0);
    kmType ta = kmTypeOfToken(a, lenA);
    kmType tb = kmTypeOfToken(b, lenB);
    int real = (ta & ~kmTypeComplex) - (tb & ~kmTypeComplex);
    return real ? real : (ta & kmTypeComplex) - (tb & kmTypeComplex);
}

// Only the first token counts, however many there are.
int compareFirstTypes(char const *a, int lenA, char const *b, int lenB) {
    return compareTs(a, kmLenOfType(a, lenA), b, kmLenOfType(b, lenB));
}

bool isOneOf(rkString const &text, char const *const *names, int count) {
    for (int i = 0; i < count; ++i) {
        if (strcmp(text.c_str(), names[i]) == 0) return true;
    }
    return false;
}

} // namespace

// ---- parts -------------------------------------------------------------------

rkString kmFunc::prefix() const {
    return slice(*this, 0, partsOf(*this).base);
}

rkString kmFunc::baseName() const {
    kmNameParts at = partsOf(*this);
    return slice(*this, at.base, at.baseEnd);
}

rkString kmFunc::typeName() const {
    kmNameParts at = partsOf(*this);
    return slice(*this, at.types, at.typesEnd);
}

rkString kmFunc::descrName() const {
    kmNameParts at = partsOf(*this);
    return slice(*this, at.descr, at.end);
}

void kmFunc::parseFunction(rkString &base, rkString &types, rkString &descr) const {
    base = baseName();
    types = typeName();
    descr = descrName();
}

void kmFunc::parseFunction(rkString &base, rkString &t1, rkString &t2, rkString &t3, rkString &descr) const {
    rkString types;
    parseFunction(base, types, descr);
    kmTypeTokens tokens(types.c_str(), types.length());
    rkString *results[3] = {&t1, &t2, &t3};
    for (int i = 0; i < 3; ++i) {
        *results[i] = slice(types, tokens.begin[i], tokens.begin[i] + tokens.length[i]);
    }
}

bool kmFunc::isSignal() const {
    return startsWith(*this, "kels");
}

bool kmFunc::isImage() const {
    return startsWith(*this, "keli");
}

// ---- types -------------------------------------------------------------------

kmType kmFunc::type(int n) const {
    if (n == 0) {
        kmType fromBase = typeFromBase();
        return fromBase ? fromBase : type(1);
    }
    if (n < 1 || n > 3) return 0;
    kmNameParts at = partsOf(*this);
    char const *types = c_str() + at.types;
    kmTypeTokens tokens(types, at.typesEnd - at.types);
    return kmTypeOfToken(types + tokens.begin[n - 1], tokens.length[n - 1]);
}

kmType kmFunc::type(kmArg arg) const {
    switch (arg) {
        case kmSrc:
            return srcType();
        case kmSrc2:
            return src2Type();
        case kmDst:
            return dstType();
        case kmDst2:
            return dst2Type();
        default:
            return 0;
    }
}

kmType kmFunc::srcType() const {
    kmType src, src2, dst, dst2;
    getTypes(src, src2, dst, dst2);
    return src;
}

kmType kmFunc::src2Type() const {
    kmType src, src2, dst, dst2;
    getTypes(src, src2, dst, dst2);
    return src2;
}

kmType kmFunc::dstType() const {
    kmType src, src2, dst, dst2;
    getTypes(src, src2, dst, dst2);
    return dst;
}

kmType kmFunc::dst2Type() const {
    kmType src, src2, dst, dst2;
    getTypes(src, src2, dst, dst2);
    return dst2;
}

void kmFunc::getTypes(kmType &src, kmType &src2, kmType &dst, kmType &dst2) const {
    rkString base, t1, t2, t3, descr;
    parseFunction(base, t1, t2, t3, descr);
    src = stringToType(t1);
    dst = stringToType(t3);
    src2 = t2 == t3 ? src : stringToType(t2);
    dst2 = dst;
    updateTypes(src, src2, dst, dst2);
}

// Longer texts come first, so that "32fc" is not taken for "32f".
kmType kmFunc::typeFromBase() const {
    static char const *const texts[] = {"64fc", "64sc", "64s",  "64f", "32fc", "32sc", "32u", "32s",
                                        "32f",  "16sc", "16uc", "16u", "16s",  "8sc",  "8u",  "8s"};
    rkString base = baseName();
    for (char const *text : texts) {
        if (strstr(base.c_str(), text)) return kmTypeOfToken(text, static_cast<int>(strlen(text)));
    }
    return 0;
}

void kmFunc::updateTypes(kmType &src, kmType &src2, kmType &dst, kmType &dst2) const {
    if (isSignal()) updateSignalTypes(src, src2, dst, dst2);
    if (isImage()) updateImageTypes(src2, dst, dst2);
}

void kmFunc::updateSignalTypes(kmType &src, kmType &src2, kmType &dst, kmType &dst2) const {
    static char const *const toReal[] = {"Real", "Imag", "Magnitude", "Phase", "CplxToReal", "CartToPolar"};
    rkString base = baseName();
    if (isOneOf(base, toReal, 6)) dst2 = dst = dst & ~kmTypeComplex;
    if (base == "PolarToCart") src2 = src = src & ~kmTypeComplex;
    if (base == "RealToCplx") dst2 = dst = dst | kmTypeComplex;
    bool realProduct = src == src2 && !(src & kmTypeComplex);
    if (base == "DotProd" && realProduct && (dst & kmTypeComplex)) src2 = dst;
    if (base == "PowerSpectr") dst2 = dst = dst & ~kmTypeComplex;
    if (find("Mul_16u16s") >= 0) src2 = dst;
    if (find("Goertz") >= 0) dst2 = dst = dst | kmTypeComplex;
}

void kmFunc::updateImageTypes(kmType &src2, kmType &dst, kmType &dst2) const {
    const kmType type8u = 8;
    const kmType type64f = 576;
    rkString base = baseName();
    if (base == "Sum" || base == "Mean") dst2 = dst = type64f;
    if (base == "Copy" || base == "Set") src2 = type8u;
    if (base.find("Compare") >= 0) dst2 = dst = type8u;
}

rkString kmFunc::typeToString(kmType type) {
    char const *token = kmTokenOfType(type);
    return token ? token : "undef";
}

kmType kmFunc::stringToType(rkString const &text) {
    return kmTypeOfToken(text.c_str(), text.length());
}

// "8sc" has no code, and "16uc" shares that of "16sc".
int kmFunc::kelType(kmType type) {
    static const struct {
        kmType type;
        int code;
    } codes[] = {{8, 1},     {264, 3},  {16, 5},    {272, 7}, {1296, 8}, {1040, 8},  {32, 9},   {288, 11},
                 {1312, 12}, {544, 13}, {1568, 14}, {64, 15}, {320, 17}, {1344, 18}, {576, 19}, {1600, 20}};
    for (auto const &entry : codes) {
        if (entry.type == type) return entry.code;
    }
    return 0;
}

// ---- order -------------------------------------------------------------------

int kmFunc::compare(kmFunc const &other) const {
    kmNameParts a = partsOf(*this);
    kmNameParts b = partsOf(other);
    int order = slice(*this, 0, a.baseEnd).compare(slice(other, 0, b.baseEnd));
    if (order) return order;
    order = compareFirstTypes(c_str() + a.types, a.typesEnd - a.types, other.c_str() + b.types,
                              b.typesEnd - b.types);
    if (order) return order;
    return compareDescr(slice(*this, a.descr, a.end), slice(other, b.descr, b.end));
}

int kmFunc::compareTypes(rkString const &a, rkString const &b) {
    return compareFirstTypes(a.c_str(), a.length(), b.c_str(), b.length());
}

// In-place forms come behind the others, and "AC4" forms behind "C" forms.
int kmFunc::compareDescr(rkString const &a, rkString const &b) {
    int inplace = contains(a, 'I') - contains(b, 'I');
    if (inplace) return inplace;
    if (startsWith(a, "AC4") && startsWith(b, "C")) return 1;
    if (startsWith(a, "C") && startsWith(b, "AC4")) return -1;
    return a.compare(b);
}
