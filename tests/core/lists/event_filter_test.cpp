#include "lists/event_filter.h"

#include <gtest/gtest.h>

#include "fake_string_table.h"
#include "resources/resource.h"

namespace orvc {
namespace {

FakeStringTable germanPrefixes() {
    FakeStringTable strings;
    strings.texts = {{IDS_FILTER_SOURCE, "Quelle"}, {IDS_FILTER_DESTINATION, "ziel"}, {IDS_FILTER_SCHEDULE, "zeitplan"},
                     {IDS_FILTER_TRIGGER, "a-b"},   {IDS_FILTER_RESPONSE, ""},        {IDS_FILTER_PROBLEM, "problem"}};
    return strings;
}

// Each term in brackets, with its column's name before it.
std::string parsed(std::string_view text) {
    std::string terms;
    for (const FilterTerm& term : parseFilter(text, germanPrefixes(), foldAscii))
        terms += std::string(term.column ? eventColumn(*term.column).name : "") + "[" + term.text + "]";
    return terms;
}

TEST(EventFilterTest, WordsPhrasesAndPrefixesAreTakenApart) {
    const struct {
        std::string_view text;
        const char* terms;
    } cases[] = {
        {"", ""},
        {"  \t ", ""},
        {"Door", "[door]"},
        {"  east  DOOR east ", "[door][east]"},
        {"a bbb cc", "[bbb][cc][a]"},
        {R"("Front  door" x)", "[front  door][x]"},
        {R"("front door)", "[front door]"},
        {R"("a""b"c)", "[a][b][c]"},
        {R"("" " " ")", ""},
        {R"(12"x")", R"([12"x"])"},
        {"source:Door", "source[door]"},
        {"SOURCE:a quelle:b Ziel:c", "source[a]source[b]destination[c]"},
        {"schedule:a trigger:b response:c problem:d", "schedule[a]trigger[b]response[c]problem[d]"},
        {"a source:a", "[a]source[a]"},
        {R"(destination:"front door" x)", "destination[front door][x]"},
        {R"(destination:"front)", "destination[front]"},
        {"source: door", "[door]"},
        {R"(source:)", ""},
        {R"(source:"")", ""},
        {"source:schedule:x", "source[schedule:x]"},
        {"place:x 09:05 :x", "[place:x][09:05][:x]"},
        {R"(place:"a b")", R"([place:"a][b"])"},
        {"a-b:x resource:y", "[resource:y]trigger[x]"},
        {std::string_view("a\0b\x01\xFF", 5), "[a][b][\xFF]"},
    };
    for (const auto& each : cases)
        EXPECT_EQ(parsed(each.text), each.terms) << each.text;
}

TEST(EventFilterTest, ALongTextOfAnyBytesIsTakenApart) {
    std::string text;
    for (int i = 0; i < 10'000; ++i)
        text += static_cast<char>(i * 7919 >> 3);
    std::size_t bytes = 0;
    for (const FilterTerm& term : parseFilter(text, germanPrefixes(), foldAscii))
        bytes += term.text.size();
    EXPECT_GT(bytes, 1'000u);
    EXPECT_EQ(parseFilter(std::string(10'000, '"'), germanPrefixes(), foldAscii).size(), 0u);
    EXPECT_EQ(parseFilter(std::string(10'000, 'x'), germanPrefixes(), foldAscii).size(), 1u);
}

TEST(EventFilterTest, WhatShowsTheSameIsTypedInTheUsersLanguage) {
    const struct {
        EventColumnId column;
        const char* value;
        const char* text;
        const char* terms;
    } cases[] = {
        {EventColumnId::kSource, "Front door", R"(Quelle:"Front door")", "source[front door]"},
        {EventColumnId::kSource, R"(Door "A", x)", R"(Quelle:"Door " Quelle:"A" Quelle:", x")",
         "source[door ]source[, x]source[a]"},
        {EventColumnId::kResponse, "Activate", R"(response:"Activate")", "response[activate]"},
        {EventColumnId::kSchedule, "", "", ""},
        {EventColumnId::kSchedule, R"( "" )", "", ""},
        {EventColumnId::kStatus, "Disabled", "", ""},
    };
    for (const auto& each : cases) {
        const std::string text = filterTextFor(each.column, each.value, germanPrefixes());
        EXPECT_EQ(text, each.text);
        EXPECT_EQ(parsed(text), each.terms);
    }
}

}  // namespace
}  // namespace orvc
