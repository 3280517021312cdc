// rkcache.cpp - fits the size of a test's data to the cache.

#include "rkcache.h"

#include <limits.h>

#include "rkcpu.h"
#include "rkmemory.h"

static const int maxTries = 11;
static const int givenUp = maxTries + 1;
static const double wideFactor = 0.1;
static const double leastFactor = 0.01;

unsigned int (*rkCacheIterator::m_cacheSource)() = rkGetMaxCacheSizeB;

static int cutToInt(double size) {
    return size < INT_MAX ? int(size) : INT_MAX;
}

rkCacheIterator::rkCacheIterator(rkParameter &parm, rkObject *object, SetNewValue set)
    : rkIterator<int>("cacheIterator", ""),
      m_parm(&parm),
      m_object(object),
      m_tries(0),
      m_objectSize(0),
      m_totalSize(0),
      m_wasTooBig(false),
      m_factor(wideFactor),
      m_setNewValue(set) {
    add(0);
    add(1);
}

rkString rkCacheIterator::valueString() const {
    return m_parm->valueString();
}

rkString rkCacheIterator::defaultString() const {
    return m_parm->defaultString();
}

rkString rkCacheIterator::validString() const {
    return m_parm->validString();
}

rkString rkCacheIterator::description() const {
    return m_parm->description();
}

rkString rkCacheIterator::prompt() const {
    return m_parm->prompt();
}

rkOStream &rkCacheIterator::toOStream(rkOStream &stream) const {
    return m_parm->toOStream(stream);
}

rkCStream &rkCacheIterator::toCStream(rkCStream &stream) const {
    return m_parm->toCStream(stream);
}

rkIStream &rkCacheIterator::fromIStream(rkIStream &stream) {
    return m_parm->fromIStream(stream);
}

// The wrapped family starts afresh in each state.
bool rkCacheIterator::nextValue() {
    m_tries = 0;
    m_info = "";
    m_factor = wideFactor;
    return rkIterator<int>::nextValue() && m_parm->firstValue();
}

bool rkCacheIterator::repeatValue() {
    return ++m_tries <= maxTries && setNewValue();
}

bool rkCacheIterator::setNewValueToParm(int, int, bool) {
    return false;
}

int rkCacheIterator::cacheSize() const {
    return cutToInt(m_cacheSource());
}

int rkCacheIterator::lowSize() const {
    return cutToInt(cacheSize() * (value() == 0 ? m_factor : 1.05));
}

int rkCacheIterator::highSize() const {
    return value() == 0 ? cutToInt(cacheSize() * 0.9) : INT_MAX;
}

int rkCacheIterator::getObjectSize() const {
    return m_object ? m_object->objectSize() : 0;
}

int rkCacheIterator::getTotalSize() const {
    double sum = 0;
    int size = 0;
    for (void *block = rkMallocFirst(&size, nullptr); block; block = rkMallocNext(&size, nullptr))
        sum += size;
    return cutToInt(sum);
}

rkString rkCacheIterator::getComment() const {
    if (value() == 0) return "inCache";
    return value() == 1 ? "outofCache" : "";
}

// Data that swing between too small and too big get a lower bound of 1 percent of the cache; those that then
// still miss are given up.
bool rkCacheIterator::validateSize() {
    m_objectSize = getObjectSize();
    m_totalSize = getTotalSize();
    if (m_objectSize == 0) m_objectSize = m_totalSize;
    bool tooSmall = m_objectSize < lowSize();
    bool tooBig = m_totalSize > highSize();
    if (!tooSmall && !tooBig) {
        m_tries = 0;
        m_info = "";
        return true;
    }
    rkString text = tryText(tooSmall, tooBig);
    m_info << text;
    g_ostrm << MsgResult << text << EndMessage;
    if (tooSmall && tooBig) {
        giveUpOrWiden();
    } else if (tooSmall && m_wasTooBig && m_tries >= 2 && giveUpOrWiden()) {
        return validateSize();
    }
    m_wasTooBig = tooBig;
    return false;
}

// True if the lower bound could fall.
bool rkCacheIterator::giveUpOrWiden() {
    if (m_factor - 0.0001 <= leastFactor) {
        m_tries = givenUp;
        return false;
    }
    m_factor = leastFactor;
    return true;
}

