// fuzz_names.cpp - all queries on the name of a primitive, and the order of two names.
// Input: two lines, a name each.

#include <algorithm>

#include "fuzz.h"
#include "kmfunc.h"

namespace {

void checkParts(std::string const &name) {
    kmFunc func(name.c_str());
    std::string base = str(func.prefix()) + str(func.baseName());
    std::string types = str(func.typeName()), descr = str(func.descrName());
    std::string whole = base;
    if (!types.empty()) whole += "_" + types;
    if (!descr.empty()) whole += "_" + descr;
    require(whole == name || (descr.empty() && whole + "_" == name), "the parts make up the name", name);
    require(!types.empty() || descr.empty(), "a descriptor stands behind types", name);
    std::string prefix = str(func.prefix());
    require(prefix.empty() || prefix == "kels" || prefix == "keli", "there are two prefixes", name);
    rkString b, t, d;
    func.parseFunction(b, t, d);
    require(b == func.baseName() && str(t) == types && str(d) == descr, "all at once as one by one", name);
}

void checkTokens(std::string const &name) {
    kmFunc func(name.c_str());
    std::string types = str(func.typeName());
    rkString base, t1, t2, t3, descr;
    func.parseFunction(base, t1, t2, t3, descr);
    require((t1.length() == 0) == types.empty(), "types begin with a token", name);
    require(types.rfind(str(t1), 0) == 0, "the first token stands first", name);
    if (str(t1) == types) require(t2 == t1 && t3 == t1, "one token serves all", name);
    if (str(t1) != types && str(t1) + str(t2) == types) require(t3 == t2, "the second serves as third", name);
    int n = 0;
    for (rkString const &token : {t1, t2, t3}) {
        require(func.type(++n) == kmFunc::stringToType(token), "a type is that of its token", name);
    }
}

void checkType(kmType type, std::string const &name) {
    if (type == 0) return;
    std::string token = str(kmFunc::typeToString(type));
    require(token != "undef" && kmFunc::stringToType(token.c_str()) == type, "a type has a token", name);
    require(kmFunc::kelType(type) >= 0 && kmFunc::kelType(type) <= 20, "codes of types are small", name);
}

// The exceptions to the naming convention may set or clear the complex flag of any type, also of none.
void checkTypes(std::string const &name) {
    kmFunc func(name.c_str());
    for (int n : {-1, 0, 1, 2, 3, 4}) checkType(func.type(n), name);
    require(func.type(-1) == 0 && func.type(4) == 0, "there are three tokens", name);
    const int all = kmTypeSize | kmTypeSigned | kmTypeFloat | kmTypeComplex;
    for (kmArg arg : {kmSrc, kmSrc2, kmDst, kmDst2}) require(!(func.type(arg) & ~all), "known bits", name);
    require(func.dstType() == func.dst2Type(), "both destinations are alike", name);
}

void checkChannels(std::string const &name) {
    kmFunc func(name.c_str());
    for (int n : {1, 2}) {
        require(func.channels(n) >= 0 && func.channels(n) <= 4, "there are up to four channels", name);
        require(func.kelChannels(n) >= 0 && func.kelChannels(n) <= 11, "codes of channels are small", name);
        std::string token = str(func.channelsName(n));
        require(str(func.descrName()).size() >= token.size(), "channels stand in the descriptor", name);
        require(token.empty() == (func.channels(n) == 0), "a channel text tells a number", name);
        require(func.alpha(n) == (token[0] == 'A'), "alpha stands first", name);
    }
    for (kmArg arg : {kmSrc, kmSrc2, kmDst, kmDst2}) {
        require(func.channels(arg) >= 0 && func.channels(arg) <= 4, "up to four channels", name);
        bool planar = func.plane(arg), alpha = func.alpha(arg);
        require(!planar || str(func.descrName()).find('P') != std::string::npos, "planes have a P", name);
        require(!alpha || str(func.descrName()).find('A') != std::string::npos, "alpha has an A", name);
    }
    require(func.channels(0) == 1 && func.channels(3) == 1, "other arguments have one channel", name);
}

void checkFlags(std::string const &name) {
    kmFunc func(name.c_str());
    std::string descr = str(func.descrName());
    require(func.inplace() == (descr.find('I') != std::string::npos), "I is in place", name);
    require(func.mask() == (descr.find('M') != std::string::npos), "M is masked", name);
    require(func.roi() == (descr.find('R') != std::string::npos), "R is a region", name);
    require(func.scale() == (descr.find("Sfs") != std::string::npos), "Sfs is scaled", name);
    require(!func.coi() || descr.find('C') != std::string::npos, "a channel of interest has a C", name);
}

int sign(int n) {
    return (n > 0) - (n < 0);
}

// Antisymmetric, and equal to itself. No more: "AC4" comes behind "C" but in front of "B", so three
// descriptors can stand in a ring.
void checkOrder(std::string const &a, std::string const &b) {
    kmFunc first(a.c_str()), second(b.c_str());
    require(first.compare(first) == 0, "a name is equal to itself", a);
    require(sign(first.compare(second)) == -sign(second.compare(first)), "the order has two sides", a);
    int bases = (first.prefix() + first.baseName()).compare(second.prefix() + second.baseName());
    if (bases) require(sign(first.compare(second)) == sign(bases), "the base decides first", a);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const *data, size_t size) {
    FuzzInput input(data, size);
    std::string names[] = {cText(input.line()), cText(input.line())};
    for (std::string const &name : names) {
        checkParts(name);
        checkTokens(name);
        checkTypes(name);
        checkChannels(name);
        checkFlags(name);
    }
    checkOrder(names[0], names[1]);
    return 0;
}
