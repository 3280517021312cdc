// rklist_test.cpp - the list: its links, merge and sort.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "rkstring.h"

namespace {

struct Item {
    int key;
    int order; // where it stood before the sort
};

using Ints = rkList<int>;

bool less(int &a, int &b) {
    return a < b;
}

bool lessKey(Item &a, Item &b) {
    return a.key < b.key;
}

void fill(Ints &list, std::vector<int> const &values) {
    for (int v : values) list.push_back(v);
}

std::vector<int> values(Ints const &list) {
    std::vector<int> out;
    for (int v : list) out.push_back(v);
    return out;
}

// The links backwards from the sentinel show the same elements.
std::vector<int> backwards(Ints const &list) {
    std::vector<int> out;
    for (auto *n = list.tail->prev; n; n = n->prev) out.insert(out.begin(), n->value);
    return out;
}

void expectList(Ints const &list, std::vector<int> const &expected) {
    EXPECT_EQ(values(list), expected);
    EXPECT_EQ(backwards(list), expected);
    EXPECT_EQ(list.tail->next, nullptr);
    EXPECT_EQ(list.size(), static_cast<int>(expected.size()));
}

// Sorts count items whose keys repeat and compares with a stable sort of a vector.
void expectStableSort(int count, int keys) {
    std::mt19937 random(7);
    rkList<Item> list;
    std::vector<Item> expected;
    for (int i = 0; i < count; ++i) {
        Item item = {static_cast<int>(random() % keys), i};
        list.push_back(item);
        expected.push_back(item);
    }
    std::stable_sort(expected.begin(), expected.end(),
                     [](Item const &a, Item const &b) { return a.key < b.key; });
    list.sort(lessKey);
    ASSERT_EQ(list.size(), count);
    size_t i = 0;
    for (Item const &item : list) {
        ASSERT_EQ(item.key, expected[i].key) << i;
        ASSERT_EQ(item.order, expected[i].order) << i;
        ++i;
    }
}

} // namespace

TEST(RkList, NewListIsEmptyAndHasOnlyTheSentinel) {
    Ints list;
    EXPECT_TRUE(list.empty());
    EXPECT_EQ(list.size(), 0);
    EXPECT_TRUE(list.begin() == list.end());
    EXPECT_EQ(list.head, list.tail);
    EXPECT_EQ(list.tail->next, nullptr);
    EXPECT_EQ(list.tail->prev, nullptr);
    EXPECT_EQ(list.tail->value, 0);
}

TEST(RkList, EraseOfTheOnlyElementLeavesTheSentinelAsHead) {
    Ints list;
    list.push_back(5);
    auto following = list.erase(list.begin());
    EXPECT_TRUE(following == list.end());
    EXPECT_EQ(list.head, list.tail);
    EXPECT_EQ(list.head->prev, nullptr);
}

TEST(RkList, InsertAtTheEndOfAnEmptyListMovesHead) {
    Ints list;
    auto i = list.insert(list.end(), 3);
    EXPECT_EQ(list.head, i.m_node);
    EXPECT_EQ(list.head->next, list.tail);
    EXPECT_EQ(list.tail->prev, list.head);
    expectList(list, {3});
}

TEST(RkList, InsertStandsInFrontOfThePosition) {
    Ints list;
    fill(list, {1, 3});
    auto i = list.insert(++list.begin(), 2);
    EXPECT_EQ(*i, 2);
    list.push_front(0);
    expectList(list, {0, 1, 2, 3});
}

TEST(RkList, EraseReturnsTheFollowingNode) {
    Ints list;
    fill(list, {1, 2, 3});
    auto i = list.erase(++list.begin());
    EXPECT_EQ(*i, 3);
    expectList(list, {1, 3});
}

TEST(RkList, EraseOfARangeLeavesTheRest) {
    Ints list;
    fill(list, {1, 2, 3, 4});
    auto first = ++list.begin(), last = first;
    ++ ++last;
    EXPECT_TRUE(list.erase(first, last) == last);
    expectList(list, {1, 4});
}

TEST(RkList, EraseOfAnEmptyRangeDoesNothing) {
    Ints list;
    fill(list, {1, 2});
    EXPECT_TRUE(list.erase(list.begin(), list.begin()) == list.begin());
    expectList(list, {1, 2});
}

TEST(RkList, ClearLeavesAUsableList) {
    Ints list;
    fill(list, {1, 2});
    list.clear();
    EXPECT_TRUE(list.empty());
    list.push_back(9);
    expectList(list, {9});
}

