// rklist.h - the one container: a doubly linked list with a sentinel.

#ifndef RAKOVA_RKLIST_H
#define RAKOVA_RKLIST_H

// Holds values of T. A list of pointers owns its nodes and nothing else: who owns the pointees deletes them.
// Nodes never move, so an iterator stays valid until its own node is erased; the sentinel behind the last
// element is there from construction to destruction. The size is found by walking.
template <class T>
class rkList {
public:
    struct node {
        node *next;
        node *prev;
        T value;
    };

    class iterator {
    public:
        explicit iterator(node *n = nullptr) : m_node(n) {}
        T &operator*() const { return m_node->value; }
        T *operator->() const { return &m_node->value; }
        iterator &operator++() {
            m_node = m_node->next;
            return *this;
        }
        iterator operator++(int) {
            iterator old = *this;
            ++*this;
            return old;
        }
        iterator &operator--() {
            m_node = m_node->prev;
            return *this;
        }
        bool operator==(iterator other) const { return m_node == other.m_node; }
        bool operator!=(iterator other) const { return m_node != other.m_node; }
        node *m_node;
    };

    rkList() : head(new node{nullptr, nullptr, T()}), tail(head) {}
    virtual ~rkList() {
        clear();
        delete tail;
    }
    rkList(rkList const &) = delete;
    rkList &operator=(rkList const &) = delete;

    iterator begin() const { return iterator(head); }
    iterator end() const { return iterator(tail); }
    bool empty() const { return head == tail; }
    int size() const;

    // The new node stands in front of position; returns it.
    iterator insert(iterator position, T const &value);
    void push_back(T const &value) { insert(end(), value); }
    void push_front(T const &value) { insert(begin(), value); }

    // Returns the node behind the erased one. REQUIRES: position is not end().
    iterator erase(iterator position);
    iterator erase(iterator first, iterator last);
    void clear() { erase(begin(), end()); }

    void swap(rkList &other);

    // Both lists are sorted by less; other is empty afterwards. Of equal elements those of this list come
    // first.
    void merge(rkList &other, bool (*less)(T &, T &));
    // Stable, for any number of elements.
    void sort(bool (*less)(T &, T &));

    node *head; // first node
    node *tail; // the sentinel
};

template <class T>
int rkList<T>::size() const {
    int n = 0;
    for (node *p = head; p != tail; p = p->next) ++n;
    return n;
}

template <class T>
typename rkList<T>::iterator rkList<T>::insert(iterator position, T const &value) {
    node *at = position.m_node;
    node *n = new node{at, at->prev, value};
    if (at->prev) {
        at->prev->next = n;
    } else {
        head = n;
    }
    at->prev = n;
    return iterator(n);
}

template <class T>
typename rkList<T>::iterator rkList<T>::erase(iterator position) {
    node *n = position.m_node;
    node *following = n->next;
    if (n->prev) {
        n->prev->next = following;
    } else {
        head = following;
    }
    following->prev = n->prev;
    delete n;
    return iterator(following);
}

template <class T>
typename rkList<T>::iterator rkList<T>::erase(iterator first, iterator last) {
    while (first != last) first = erase(first);
    return last;
}

template <class T>
void rkList<T>::swap(rkList &other) {
    node *h = head, *t = tail;
    head = other.head;
    tail = other.tail;
    other.head = h;
    other.tail = t;
}

template <class T>
void rkList<T>::merge(rkList &other, bool (*less)(T &, T &)) {
    if (&other == this) return;
    iterator mine = begin();
    while (mine != end() && !other.empty()) {
        if (less(*other.begin(), *mine)) {
            insert(mine, *other.begin());
            other.erase(other.begin());
        } else {
            ++mine;
        }
    }
    while (!other.empty()) {
        push_back(*other.begin());
        other.erase(other.begin());
    }
}

// Merge sort with bins: bin i holds 2 to the power i elements, the last bin gathers what is above.
template <class T>
void rkList<T>::sort(bool (*less)(T &, T &)) {
    if (empty() || ++begin() == end()) return;
    const int lastBin = 15;
    rkList carry;
    rkList bins[lastBin + 1];
    int fill = 0;
    while (!empty()) {
        carry.push_back(*begin());
        erase(begin());
        int i = 0;
        for (; i < fill && i < lastBin && !bins[i].empty(); ++i) {
            bins[i].merge(carry, less);
            bins[i].swap(carry);
        }
        if (i == lastBin) {
            bins[i].merge(carry, less);
        } else {
            bins[i].swap(carry);
        }
        if (i == fill) ++fill;
    }
    while (fill > 0) merge(bins[--fill], less); // the higher bins hold the earlier elements
}

#endif
