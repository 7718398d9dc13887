#pragma once

#include "kivcore_export.h"

#include <QString>
#include <boost/function.hpp>

#include <memory>
#include <vector>

/// The columns model of a list with columns and its header, kept by the host.
///
/// It publishes, under a base name B, everything Kiv_Header and Kiv_ListWithColumns bind to:
/// - B: the container; its size is the number of columns;
/// - B.sortedVisibleColumns: long array, the numbers of the visible columns in display order
///   (a move-element message on it reorders the columns); B.hiddenColumns: those hidden;
/// - by column number: B.identifier, B.width, B.minWidth, B.viewType (long), B.label,
///   B.connectionEnvironmentVars (QString, "Name=Value;Name2=Value2"), B.canHide, B.visible,
///   B.isSorted, B.isSortedAscending, B.readOnly (bool);
/// - B.hideColumn (by column number, no argument), B.showColumn (by column number, taking the
///   display position as a long) and B.sortByColumn (by display index, no argument): action
///   arrays;
/// - B.columnBeingDragged: long, the display index of the column a header drags, -1 when none;
/// - B.Actions.addNewColumn, only when B has no ".": an action taking the display position
///   (long) of a new column, enabled while an add-column callback is set.
///
///     Kiv_ColumnsModel columns(QStringLiteral("ClipColumns"));
///     columns.addColumn({tr("Name"), 1, 160});
///     columns.addColumn({tr("Duration"), 2, 80});
///     columns.setSortCallback([&](long column, bool up) { clips.sortBy(column, up); });
///     columns.publish();
///     header->setColumnBaseConnectionName(QStringLiteral("ClipColumns"));
///
/// Sorting by a column that is already sorted flips its direction; any other column becomes the
/// only sorted one, ascending. The sort callback then sorts the host's rows. GUI thread only.
class KIVCORE_EXPORT Kiv_ColumnsModel
{
public:
    struct Column
    {
        QString label;
        long identifier = 0;
        long width = 100;
        long minWidth = 20;
        long viewType = 0;
        bool canHide = true;
        bool visible = true;
        bool readOnly = false;
        /// Variables added to the connection environment of the column's cells.
        QString environmentVars;
    };

    typedef boost::function<void(long iColumn, bool iAscending)> SortCallback;
    typedef boost::function<void(long iPosition)> AddColumnCallback;

    explicit Kiv_ColumnsModel(const QString &iBaseName);
    ~Kiv_ColumnsModel();
    Kiv_ColumnsModel(const Kiv_ColumnsModel &) = delete;
    Kiv_ColumnsModel &operator=(const Kiv_ColumnsModel &) = delete;

    const QString &baseName() const { return mBaseName; }

    /// Adds a column (visible ones at the end of the display order) and answers its number.
    /// Columns may be added before or after publishing.
    long addColumn(const Column &iColumn);
    long columnCount() const;

    /// Publishes the container under the base name; false when the name is taken.
    bool publish();

    /// Runs after every sort with the sorted column's number and direction.
    void setSortCallback(const SortCallback &iCallback) { mSortCallback = iCallback; }
    /// Makes "Actions.addNewColumn" call the function (an empty function disables it).
    void setAddColumnCallback(const AddColumnCallback &iCallback);

    /// Hides a visible column that can be hidden: it leaves the display order and goes to the
    /// end of the hidden list. Answers whether it did.
    bool hideColumn(long iColumn);
    /// Shows a hidden column at a display position (clamped to the visible columns).
    bool showColumn(long iColumn, long iPosition);
    /// Sorts by the visible column at a display index.
    void sortByDisplayIndex(long iIndex);

    /// Column numbers in display order.
    const std::vector<long> &visibleColumns() const;
    const std::vector<long> &hiddenColumns() const;
    /// The width of a column (0 for a number that is no column).
    long width(long iColumn) const;

private:
    struct Models;

    bool isColumn(long iColumn) const { return iColumn >= 0 && iColumn < columnCount(); }

    QString mBaseName;
    SortCallback mSortCallback;
    AddColumnCallback mAddColumnCallback;
    // Last, so that the models (whose actions call the callbacks) go first.
    std::unique_ptr<Models> mModels;
};
