// kmchannels.cpp - what the descriptor of a primitive's name tells: channels, planes and flags.

#include <string.h>

#include "kmfunc.h"

namespace {

bool isChannelDigit(char c) {
    return c >= '1' && c <= '4';
}

bool isChannelIndex(int i, rkString const &text) {
    return i >= 0 && i + 1 < text.length() && isChannelDigit(text[i + 1]);
}

// Position of the "C" or "P" that stands first, or npos.
int firstLayoutLetter(rkString const &text) {
    int c = text.find("C");
    int p = text.find("P");
    return c < 0 || (p >= 0 && p < c) ? p : c;
}

rkString cToP(rkString const &token) {
    int c = token.find("C");
    return c < 0 ? token : token.substr(0, c) + "P" + token.substr(c + 1);
}

// Takes the next channel token off the front of the text. A "P" without a number behind it makes the token
// before it planar: "C3PR" holds "P3".
rkString firstChanStr(rkString &text) {
    int i = firstLayoutLetter(text);
    if (!isChannelIndex(i, text)) {
        text = "";
        return "";
    }
    int begin = i > 0 && text[i - 1] == 'A' ? i - 1 : i;
    rkString token = text.substr(begin, i + 2 - begin);
    text = i + 2 < text.length() ? text.substr(i + 2) : rkString();
    int p = text.find("P");
    return p >= 0 && !isChannelIndex(p, text) ? cToP(token) : token;
}

// "AC4" counts from its second character.
char const *layoutOf(rkString const &token) {
    return token.c_str() + (token.c_str()[0] == 'A');
}

int numChannels(rkString const &token) {
    char const *layout = layoutOf(token);
    if (!layout[0] || !(layout[1] >= '0' && layout[1] <= '4')) return 0;
    return layout[1] - '0';
}

bool planeChannel(rkString const &token) {
    return layoutOf(token)[0] == 'P';
}

bool alphaChannel(rkString const &token) {
    return token.c_str()[0] == 'A';
}

bool isSrc(kmArg arg) {
    return arg == kmSrc || arg == kmSrc2;
}

bool isDst(kmArg arg) {
    return arg == kmDst || arg == kmDst2;
}

} // namespace

// ---- channels ----------------------------------------------------------------

rkString kmFunc::channelsName(int n) const {
    if (n == 1) return srcChannelsName();
    if (n == 2) return dstChannelsName();
    return "";
}

rkString kmFunc::channelsName(kmArg arg) const {
    if (isSrc(arg)) return srcChannelsName();
    if (isDst(arg)) return dstChannelsName();
    return "";
}

rkString kmFunc::srcChannelsName() const {
    rkString src, dst;
    getChannelsName(src, dst);
    return src;
}

rkString kmFunc::dstChannelsName() const {
    rkString src, dst;
    getChannelsName(src, dst);
    return dst;
}

void kmFunc::getChannelsName(rkString &src, rkString &dst) const {
    rkString descr = descrName();
    src = firstChanStr(descr);
    dst = firstChanStr(descr);
    if (dst.length() == 0) dst = src;
}

int kmFunc::channels(int n) const {
    return n == 1 || n == 2 ? numChannels(channelsName(n)) : 1;
}

int kmFunc::channels(kmArg arg) const {
    if (isSrc(arg)) return srcChannels();
    if (isDst(arg)) return dstChannels();
    return 1;
}

int kmFunc::srcChannels() const {
    int src, dst;
    getChannels(src, dst);
    return src;
}

int kmFunc::dstChannels() const {
    int src, dst;
    getChannels(src, dst);
    return dst;
}

void kmFunc::getChannels(int &src, int &dst) const {
    rkString srcName, dstName;
    getChannelsName(srcName, dstName);
    src = numChannels(srcName);
    dst = numChannels(dstName);
    updateChannels(src, dst);
}

// A comparison gives one channel of flags, whatever it compares.
void kmFunc::updateChannels(int &, int &dst) const {
    if (isImage() && baseName().find("Compare") >= 0) dst = 1;
}

// "A0C4" is never found in a name, whose token is then "C4".
int kmFunc::kelChannels(int n) const {
    static const struct {
        char const *name;
        int code;
    } codes[] = {{"C0", 0}, {"C1", 1}, {"C2", 2},  {"C3", 3},  {"C4", 4},    {"P2", 5},
                 {"P3", 6}, {"P4", 7}, {"AC1", 8}, {"AC4", 9}, {"A0C4", 10}, {"AP4", 11}};
    rkString name = channelsName(n);
    for (auto const &entry : codes) {
        if (strcmp(name.c_str(), entry.name) == 0) return entry.code;
    }
    return 0;
}

// ---- planes and alpha --------------------------------------------------------

bool kmFunc::plane(int n) const {
    return planeChannel(channelsName(n));
}

bool kmFunc::plane(kmArg arg) const {
    if (isSrc(arg)) return srcPlane();
    if (isDst(arg)) return dstPlane();
    return false;
}

bool kmFunc::srcPlane() const {
    bool src, dst;
    getPlanes(src, dst);
    return src;
}

bool kmFunc::dstPlane() const {
    bool src, dst;
    getPlanes(src, dst);
    return dst;
}

// With both letters the side of the "P" is planar alone.
void kmFunc::getPlanes(bool &src, bool &dst) const {
    rkString descr = descrName();
    int c = descr.find("C");
    int p = descr.find("P");
    src = p >= 0 && (c < 0 || p < c);
    dst = p >= 0 && (c < 0 || c < p);
    updatePlanes(src, dst);
}

void kmFunc::updatePlanes(bool &, bool &) const {}

bool kmFunc::alpha(int n) const {
    return alphaChannel(channelsName(n));
}

bool kmFunc::alpha(kmArg arg) const {
    if (isSrc(arg)) return srcAlpha();
    if (isDst(arg)) return dstAlpha();
    return false;
}

bool kmFunc::srcAlpha() const {
    return alphaChannel(srcChannelsName());
}

bool kmFunc::dstAlpha() const {
    return alphaChannel(dstChannelsName());
}

void kmFunc::getAlpha(bool &src, bool &dst) const {
    rkString srcName, dstName;
    getChannelsName(srcName, dstName);
    src = alphaChannel(srcName);
    dst = alphaChannel(dstName);
}

// ---- flags -------------------------------------------------------------------

bool kmFunc::inplace() const {
    return descrName().find("I") >= 0;
}

bool kmFunc::mask() const {
    return descrName().find("M") >= 0;
}

bool kmFunc::scale() const {
    return descrName().find("Sfs") >= 0;
}

bool kmFunc::roi() const {
    return descrName().find("R") >= 0;
}

// A "C" that no number of channels follows.
bool kmFunc::coi() const {
    rkString descr = descrName();
    for (int i = 0; i < descr.length(); ++i) {
        if (descr[i] == 'C' && !isChannelIndex(i, descr)) return true;
    }
    return false;
}
