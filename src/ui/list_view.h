// A list control in report view that asks for the texts of the rows it paints.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "lists/list_source.h"
#include "lists/shown_rows.h"

namespace orvc::ui {

// Purpose: shows a ListSource in a control made with LVS_OWNERDATA: rows cost nothing until they are seen. Finds rows
// by what is typed, in the first column. Thread: user-interface thread. Lifetime: what attach() takes outlives the
// view's use.
class ListView {
  public:
    // `onSelection` is called when the operator, not show() or select(), has changed what is highlighted; for many rows
    // at once possibly once for each of them.
    void attach(HWND list, const ListSource& source, std::function<void()> onSelection);

    // Extended styles of the control beside full-row selection and grid lines.
    void addStyles(DWORD extendedStyles);
    // Shows the next column of the source, or the one named.
    void addColumn(const std::string& title) { addColumn(title, columns_.size()); }
    void addColumn(const std::string& title, std::size_t sourceColumn);
    void removeColumns();
    // In pixels. Columns are counted as they were added, wherever the operator has dragged them.
    void setColumnWidth(std::size_t column, int width);
    int columnWidth(std::size_t column) const;
    // The source's columns from left to right, as the operator has dragged them.
    std::vector<std::size_t> columnOrder() const;
    std::size_t shownColumnCount() const { return columns_.size(); }
    // Which of the source's columns that is.
    std::size_t sourceColumn(std::size_t column) const { return columns_[column]; }
    // The arrow in the title of one of the source's columns; none shows none.
    void showSort(std::optional<std::size_t> sourceColumn, bool descending);
    int textWidth(const std::string& text) const;

    // The source has changed: shows its rows, and paints those again that are visible and look different.
    void show();

    // Highlights that row alone and puts the keyboard there, or highlights nothing.
    void select(std::optional<std::size_t> row);
    // Highlights exactly these rows, ascending, of a list that takes several.
    void highlight(const std::vector<std::size_t>& rows);
    // Puts the keyboard on a row without highlighting it.
    void focus(std::size_t row);
    void scrollTo(std::size_t row);
    // The first highlighted row.
    std::optional<std::size_t> selectedRow() const;
    // All highlighted rows, ascending.
    const std::vector<std::size_t>& selectedRows() const { return selected_; }
    // The row that has the keyboard.
    std::optional<std::size_t> focusedRow() const;

    // A notification of the control; the value is its result.
    std::optional<LRESULT> onNotify(NMHDR& header);

    HWND window() const { return list_; }

  private:
    std::string textOf(int row, int column) const;
    std::size_t rowCount() const;
    template <typename Item, typename Fill>
    LRESULT fillItem(Item& item, const Fill& fill) const;
    LRESULT findByPrefix(UINT flags, const std::string& prefix, int start) const;
    void setState(std::size_t row, UINT state, UINT mask);
    void takeStateChange(const NMLISTVIEW& change);
    void readSelection();

    HWND list_ = nullptr;
    const ListSource* source_ = nullptr;
    std::function<void()> onSelection_;
    std::vector<std::size_t> columns_;   // each column's in the source
    std::vector<std::size_t> selected_;  // as the control has it, ascending
    ShownRows shown_;
    bool changing_ = false;  // by us, not by the operator
};

}  // namespace orvc::ui
