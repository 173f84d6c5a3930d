// AcArray and the arrays of afxcoll.h: growing, shrinking, and elements that are handed to their own array.
#include "acarray.h"
#include "afxcoll.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::vector<int> items(const AcArray<int>& a) {
    return {a.begin(), a.end()};
}

TEST(AcArray, changes) {
    AcArray<int> a;
    EXPECT_TRUE(a.isEmpty());
    EXPECT_EQ(a.append(1), 0);
    EXPECT_EQ(a.append(3), 1);
    a.insertAt(1, 2).insertAt(3, 4).insertAt(0, 0);
    EXPECT_EQ(items(a), (std::vector{0, 1, 2, 3, 4}));
    EXPECT_EQ(a.append(a), 5);
    EXPECT_EQ(a.length(), 10);
    a.removeSubArray(5, 9).removeAt(0).removeLast();
    EXPECT_EQ(items(a), (std::vector{1, 2, 3}));
    a.append(2);
    EXPECT_EQ(a.find(2), 1);
    EXPECT_EQ(a.find(2, 2), 3);
    int at = -7;
    EXPECT_FALSE(a.find(9, at, 0));
    EXPECT_EQ(at, -7);
    EXPECT_TRUE(a.find(2, at, 2));
    EXPECT_EQ(at, 3);
    EXPECT_TRUE(a.contains(3) && !a.contains(9) && a.remove(2, 2) && !a.remove(9));
    EXPECT_EQ(items(a), (std::vector{1, 2, 3}));
    a.reverse().swap(0, 1).setAt(2, 7);
    EXPECT_EQ(items(a), (std::vector{2, 3, 7}));
    EXPECT_EQ(a.first() * 10 + a.last(), 27);
    a.setLogicalLength(4);
    EXPECT_EQ(items(a), (std::vector{2, 3, 7, 0}));
    a.setPhysicalLength(2);
    EXPECT_EQ(items(a), (std::vector{2, 3}));
    a.setPhysicalLength(50);
    EXPECT_GE(a.physicalLength(), 50);
    EXPECT_EQ(a.asArrayPtr()[1], 3);
    AcArray<int> other = a;
    EXPECT_TRUE(other == a);
    EXPECT_TRUE(other.removeAll().isEmpty());
    EXPECT_EQ(a.setAll(5).at(1), 5);
}

TEST(CStringArray, takes_its_own_elements) {
    CStringArray a;
    EXPECT_EQ(a.GetUpperBound(), -1);
    EXPECT_EQ(a.Add(L"给水"), 0);
    for (int i = 0; i != 40; ++i)
        a.Add(a[i]);
    EXPECT_TRUE(a[40] == L"给水");
    a.InsertAt(0, a[40], 2);
    a.SetAtGrow(50, a[0]);
    EXPECT_EQ(a.GetSize(), 51);
    EXPECT_TRUE(a[49].IsEmpty() && a[50] == L"给水");
    a.RemoveAt(1, 49);
    EXPECT_EQ(a.Append(a), 2);
    EXPECT_EQ(a.GetCount(), 4);
    CStringArray copy;
    copy.Copy(a);
    copy.SetAt(0, L"x");
    EXPECT_TRUE(a.GetAt(0) == L"给水" && copy.ElementAt(0) == L"x");
    copy.InsertAt(6, L"far");
    EXPECT_EQ(copy.GetSize(), 7);
    copy.RemoveAll();
    EXPECT_TRUE(copy.IsEmpty());
    CUIntArray numbers;
    numbers.SetSize(3);
    EXPECT_EQ(numbers[2], 0u);
}

} // namespace
