#include "lists/view_settings.h"

#include <algorithm>
#include <charconv>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace orvc {
namespace {

constexpr char kHiddenOrDescending = '-';
constexpr char kBeforeWidth = ':';

std::vector<std::string_view> split(std::string_view list) {
    std::vector<std::string_view> parts;
    while (!list.empty()) {
        const std::string_view part = list.substr(0, list.find(','));
        list.remove_prefix(std::min(part.size() + 1, list.size()));
        parts.push_back(part);
    }
    return parts;
}

// A column's name behind an optional minus sign.
struct Named {
    std::optional<EventColumnId> column;
    bool hasMinus = false;
};

Named readName(std::string_view text) {
    Named named;
    named.hasMinus = text.starts_with(kHiddenOrDescending);
    if (named.hasMinus) text.remove_prefix(1);
    const auto columns = eventColumns();
    const auto found =
        std::ranges::find(columns, text, [](const EventColumn& column) -> std::string_view { return column.name; });
    if (found != columns.end()) named.column = static_cast<EventColumnId>(found - columns.begin());
    return named;
}

std::string nameOf(EventColumnId id, bool hasMinus) {
    return (hasMinus ? std::string(1, kHiddenOrDescending) : std::string()) + eventColumn(id).name;
}

int readWidth(std::string_view text) {
    int width = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), width);
    if (error == std::errc::result_out_of_range && !text.starts_with('-')) return kGreatestColumnWidth;
    if (error != std::errc() || end != text.data() + text.size() || width <= 0) return 0;
    return std::clamp(width, kLeastColumnWidth, kGreatestColumnWidth);
}

// The columns that the text names come first, in its order.
void readColumns(std::string_view text, ViewSettings& view) {
    auto next = view.columns.begin();
    for (const std::string_view part : split(text)) {
        const std::size_t nameEnd = std::min(part.find(kBeforeWidth), part.size());
        const Named named = readName(part.substr(0, nameEnd));
        const auto found =
            std::find_if(next, view.columns.end(), [&](const ViewColumn& column) { return column.id == named.column; });
        if (found == view.columns.end()) continue;
        found->isShown = !named.hasMinus || named.column == EventColumnId::kName;
        if (nameEnd < part.size()) found->width = readWidth(part.substr(nameEnd + 1));
        std::rotate(next, found, found + 1);
        ++next;
    }
}

void readSort(std::string_view text, ViewSettings& view) {
    for (const std::string_view part : split(text)) {
        const Named named = readName(part);
        if (!named.column) continue;
        const EventSortKey key{*named.column, named.hasMinus};
        if (!view.firstSort) {
            view.firstSort = key;
        } else if (view.firstSort->column != key.column) {
            view.secondSort = key;
            return;
        }
    }
}

}  // namespace

ViewSettings::ViewSettings() {
    for (std::size_t i = 0; i < columns.size(); ++i)
        columns[i] = {static_cast<EventColumnId>(i), i < kGivenColumnCount, 0};
}

ViewSettings readView(const LocalSettings& settings) {
    ViewSettings view;
    readColumns(settings.listColumns, view);
    readSort(settings.listSort, view);
    view.showsDetail = settings.listDetail != 0;
    return view;
}

void writeView(LocalSettings& settings, const ViewSettings& view) {
    std::string columns;
    for (const ViewColumn& column : view.columns) {
        columns.append(columns.empty() ? "" : ",").append(nameOf(column.id, !column.isShown));
        if (column.width != 0) columns.append(1, kBeforeWidth).append(std::to_string(column.width));
    }
    std::string sort;
    for (const auto& key : {view.firstSort, view.secondSort})
        if (key) sort.append(sort.empty() ? "" : ",").append(nameOf(key->column, key->descending));
    settings.listColumns = std::move(columns);
    settings.listSort = std::move(sort);
    settings.listDetail = view.showsDetail ? 1 : 0;
}

}  // namespace orvc
