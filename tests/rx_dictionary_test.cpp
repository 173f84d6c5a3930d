// Dictionaries of the runtime, in each of their manners.
#include "host/rx/dictionary.h"
#include "rxsrvice.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

using rx::dictionary;

// Counts those that live.
struct counted : AcRxObject {
    explicit counted(int& n) : living(n) { ++living; }
    ~counted() override { --living; }
    int& living;
};

std::wstring keys(dictionary& d, AcRx::DictIterType order) {
    std::wstring all;
    const std::unique_ptr<AcRxDictionaryIterator> it(d.newIterator(order));
    for (; !it->done(); it->next())
        all += std::wstring(it->key()) + L" ";
    EXPECT_EQ(it->object(), nullptr);
    EXPECT_EQ(it->key(), nullptr);
    EXPECT_EQ(it->id(), 0u);
    return all;
}

TEST(rx_dictionary, entries_by_key_and_by_number) {
    dictionary d;
    AcRxService a, b, c;
    Adesk::UInt32 first = 0;
    Adesk::UInt32 id = 0;
    EXPECT_EQ(d.atPut(L"水", &a, first), nullptr);
    EXPECT_TRUE(d.atKeyAndIdPut(L"x", 2, &b));
    EXPECT_EQ(d.atPut(L"A", &c, id), nullptr);
    EXPECT_EQ(id, 3u); // the number that is in use is passed over
    EXPECT_FALSE(d.atKeyAndIdPut(L"x", 9, &b));
    EXPECT_FALSE(d.atKeyAndIdPut(L"y", 2, &b));
    EXPECT_EQ(d.numEntries(), 3u);
    EXPECT_EQ(d.at(L"水"), &a);
    EXPECT_EQ(d.at(first), &a);
    EXPECT_EQ(d.at(L"X"), nullptr);
    EXPECT_EQ(d.at(static_cast<const ACHAR*>(nullptr)), nullptr);
    EXPECT_EQ(d.idAt(L"x"), 2u);
    EXPECT_STREQ(d.keyAt(2), L"x");
    EXPECT_EQ(keys(d, AcRx::kDictSorted), L"A x 水 ");
    EXPECT_EQ(keys(d, AcRx::kDictCollated), L"水 x A ");

    EXPECT_EQ(d.atPut(L"x", &c, id), &b); // replaced, the number stays
    EXPECT_EQ(id, 2u);
    EXPECT_EQ(d.atPut(2u, &b), &c);
    EXPECT_EQ(d.atPut(77u, &b), nullptr);
    EXPECT_EQ(d.atPut(L"null", nullptr, id), nullptr);
    EXPECT_FALSE(d.has(L"null"));

    EXPECT_FALSE(d.resetKey(L"x", L"A"));
    EXPECT_FALSE(d.resetKey(L"none", L"B"));
    EXPECT_TRUE(d.resetKey(2u, L"z"));
    EXPECT_TRUE(d.resetKey(L"z", L"z"));
    EXPECT_EQ(d.at(L"z"), &b);
    EXPECT_EQ(d.at(2u), &b);
    EXPECT_FALSE(d.has(L"x"));

    EXPECT_EQ(d.remove(L"z"), &b);
    EXPECT_EQ(d.remove(2u), nullptr);
    EXPECT_EQ(d.remove(first), &a);
    EXPECT_EQ(d.numEntries(), 1u);
}

TEST(rx_dictionary, without_case_it_keeps_the_spelling) {
    dictionary d({.ignores_case = true});
    AcRxService a, b;
    Adesk::UInt32 id = 0;
    d.atPut(L"Pipe", &a, id);
    EXPECT_EQ(d.at(L"PIPE"), &a);
    EXPECT_EQ(d.atPut(L"pIPE", &b, id), &a);
    EXPECT_EQ(keys(d, AcRx::kDictSorted), L"Pipe ");
    EXPECT_TRUE(d.resetKey(L"PIPE", L"pipe"));
    EXPECT_STREQ(d.keyAt(id), L"pipe");
    EXPECT_FALSE(d.isCaseSensitive());
}

TEST(rx_dictionary, deletes_objects_with_their_entries) {
    int living = 0;
    {
        dictionary d({.deletes_objects = true});
        Adesk::UInt32 id = 0;
        auto* const kept = new counted(living);
        d.atPut(L"a", kept, id);
        EXPECT_EQ(d.atPut(L"a", kept, id), kept); // itself again
        d.atPut(L"b", new counted(living), id);
        EXPECT_EQ(living, 2);
        EXPECT_EQ(d.atPut(L"b", new counted(living), id), nullptr);
        EXPECT_EQ(living, 2);
        EXPECT_EQ(d.remove(L"a"), nullptr);
        EXPECT_EQ(living, 1);
    }
    EXPECT_EQ(living, 0);
}

TEST(rx_dictionary, may_lose_entries_while_it_is_walked) {
    dictionary d;
    AcRxService a;
    Adesk::UInt32 id = 0;
    for (const wchar_t* key : {L"1", L"2", L"3", L"4"})
        d.atPut(key, &a, id);
    const std::unique_ptr<AcRxDictionaryIterator> it(d.newIterator());
    d.remove(L"1");
    EXPECT_STREQ(it->key(), L"2");
    d.remove(L"2");
    d.remove(L"3");
    d.atPut(L"5", &a, id);
    EXPECT_STREQ(it->key(), L"4");
    EXPECT_FALSE(it->next());
    EXPECT_TRUE(it->done());
}

} // namespace
