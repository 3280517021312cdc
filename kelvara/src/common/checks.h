// checks.h - the parts that argument checks are made of.

#ifndef KELVARA_CHECKS_H
#define KELVARA_CHECKS_H

namespace kelvara {

template <class... T>
inline bool anyNull(const T *...p) {
    return ((p == nullptr) || ...);
}

// True if `samples` samples of type T do not fit into a row of stepBytes.
template <class T>
inline bool tooNarrow(long long stepBytes, long long samples) {
    return stepBytes < samples * static_cast<long long>(sizeof(T));
}

} // namespace kelvara

#endif
