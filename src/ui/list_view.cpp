#include "ui/list_view.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "win32/code_page.h"

namespace orvc::ui {
namespace {

// Sets a flag for as long as it lives, also within another one.
class Changing {
  public:
    explicit Changing(bool& flag) : flag_(flag), before_(std::exchange(flag, true)) {}
    ~Changing() { flag_ = before_; }
    Changing(const Changing&) = delete;
    Changing& operator=(const Changing&) = delete;

  private:
    bool& flag_;
    bool before_;
};

constexpr std::size_t kReservedRows = 1024;

}  // namespace

void ListView::attach(HWND list, const ListSource& source, std::function<void()> onSelection) {
    list_ = list;
    source_ = &source;
    onSelection_ = std::move(onSelection);
    columns_ = 0;
    shown_ = {};
    addStyles(LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES);
    SendMessageA(list_, LVM_SETITEMCOUNT, kReservedRows, LVSICF_NOSCROLL);
    SendMessageA(list_, LVM_SETITEMCOUNT, 0, 0);
}

void ListView::addStyles(DWORD extendedStyles) {
    SendMessageA(list_, LVM_SETEXTENDEDLISTVIEWSTYLE, extendedStyles, static_cast<LPARAM>(extendedStyles));
}

void ListView::addColumn(const std::string& title) {
    std::string text = title;
    LVCOLUMNA column{};
    column.mask = LVCF_TEXT | LVCF_SUBITEM | LVCF_FMT;
    column.fmt = LVCFMT_LEFT;
    column.pszText = text.data();
    column.iSubItem = static_cast<int>(columns_);
    SendMessageA(list_, LVM_INSERTCOLUMNA, columns_, reinterpret_cast<LPARAM>(&column));
    ++columns_;
}

void ListView::setColumnWidth(std::size_t column, int width) {
    SendMessageA(list_, LVM_SETCOLUMNWIDTH, column, width);
}

int ListView::textWidth(const std::string& text) const {
    return static_cast<int>(SendMessageA(list_, LVM_GETSTRINGWIDTHA, 0, reinterpret_cast<LPARAM>(text.c_str())));
}

std::size_t ListView::rowCount() const {
    return static_cast<std::size_t>(SendMessageA(list_, LVM_GETITEMCOUNT, 0, 0));
}

void ListView::show() {
    const Changing ours(changing_);
    const std::size_t count = source_->size();
    if (rowCount() != count) SendMessageA(list_, LVM_SETITEMCOUNT, count, LVSICF_NOSCROLL | LVSICF_NOINVALIDATEALL);
    const auto first = static_cast<std::size_t>(std::max<LRESULT>(SendMessageA(list_, LVM_GETTOPINDEX, 0, 0), 0));
    const auto page = static_cast<std::size_t>(SendMessageA(list_, LVM_GETCOUNTPERPAGE, 0, 0)) + 1;
    try {
        const ShownRows::Changes changes = shown_.update(*source_, first, page, columns_);
        if (changes.all) InvalidateRect(list_, nullptr, FALSE);
        for (const std::size_t row : changes.rows)
            SendMessageA(list_, LVM_REDRAWITEMS, row, static_cast<LPARAM>(row));
    } catch (const std::exception&) {
        InvalidateRect(list_, nullptr, FALSE);  // no memory to find out which rows: all of them
    }
}

void ListView::setState(std::size_t row, UINT state, UINT mask) {
    LVITEMA item{};
    item.state = state;
    item.stateMask = mask;
    SendMessageA(list_, LVM_SETITEMSTATE, row, reinterpret_cast<LPARAM>(&item));
}

void ListView::select(std::optional<std::size_t> row) {
    constexpr UINT kBoth = LVIS_SELECTED | LVIS_FOCUSED;
    const Changing ours(changing_);
    // Not for all rows at once, which takes a step for each of them.
    if (const auto selected = selectedRow(); selected && selected != row) setState(*selected, 0, kBoth);
    if (row) setState(*row, kBoth, kBoth);
}

void ListView::focus(std::size_t row) {
    const Changing ours(changing_);
    setState(row, LVIS_FOCUSED, LVIS_FOCUSED);
}

void ListView::scrollTo(std::size_t row) {
    SendMessageA(list_, LVM_ENSUREVISIBLE, row, FALSE);
}

std::optional<std::size_t> ListView::selectedRow() const {
    const auto row = SendMessageA(list_, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED);
    return row >= 0 ? std::optional(static_cast<std::size_t>(row)) : std::nullopt;
}

std::optional<LRESULT> ListView::onNotify(NMHDR& header) {
    if (header.hwndFrom != list_) return std::nullopt;
    switch (header.code) {
        case LVN_GETDISPINFOA:
            return fillItem(reinterpret_cast<NMLVDISPINFOA&>(header).item, [](const std::string& text, LVITEMA& item) {
                lstrcpynA(item.pszText, text.c_str(), item.cchTextMax);
            });
        case LVN_GETDISPINFOW:
            return fillItem(reinterpret_cast<NMLVDISPINFOW&>(header).item, [](const std::string& text, LVITEMW& item) {
                lstrcpynW(item.pszText, win32::toWide(text).c_str(), item.cchTextMax);
            });
        // Windows asks in one form or the other, whatever the window is.
        case LVN_ODFINDITEMA: {
            const auto& asked = reinterpret_cast<NMLVFINDITEMA&>(header);
            return findByPrefix(asked.lvfi.flags, asked.lvfi.psz != nullptr ? asked.lvfi.psz : "", asked.iStart);
        }
        case LVN_ODFINDITEMW: {
            const auto& asked = reinterpret_cast<NMLVFINDITEMW&>(header);
            return findByPrefix(asked.lvfi.flags, asked.lvfi.psz != nullptr ? win32::fromWide(asked.lvfi.psz) : "",
                                asked.iStart);
        }
        case LVN_ITEMCHANGED:
        case LVN_ODSTATECHANGED:
            if (!changing_) onSelection_();
            return 0;
        default:
            return std::nullopt;
    }
}

template <typename Item, typename Fill>
LRESULT ListView::fillItem(Item& item, const Fill& fill) const {
    if ((item.mask & LVIF_TEXT) == 0 || item.pszText == nullptr || item.cchTextMax <= 0) return 0;
    *item.pszText = 0;
    fill(textOf(item.iItem, item.iSubItem), item);
    return 0;
}

std::string ListView::textOf(int row, int column) const {
    const auto at = static_cast<std::size_t>(row);
    const bool isThere = row >= 0 && at < source_->size() && column >= 0 && static_cast<std::size_t>(column) < columns_;
    return isThere ? source_->cell(at, static_cast<std::size_t>(column)) : std::string();
}

// The row that begins with what the operator types, searched from a row on and around.
LRESULT ListView::findByPrefix(UINT flags, const std::string& prefix, int start) const {
    const std::size_t size = source_->size();
    if ((flags & (LVFI_STRING | LVFI_PARTIAL)) == 0 || prefix.empty() || size == 0) return -1;
    const auto length = static_cast<int>(prefix.size());
    for (std::size_t i = 0; i < size; ++i) {
        const std::size_t row = (static_cast<std::size_t>(std::max(start, 0)) + i) % size;
        const std::string text = source_->cell(row, 0);
        if (text.size() >= prefix.size() && CompareStringA(LOCALE_USER_DEFAULT, NORM_IGNORECASE, text.c_str(), length,
                                                           prefix.c_str(), length) == CSTR_EQUAL)
            return static_cast<LRESULT>(row);
    }
    return -1;
}

}  // namespace orvc::ui
