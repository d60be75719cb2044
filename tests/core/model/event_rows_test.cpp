#include "model/event_rows.h"

#include <gtest/gtest.h>

#include <list>

#include "journal.h"

namespace orvc {
namespace {

std::string lowerCase(std::string_view name) {
    std::string key(name);
    for (char& c : key)
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
    return key;
}

class EventRowsTest : public ::testing::Test {
  protected:
    EventRecord& add(std::optional<std::string> name) {
        EventRecord& record = records_.emplace_back();
        record.name = std::move(name);
        record.key = std::to_string(records_.size());
        rows_.insert(record);
        return record;
    }
    // Names, each with its number in the order in which they came; every row knows where it stands.
    std::string rows() {
        Journal names;
        for (std::size_t row = 0; row < rows_.size(); ++row) {
            EXPECT_EQ(rows_.rowOf(rows_.at(row)), row);
            names.add(rows_.at(row).name.value_or("") + rows_.at(row).key);
        }
        return names.take();
    }

    std::list<EventRecord> records_;
    EventRows rows_{lowerCase};
};

TEST_F(EventRowsTest, NamesAreOrderedWithoutCaseAndTheNewestOfEqualsIsFirst) {
    for (const char* name : {"beta", "Alpha", "ALPHA", "", "alphabet", "\xFF", "%s"})
        add(name);
    add(std::nullopt);
    EXPECT_EQ(rows(),
              "8; 4; %s7; ALPHA3; Alpha2; alphabet5; beta1; \xFF"
              "6");
    rows_.remove(*std::next(records_.begin(), 1));
    EXPECT_EQ(rows(),
              "8; 4; %s7; ALPHA3; alphabet5; beta1; \xFF"
              "6");
}

}  // namespace
}  // namespace orvc
