// kmplaintypes.cpp - text forms of the library's points and rectangles.

#include "kmplaintypes.h"

rkString &operator<<(rkString &text, KeliPoint point) {
    return text << "(" << point.x << "," << point.y << ")";
}

rkString &operator<<(rkString &text, KeliRect rect) {
    return text << KeliPoint{rect.x, rect.y} << KeliSize{rect.width, rect.height};
}

namespace {

// Numbers for all fields in turn; a missing word counts as 0. True if there was a number for each.
bool readFields(int *const *fields, int count, rkString const &text, char const *separators) {
    rkStringList words;
    bool good = text.parse(words, separators) >= count;
    auto word = words.begin();
    for (int i = 0; i < count; ++i) {
        if (word == words.end()) {
            *fields[i] = 0;
        } else {
            rkString number = *word++;
            *fields[i] << number;
            good = good && !number.failed();
        }
    }
    return good;
}

} // namespace

KeliPoint &operator<<(KeliPoint &point, rkString &text) {
    int *const fields[] = {&point.x, &point.y};
    text.m_failed = !readFields(fields, 2, text, " {}(),");
    return point;
}

KeliRect &operator<<(KeliRect &rect, rkString &text) {
    int *const fields[] = {&rect.x, &rect.y, &rect.width, &rect.height};
    bool good = readFields(fields, 4, text, " {}(),x");
    text.m_failed = !good || rect.width < 1 || rect.height < 1;
    return rect;
}
