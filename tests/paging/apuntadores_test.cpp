// Keyset paging over a data-access double of 10,000 rows: forward to the end and back, rows
// inserted and deleted between two pages, and a primary key of two fields.
#include <gtest/gtest.h>

#include <set>

#include "paging/Apuntadores.hpp"
#include "tests/collections/collection_support.hpp"
#include "tests/support/fake_host.hpp"

namespace celdo::paging {
namespace {

using automation::Argument, automation::make_ref, automation::Variant;
using Fields = automation::Ref<collections::clsCeldos>;
using Key = std::pair<int32_t, int32_t>;  // (Serie, Numero); Serie 0 for a one-field key

// The host: its table's keys in order, and its handlers: Requery fetches a page from the PK it
// is given and records it, EnterCell is counted.
struct Host final : automation::Peer {
    std::set<Key> table;
    automation::Ref<Apuntadores> pages = make_ref<Apuntadores>();
    Fields header = make_ref<collections::clsCeldos>();
    std::vector<Key> shown;
    std::vector<std::string> asked;
    int entered = 0;
    bool drop_on_enter = false;  // the handler lets the pages go, as a closing form does

    Host(int32_t rows, bool two) {
        pages->attach_peer(this);
        for (int32_t i = 1; i <= rows; ++i) table.insert(two ? Key{i / 1000, i % 1000 * 10} : Key{0, i * 10});
        for (const char16_t* name : {u"Serie", u"Numero"}) celdo::testing::add_field(*header, name, fields::exLong);
        celdo::testing::add_field(*header, u"Nombre");
        pages->let_PrimaryKey(two ? u"Serie, Numero" : u"Numero");
    }
    ~Host() {
        if (pages) pages->detach_peer(this);
    }

