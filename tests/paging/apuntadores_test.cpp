// Keyset paging over a data-access double of 10,000 rows: forward to the end and back, rows
// inserted and deleted between two pages, and a primary key of two fields.
#include <gtest/gtest.h>

#include <functional>
#include <map>

#include "automation/convert.hpp"
#include "automation/text.hpp"
#include "paging/Apuntadores.hpp"
#include "tests/collections/collection_support.hpp"
#include "tests/support/test_support.hpp"

namespace celdo::paging {
namespace {

using automation::Argument, automation::make_ref, automation::Variant;
using Fields = automation::Ref<collections::clsCeldos>;
using Key = std::pair<int32_t, int32_t>;  // (Serie, Numero); Serie 0 for a one-field key

// The host: its table ordered by key, and its Requery handler, which fetches a page from the
// PK it is given and records it.
struct Host final : automation::Peer {
    std::map<Key, std::u16string> table;
    automation::Ref<Apuntadores> pages = make_ref<Apuntadores>();
    Fields header = make_ref<collections::clsCeldos>();
    std::vector<Key> shown;
    std::vector<std::string> asked;
    bool two_fields = false;

    Host(int32_t rows, bool two) : two_fields(two) {
        pages->attach_peer(this);
        for (int32_t i = 1; i <= rows; ++i) table[two ? Key{i / 1000, i % 1000 * 10} : Key{0, i * 10}] = u"row";
        for (const char16_t* name : {u"Serie", u"Numero"}) celdo::testing::add_field(*header, name, fields::exLong);
        celdo::testing::add_field(*header, u"Nombre");
        pages->let_PrimaryKey(two ? u"Serie, Numero" : u"Numero");
    }
    ~Host() {
        if (pages) pages->detach_peer(this);
    }

    int entered = 0;
    bool drop_on_enter = false;  // the handler lets the pages go, as a closing form does
    void raise_event(int32_t event, std::span<Argument> args) override {
        if (event == events::Apuntadores::EnterCell) {
            ++entered;
            if (drop_on_enter) pages = nullptr;
            return;
        }
        ASSERT_EQ(event, events::Apuntadores::Requery);
        const Fields pk(dynamic_cast<collections::clsCeldos*>(args[0].value.as_object()));
        auto it = table.begin();
        std::string request = "first";
        if (pk->get_Count() > 0) {
            Variant numero(u"Numero"), serie(u"Serie");
            const auto& n = *pk->get_Item(numero);
            const Key from{two_fields ? automation::to_long(pk->get_Item(serie)->get_Value()) : 0,
                           automation::to_long(n.get_Value())};
            const bool after = n.get_Operator() == u">";
            it = after ? table.upper_bound(from) : table.lower_bound(from);
            request = (after ? ">" : ">=") + std::to_string(from.first) + "," + std::to_string(from.second);
        }
        asked.push_back(request);
        std::vector<Key> page;
        for (; it != table.end() && static_cast<int32_t>(page.size()) < pages->get_MaxRows(); ++it) page.push_back(it->first);
        auto cells = automation::Array::matrix(3, static_cast<int32_t>(page.size()));
        for (int32_t r = 0; r < cells.ubound(2) + 1; ++r)
            std::tie(cells.at(0, r), cells.at(1, r), cells.at(2, r)) = std::tuple(page[r].first, page[r].second, u"x");
        shown = page;
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
    host.table[{0, 205}] = u"new";       // after the page shown
    host.table[{0, 15}] = u"new";        // on the first page
    host.table.erase({0, 210});
    ASSERT_TRUE(host.pages->Avanzar());
    EXPECT_EQ(host.shown.front(), (Key{0, 205}));
    EXPECT_EQ(host.asked.back(), ">0,200");
    ASSERT_TRUE(host.pages->Retroceder());
    EXPECT_EQ(host.asked.back(), ">=0,110");
    ASSERT_TRUE(host.pages->Retroceder());
    EXPECT_EQ(host.asked.back(), ">=0,10");
    EXPECT_EQ(host.shown[1], (Key{0, 15}));  // the page fetched again shows the new row
    EXPECT_EQ(host.pages->get_Count(), 1);
    EXPECT_FALSE(host.pages->Retroceder());
}

TEST(Apuntadores, FilterPrimaryKeyMaxRowsAndThePointers) {
    Host host(50, false);
    host.pages->let_MaxRows(20);
    host.pages->let_Filter(u"Activo = 1");  // a new result: the first page is asked for
    EXPECT_EQ(host.asked, std::vector<std::string>{"first"});
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
    const Variant first_key = host.pages->get_Item(key)->get_First()->at(0).get_Value();
    EXPECT_EQ(automation::to_long(first_key), 410);
    Variant current(2);
    host.pages->Remove(current);  // the current page: the one before it is current
    EXPECT_EQ(host.pages->get_Current()->get_Index(), 1);
    host.pages->let_Filter(u"Activo = 1");  // the same filter: nothing happens
    EXPECT_EQ(host.pages->get_Count(), 1);
    EXPECT_EQ(host.pages->AddRows(Variant(), host.header, u"").get(), nullptr);  // no rows
    EXPECT_EQ(testing::error_of([&] { host.pages->Add(host.header, nullptr, 0, u""); }).number(), 91);
    EXPECT_EQ(testing::error_of([&] { host.pages->Add(make_ref<collections::clsCeldos>(), host.header, 0, u""); }).number(), 5);
    host.pages->let_Filter(u"Activo = 0");  // a new filter: the pages go, the first is asked for
    EXPECT_EQ(host.asked.back(), "first");
    host.pages->let_PrimaryKey(u"Numero");  // a new key: the pages go, nothing is asked
    EXPECT_EQ(host.pages->get_Count(), 0);
    EXPECT_EQ(host.asked.size(), 4u);
}

// A control that raises the events it is told to, to whoever listens.
struct Grid final : automation::Object {
    automation::EventSink* sink = nullptr;
    std::u16string type_name() const override { return u"MSFlexGrid"; }
    std::optional<int32_t> member_id(std::u16string_view) override { return std::nullopt; }
    Variant invoke(int32_t, uint16_t, std::span<Argument>) override { return {}; }
    std::unique_ptr<automation::Subscription> listen(automation::EventSink& s) override {
        struct Stop final : automation::Subscription {
            Grid* grid;
            explicit Stop(Grid* g) : grid(g) {}
            ~Stop() override { grid->sink = nullptr; }
        };
        sink = &s;
        return std::make_unique<Stop>(this);
    }
    void raise(std::u16string_view name) {
        if (sink) sink->on_event(name);
    }
};

TEST(Apuntadores, TheControlsCellEventsRaiseEnterCellWhileItIsTheControl) {
    Host host(10, false);
    auto grid = make_ref<Grid>(), list = make_ref<Grid>();
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
