// rkcache.h - makes the data of a test fit in the cache, or not fit, by changing one of its parameters.

#ifndef RAKOVA_RKCACHE_H
#define RAKOVA_RKCACHE_H

#include "rkiterator.h"
#include "rkobject.h"

// Walks two states, 0 in cache and 1 out of cache, around a wrapped parameter. To the user it looks like the
// wrapped one.
class rkCacheIterator : public rkIterator<int> {
public:
    // A test's own way to change the value: parameter, present size, wanted limit, whether to creep.
    using SetNewValue = bool (*)(rkParameter *parm, int size, int limit, bool fine);

    // object: the one whose size counts; null: all tracked blocks. Neither is owned.
    rkCacheIterator(rkParameter &parm, rkObject *object, SetNewValue set);

    rkString valueString() const override;
    rkString defaultString() const override;
    rkString validString() const override;
    rkString description() const override;
    rkString prompt() const override;
    rkOStream &toOStream(rkOStream &stream) const override;
    rkCStream &toCStream(rkCStream &stream) const override;
    rkIStream &fromIStream(rkIStream &stream) override;
    bool nextValue() override;
    virtual bool repeatValue(); // one more try with another size; false if there were enough
    virtual bool setNewValueToParm(int size, int limit, bool fine);

    int cacheSize() const; // bytes of the largest cache, 0 if it is not known
    int lowSize() const;
    int highSize() const;
    int getObjectSize() const;
    int getTotalSize() const;
    rkString getComment() const; // "inCache" or "outofCache"
    bool validateSize();         // whether the data as they are fit the state
    bool setNewValue();
    void outputInfo() const;

    rkParameter *m_parm;
    rkObject *m_object;
    int m_tries;
    int m_objectSize;
    int m_totalSize;
    bool m_wasTooBig;
    double m_factor; // lower bound of the in-cache state as a part of the cache
    rkString m_info; // the tries of this state
    SetNewValue m_setNewValue;

    static unsigned int (*m_cacheSource)(); // bytes of the largest cache; a test puts its own in its place

private:
    bool giveUpOrWiden();
    rkString tryText(bool tooSmall, bool tooBig) const;
};

class rkCacheIteratorInt : public rkCacheIterator {
public:
    rkCacheIteratorInt(rkIterator<int> &parm, rkObject *object, SetNewValue set);
    bool setNewValueToParm(int size, int limit, bool fine) override;
    static bool updateValue(int &value, int size, int limit, bool fine); // false if it becomes 0
};

class rkCacheIteratorSize : public rkCacheIterator {
public:
    rkCacheIteratorSize(rkIterator<KeliSize> &parm, rkObject *object, SetNewValue set);
    bool setNewValueToParm(int size, int limit, bool fine) override;
    static bool updateValue(KeliSize &value, int size, int limit, bool fine);
};

#endif