rkString rkCacheIterator::tryText(bool tooSmall, bool tooBig) const {
    rkString start("      ");
    start << getComment() << " try: cacheParm=" << m_parm->valueString();
    rkString text;
    if (tooSmall) {
        text << start << (m_object ? " objectSize=" : " totalSize=") << m_objectSize << " < " << lowSize()
             << "\n";
    }
    if (tooBig) text << start << " totalSize=" << m_totalSize << " > " << highSize() << "\n";
    return text;
}

// The first try jumps by a power of 2, later ones creep.
bool rkCacheIterator::setNewValue() {
    bool shrink = m_totalSize > highSize();
    int size = shrink ? m_totalSize : m_objectSize;
    int limit = shrink ? highSize() : lowSize();
    bool fine = m_tries > 1;
    return m_setNewValue ? m_setNewValue(m_parm, size, limit, fine) : setNewValueToParm(size, limit, fine);
}

void rkCacheIterator::outputInfo() const {
    if (g_ostrm.outLevel() < MsgResult) g_ostrm << MsgError << m_info << EndMessage;
}

// How often the size has to be doubled and then halved to come below the limit again.
struct Jump {
    int doublings;
    int halvings; // at least 1
};

// False where no number of steps leads there: nothing grows out of 0, and nothing falls below it.
static bool findJump(int size, int limit, Jump &jump) {
    if (size <= 0 || limit <= 0) return false;
    jump = {0, 0};
    long long s = size;
    for (; s <= limit; s *= 2) ++jump.doublings;
    do {
        s /= 2;
        ++jump.halvings;
    } while (s >= limit);
    return true;
}

// What no int holds becomes 0, which counts as no value.
static int shifted(int value, int count) {
    if (count < 1) return value >> -count;
    long long result = value * (1LL << count);
    return result <= INT_MAX && result >= INT_MIN ? int(result) : 0;
}

rkCacheIteratorInt::rkCacheIteratorInt(rkIterator<int> &parm, rkObject *object, SetNewValue set)
    : rkCacheIterator(parm, object, set) {}

bool rkCacheIteratorInt::setNewValueToParm(int size, int limit, bool fine) {
    auto &parm = static_cast<rkIterator<int> &>(*m_parm);
    int value = parm.value();
    if (!updateValue(value, size, limit, fine)) return false;
    parm.m_value = value;
    return true;
}

bool rkCacheIteratorInt::updateValue(int &value, int size, int limit, bool fine) {
    if (fine) {
        value = size >= limit ? value / 2 : shifted(value, 1);
    } else {
        Jump jump;
        if (!findJump(size, limit, jump)) return false;
        value = shifted(value, jump.doublings - jump.halvings);
    }
    return value > 0;
}

rkCacheIteratorSize::rkCacheIteratorSize(rkIterator<KeliSize> &parm, rkObject *object, SetNewValue set)
    : rkCacheIterator(parm, object, set) {}

bool rkCacheIteratorSize::setNewValueToParm(int size, int limit, bool fine) {
    auto &parm = static_cast<rkIterator<KeliSize> &>(*m_parm);
    KeliSize value = parm.value();
    if (!updateValue(value, size, limit, fine)) return false;
    parm.m_value = value;
    return true;
}

// The steps are spread over both sides, growing the width first.
static void jumpSize(KeliSize &value, Jump jump) {
    int kw = 0, kh = 0;
    for (int i = 0; i < jump.doublings; ++i) ++(kw <= kh ? kw : kh);
    for (int i = 0; i < jump.halvings; ++i) --(kw > kh ? kw : kh);
    value = {shifted(value.width, kw), shifted(value.height, kh)};
}

static void creepSize(KeliSize &value, bool shrink) {
    if (shrink) {
        int &side = value.width > value.height ? value.width : value.height;
        side /= 2;
    } else {
        int &side = value.width <= value.height ? value.width : value.height;
        side = shifted(side, 1);
    }
}

bool rkCacheIteratorSize::updateValue(KeliSize &value, int size, int limit, bool fine) {
    if (fine) {
        creepSize(value, size >= limit);
    } else {
        Jump jump;
        if (!findJump(size, limit, jump)) return false;
        jumpSize(value, jump);
    }
    return value.width >= 1 && value.height >= 1;
}