    void raise_event(int32_t event, std::span<Argument> args) override {
        if (event == events::Apuntadores::EnterCell) {
            ++entered;
            if (drop_on_enter) pages = nullptr;
            return;
        }
        ASSERT_EQ(event, events::Apuntadores::Requery);
        const Fields pk(dynamic_cast<collections::clsCeldos*>(args[0].value.as_object()));
        auto it = table.begin();
        asked.push_back("first");
        if (pk->get_Count() > 0) {
            const auto n = testing::item(*pk, u"Numero");
            const Key from{pk->get_Count() > 1 ? automation::to_long(testing::item(*pk, u"Serie")->get_Value()) : 0,
                           automation::to_long(n->get_Value())};
            const bool after = n->get_Operator() == u">";
            it = after ? table.upper_bound(from) : table.lower_bound(from);
            asked.back() = (after ? ">" : ">=") + std::to_string(from.first) + "," + std::to_string(from.second);
        }
        shown.clear();
        for (; it != table.end() && static_cast<int32_t>(shown.size()) < pages->get_MaxRows(); ++it) shown.push_back(*it);
        auto cells = automation::Array::matrix(3, static_cast<int32_t>(shown.size()));
        for (int32_t r = 0; r < cells.ubound(2) + 1; ++r)
            std::tie(cells.at(0, r), cells.at(1, r), cells.at(2, r)) = std::tuple(shown[r].first, shown[r].second, u"x");
        pages->AddRows(Variant(std::move(cells)), header, u"");
    }
};

TEST(Apuntadores, ForwardToTheEndAndBackOverTenThousandRows) {
    for (bool two : {false, true}) {
        Host host(10000, two);
        host.pages->let_MaxRows(100);
        std::vector<Key> seen;
        while (host.pages->Avanzar()) seen.insert(seen.end(), host.shown.begin(), host.shown.end());
        // Every row once, in key order; the page past the last came back empty and ended it.
        ASSERT_EQ(seen.size(), 10000u) << two;
        EXPECT_TRUE(std::is_sorted(seen.begin(), seen.end()));
        EXPECT_EQ(std::adjacent_find(seen.begin(), seen.end()), seen.end());
        EXPECT_EQ(host.pages->get_Count(), 100);
        EXPECT_FALSE(host.pages->Avanzar());
        // Back: the previous page again, from its first key.
        ASSERT_TRUE(host.pages->Retroceder());
        EXPECT_EQ(host.shown.front(), seen[9800]);
        EXPECT_EQ(host.pages->get_Count(), 99);
        EXPECT_EQ(host.pages->get_Current()->get_Index(), 99);
        EXPECT_TRUE(host.pages->Avanzar()) << "back from the end, forward works again";
        EXPECT_EQ(host.shown.back(), seen.back());
    }
}

TEST(Apuntadores, RowsInsertedOrDeletedBetweenPagesAreNeitherSkippedNorRepeated) {
    Host host(1000, false);
    host.pages->let_MaxRows(10);
    ASSERT_TRUE(host.pages->Avanzar());  // rows 10..100
    ASSERT_TRUE(host.pages->Avanzar());  // rows 110..200
    host.table.insert({0, 205});         // after the page shown
    host.table.insert({0, 15});          // on the first page
    host.table.erase({0, 210});
    ASSERT_TRUE(host.pages->Avanzar());
    EXPECT_EQ(host.shown.front(), (Key{0, 205}));
    ASSERT_TRUE(host.pages->Retroceder());
    ASSERT_TRUE(host.pages->Retroceder());
    EXPECT_EQ(host.shown[1], (Key{0, 15}));  // the page fetched again shows the new row
    EXPECT_EQ(host.asked, (std::vector<std::string>{"first", ">0,100", ">0,200", ">=0,110", ">=0,10"}));
    EXPECT_EQ(host.pages->get_Count(), 1);
    EXPECT_FALSE(host.pages->Retroceder());
}

TEST(Apuntadores, FilterPrimaryKeyMaxRowsAndThePointers) {
    Host host(50, false);
    host.pages->let_MaxRows(20);
    host.pages->let_Filter(u"Activo = 1");  // a new result: the first page is asked for
    host.pages->Avanzar();
    host.pages->Avanzar();
    EXPECT_FALSE(host.pages->Avanzar());  // the third page held 10 rows: the end
    EXPECT_EQ(host.pages->get_Count(), 3);
    Variant second(2), third(3);
    host.pages->get_Item(third)->let_Key(u"last");
    Variant key(u"LAST");
    EXPECT_EQ(host.pages->get_Item(key)->get_Index(), 3);
    host.pages->Remove(second);
    EXPECT_EQ(host.pages->get_Item(key)->get_Index(), 2);
    EXPECT_EQ(host.pages->get_Current().get(), host.pages->get_Item(key).get());
    EXPECT_EQ(testing::error_of([&] { host.pages->get_Item(third); }).number(), 5);
    EXPECT_EQ(testing::error_of([&] { host.pages->let_MaxRows(0); }).number(), 380);
    EXPECT_EQ(host.pages->get_Item(key)->get_First()->at(0).get_Value(), Variant(410));
    Variant current(2);
    host.pages->Remove(current);  // the current page: the one before it is current
    EXPECT_EQ(host.pages->get_Current()->get_Index(), 1);
    host.pages->let_Filter(u"Activo = 1");  // the same filter: nothing happens
    EXPECT_EQ(host.pages->get_Count(), 1);
    EXPECT_EQ(host.pages->AddRows(Variant(), host.header, u"").get(), nullptr);  // no rows
    EXPECT_EQ(testing::error_of([&] { host.pages->Add(host.header, nullptr, 0, u""); }).number(), 91);
    EXPECT_EQ(testing::error_of([&] { host.pages->Add(make_ref<collections::clsCeldos>(), host.header, 0, u""); }).number(), 5);
    host.pages->let_Filter(u"Activo = 0");  // a new filter: the pages go, the first is asked for
    host.pages->let_PrimaryKey(u"Numero");  // a new key: the pages go, nothing is asked
    EXPECT_EQ(host.pages->get_Count(), 0);
    EXPECT_EQ(host.asked, (std::vector<std::string>{"first", ">0,200", ">0,400", "first"}));
}

TEST(Apuntadores, TheControlsCellEventsRaiseEnterCellWhileItIsTheControl) {
    Host host(10, false);
    auto grid = make_ref<testing::Fake>(u"MSFlexGrid"), list = make_ref<testing::Fake>(u"ListView");
    host.pages->set_Control(grid);
    for (const char16_t* event : {u"EnterCell", u"itemclick", u"Click", u"LeaveCell"}) grid->raise(event);
    EXPECT_EQ(host.entered, 2);
    host.pages->set_Control(list);  // the grid is no longer listened to
    EXPECT_EQ(grid->sink, nullptr);
    list->raise(u"ItemClick");
    EXPECT_EQ(host.entered, 3);
    host.pages->set_Control(nullptr);
    EXPECT_EQ(list->sink, nullptr);

    host.pages->set_Control(grid);
    host.drop_on_enter = true;  // the pages go during their own event, and stop listening after it
    grid->raise(u"EnterCell");
    EXPECT_EQ(host.entered, 4);
    EXPECT_EQ(grid->sink, nullptr);
}

}  // namespace
}  // namespace celdo::paging
