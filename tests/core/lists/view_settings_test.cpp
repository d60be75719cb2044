#include "lists/view_settings.h"

#include <gtest/gtest.h>

namespace orvc {
namespace {

using Id = EventColumnId;

ViewSettings read(const std::string& columns, const std::string& sort = "") {
    LocalSettings settings;
    settings.listColumns = columns;
    settings.listSort = sort;
    return readView(settings);
}

// Shown columns by name with their widths, then how many are hidden.
std::string shown(const ViewSettings& view) {
    std::string text;
    int hidden = 0;
    for (const ViewColumn& column : view.columns) {
        if (column.isShown)
            text += eventColumn(column.id).name + std::string(" ") + std::to_string(column.width) + ", ";
        else
            ++hidden;
    }
    return text + std::to_string(hidden);
}

TEST(ViewSettingsTest, WhatIsWrittenIsReadAgain) {
    ViewSettings view;
    std::swap(view.columns[0], view.columns[9]);
    view.columns[3] = {Id::kResponse, false, 80};
    view.columns[9].width = 240;
    view.firstSort = EventSortKey{Id::kLastEvent, true};
    view.secondSort = EventSortKey{Id::kName, false};
    view.showsDetail = false;
    LocalSettings settings;
    writeView(settings, view);
    EXPECT_EQ(settings.listColumns,
              "-content,status,last,-response:80,-trigger,-source,-delay,-schedule,-destination,name:240,-problem");
    EXPECT_EQ(settings.listSort, "-last,name");
    EXPECT_EQ(readView(settings), view);
    EXPECT_EQ(readView(LocalSettings()), ViewSettings());
    writeView(settings, ViewSettings());
    EXPECT_EQ(readView(settings), ViewSettings());
}

TEST(ViewSettingsTest, ColumnsThatMakeNoSenseCountAsNotChosen) {
    const std::string atFirst = "name 0, status 0, last 0, response 0, 7";
    const struct {
        const char* columns;
        std::string shown;
    } cases[] = {
        {"", atFirst},
        {",,;:,colour:9,NAME,-,:5,name :7", atFirst},
        {"source,name", "source 0, name 0, status 0, last 0, response 0, 6"},
        {"-name:50,-status,-last,-response", "name 50, 10"},
        {"status:70,-status:90,status", "status 70, name 0, last 0, response 0, 7"},
        {"name:-5,status:0,last:x,response:7px", atFirst},
        {"name:5,status:2000000,last:99999999999999999999,response:-99999999999999999999",
         "name 24, status 2000, last 2000, response 0, 7"},
    };
    for (const auto& each : cases)
        EXPECT_EQ(shown(read(each.columns)), each.shown) << each.columns;
}

TEST(ViewSettingsTest, OnlyTwoDifferentColumnsAreSortedBy) {
    using Key = std::optional<EventSortKey>;
    const struct {
        const char* sort;
        Key first, second;
    } cases[] = {
        {"", {}, {}},
        {"colour,-,--last", {}, {}},
        {"x,-delay", EventSortKey{Id::kDelay, true}, {}},
        {"delay,-delay,source,last", EventSortKey{Id::kDelay, false}, EventSortKey{Id::kSource, false}},
    };
    for (const auto& each : cases) {
        const ViewSettings view = read("", each.sort);
        EXPECT_EQ(view.firstSort, each.first) << each.sort;
        EXPECT_EQ(view.secondSort, each.second) << each.sort;
    }
}

}  // namespace
}  // namespace orvc