TEST(RkList, PostfixIncrementReturnsTheOldPosition) {
    Ints list;
    fill(list, {1, 2});
    auto i = list.begin();
    EXPECT_EQ(*i++, 1);
    EXPECT_EQ(*i, 2);
}

TEST(RkList, OtherIteratorsStayValidAcrossInsertAndErase) {
    Ints list;
    fill(list, {1, 2, 3});
    auto first = list.begin(), third = first;
    ++ ++third;
    auto *node = third.m_node;
    list.insert(third, 7);
    list.erase(++list.begin());
    EXPECT_EQ(*first, 1);
    EXPECT_EQ(*third, 3);
    EXPECT_EQ(list.tail->prev, node);
}

TEST(RkList, SwapTakesTheSentinelsAlong) {
    Ints a, b;
    fill(a, {1, 2});
    auto *tail = a.tail;
    a.swap(b);
    EXPECT_EQ(b.tail, tail);
    expectList(a, {});
    expectList(b, {1, 2});
}

TEST(RkList, MergeWithItselfLeavesTheListUnchanged) {
    Ints list;
    fill(list, {2, 1, 3});
    list.merge(list, less);
    expectList(list, {2, 1, 3});
}

TEST(RkList, MergeEmptiesTheOtherList) {
    Ints a, b;
    fill(a, {1, 4, 6});
    fill(b, {0, 4, 5, 8, 9});
    a.merge(b, less);
    expectList(a, {0, 1, 4, 4, 5, 6, 8, 9});
    expectList(b, {});
}

TEST(RkList, MergeIntoAnEmptyListTakesAll) {
    Ints a, b;
    fill(b, {1, 2});
    a.merge(b, less);
    expectList(a, {1, 2});
    expectList(b, {});
}

TEST(RkList, MergeKeepsEqualElementsOfThisListInFront) {
    rkList<Item> a, b;
    a.push_back({1, 0});
    a.push_back({1, 1});
    b.push_back({1, 2});
    a.merge(b, lessKey);
    int order = 0;
    for (Item const &item : a) EXPECT_EQ(item.order, order++);
    EXPECT_EQ(order, 3);
}

TEST(RkList, SortLeavesAListOfOneElementAsItIs) {
    Ints list;
    list.sort(less);
    expectList(list, {});
    list.push_back(1);
    auto *node = list.head;
    list.sort(less);
    EXPECT_EQ(list.head, node);
    expectList(list, {1});
}

TEST(RkList, SortOrdersAndKeepsTheLinksWhole) {
    Ints list;
    fill(list, {5, 3, 9, 1, 3, 0});
    list.sort(less);
    expectList(list, {0, 1, 3, 3, 5, 9});
}

TEST(RkList, SortKeepsTheSentinelOfItsList) {
    Ints list;
    fill(list, {5, 3, 9});
    auto end = list.end();
    list.sort(less);
    EXPECT_TRUE(list.end() == end);
}

TEST(RkList, SortIsStableForEverySmallSize) {
    for (int n = 2; n <= 70; ++n) expectStableSort(n, 5);
}

TEST(RkList, SortIsStableWhereTheLastBinStarts) {
    for (int n : {32767, 32768, 32769}) expectStableSort(n, 100);
}

TEST(RkList, SortIsStableBeyondTheBins) {
    expectStableSort(65535, 50);
    expectStableSort(131073, 50);
}

TEST(RkList, PointeesAreNotDeleted) {
    struct Counted {
        int *deaths;
        ~Counted() { ++*deaths; }
    };
    int deaths = 0;
    Counted a{&deaths};
    {
        rkList<Counted *> list;
        list.push_back(&a);
        list.push_back(&a);
        list.erase(list.begin());
    }
    EXPECT_EQ(deaths, 0);
}

TEST(RkList, DestructionThroughTheBaseReachesTheDerivedList) {
    struct Derived : rkList<int> {
        explicit Derived(bool &gone) : m_gone(gone) {}
        ~Derived() override { m_gone = true; }
        bool &m_gone;
    };
    bool gone = false;
    rkList<int> *list = new Derived(gone);
    list->push_back(1);
    delete list;
    EXPECT_TRUE(gone);
}

TEST(RkList, ListsOfStringsHoldCopies) {
    rkStringList list;
    rkString s = "one";
    list.push_back(s);
    s = "two";
    EXPECT_STREQ((*list.begin()).c_str(), "one");
}
