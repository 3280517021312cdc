// rkiterator.h - parameters that walk a family of values: a list, or plain steps from first to last.

#ifndef RAKOVA_RKITERATOR_H
#define RAKOVA_RKITERATOR_H

#include "rkdefault.h"

// A list of values. The texts that translate takes are items separated by ";".
template <class T>
class rkIterator_NSC : public rkDefault_NSC<T>, public rkList<T> {
public:
    rkIterator_NSC() = default;
    rkIterator_NSC(rkString name, rkString descr) : rkDefault_NSC<T>(T(), name, descr) {}

    // Empties the list and takes the name; the values follow by add.
    void init(rkString name, rkString descr = "") { rkDefault_NSC<T>::init(T(), name, descr); }

    void reset() override;
    rkString defaultString() const override { return listDescr(*this, "; "); }
    bool nextValue() override;
    void translate(rkString text) override;
    virtual ~rkIterator_NSC() = default;
    virtual void add(T value) { this->push_back(value); }

    rkString listDescr(rkList<T> const &list, rkString separator) const;

    typename rkList<T>::iterator m_current; // null: a walk under way goes on at the first node
};

template <class T>
class rkIterator : public rkIterator_NSC<T> {
public:
    using rkIterator_NSC<T>::rkIterator_NSC;
    rkString valueToString(T value) const override { return rkValueToString(value); }
    T stringToValue(rkString &text) const override { return rkStringToValue<T>(text); }
};

// One fixed int that the user never sees: for a test that needs one pass of its loop.
class rkDummyIterator : public rkDefault<int> {
public:
    using rkDefault<int>::rkDefault;
};

template <class T>
void rkIterator_NSC<T>::reset() {
    rkDefault_NSC<T>::reset();
    this->clear();
    m_current = typename rkList<T>::iterator();
}

template <class T>
bool rkIterator_NSC<T>::nextValue() {
    if (this->m_done && m_current.m_node) {
        ++m_current;
    } else {
        m_current = this->begin();
    }
    this->m_value = *m_current; // the sentinel's at the end
    this->m_done = m_current != this->end();
    return this->m_done;
}

// A bad item leaves the old list as it is.
template <class T>
void rkIterator_NSC<T>::translate(rkString text) {
    rkStringList words;
    if (text.parse(words, ";") == 0) throw rkException("Empty iterator definition");
    rkList<T> values;
    for (auto word = words.begin(); word != words.end(); ++word) {
        (*word).trim();
        values.push_back(rkDefault_NSC<T>::validItem(*word));
    }
    this->swap(values);
    m_current = typename rkList<T>::iterator(); // its node goes with the old list
}

template <class T>
rkString rkIterator_NSC<T>::listDescr(rkList<T> const &list, rkString separator) const {
    rkString text;
    for (auto i = list.begin(); i != list.end(); ++i) {
        if (i != list.begin()) text << separator;
        text << this->valueToString(*i);
    }
    return text;
}

#endif
