#pragma once

#include "Bnd_ConnectionToModel.h"
#include "Kiv_ListView.h"
#include "kivcore_export.h"

#include <boost/shared_ptr.hpp>

#include <map>
#include <memory>
#include <vector>

class Kiv_HStackView;
class Kiv_TransparentOverlay;

/// A list whose rows are made of columns: one cell view per visible column, side by side with
/// 5-pixel separators, following a columns model that it shares with a Kiv_Header above it
/// (see Kiv_ColumnsModel for one a host can publish). The header's widths, order, hidden
/// columns and column drags show in the rows at once.
///
/// The cell of a column is a clone of the prototype its ".viewType" selects in the view type
/// map (a blank cell when the map has none), connected in the row environment extended by the
/// column's ".connectionEnvironmentVars" ("Field=Clips.name"): a text view bound to
/// "$Field[$Row]" serves every text column.
///
///     std::map<int, boost::shared_ptr<Kiv_ViewInterface>> types;
///     types[0] = boost::shared_ptr<Kiv_ViewInterface>(textCell.release());
///     auto *list = new Kiv_ListWithColumns;
///     list->SetViewTypeMap(types);
///     list->SetColumnDataModel("Bin.Columns");
///     list->SetListConnectionName("Bin.Clips.name");
///
/// Up and Down move between rows, Tab and Shift+Tab between the editable cells of a row and on
/// to the next or previous row.
class KIVCORE_EXPORT Kiv_ListWithColumns : public Kiv_ListView
{
public:
    typedef std::map<int, boost::shared_ptr<Kiv_ViewInterface>> ViewTypeMap;

    /// Directions of changeGridSelection().
    enum MoveDirection { MoveUp = 0, MoveDown = 1, MoveLeft = 2, MoveRight = 3 };

    Kiv_ListWithColumns();
    /// A copy has the same columns model, view types and sizes; it builds its rows when it is
    /// connected.
    Kiv_ListWithColumns(const Kiv_ListWithColumns &iOther);
    ~Kiv_ListWithColumns() override;

    void init();
    /// The base connection name of the columns model.
    void SetColumnDataModel(const QString &iName);
    const QString &columnDataModel() const { return mColumnModel; }
    void SetViewTypeMap(const ViewTypeMap &iMap);

    void SetFont(const QFont &iFont) override;
    /// Gives every cell the height; the row pitch follows.
    void SetRowHeight(long iHeight);
    long rowHeight() const { return mRowHeight; }
    /// The font's point size + 12.
    long GetFontRowHeight() const;
    /// The largest of the cells' minimum heights and the font row height.
    long GetMinimumRowHeight() const;
    /// Writes back to ".width" the width each cell really took.
    void AdjustWidths();
    /// The size of a separator: 5 pixels by the row height.
    QSize separatorSize() const;
    /// The width of the leading view, before the first column (the header's left margin).
    void setLeadingWidth(int iWidth);

    /// Runs the selection script for the first selected row.
    void executeSelectionAction();
    /// Moves the active cell (see MoveDirection) and selects it as a click would.
    void changeGridSelection(int iMoveDirection);
    /// The cell at the point (list coordinates) with its row and its column's display index;
    /// null off the rows or the cells.
    Kiv_ViewInterface *GetCellAt(const QPoint &iPos, long *oRow, long *oColumn);
    /// The cell being worked on by the keyboard: row and display index, -1 when none.
    long activeRow() const { return mActiveRow; }
    long activeColumn() const { return mActiveColumn; }
    /// The floating image of a column a Kiv_Header drags (see
    /// Kiv_Header::setCreateColumnDragOverlayCB): the header's slot of the column above the
    /// column's cells as the viewport shows them now, `iSize.x()` wide, as a new overlay at
    /// about two-thirds opacity. Null when the column is not visible or the list is not shown.
    Kiv_TransparentOverlay *makeColumnDragOverlay(const QPoint &iSize, long iColumn,
                                                  QWidget *iHeader);
    /// The index of column k's cell in the row stack (its separator follows it).
    static int columnIndexToViewIndex(long iColumn) { return int(2 * iColumn + 1); }

    std::unique_ptr<Kiv_ViewInterface> clone() const override;
    void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv) override;
    void mousePressEvent(QMouseEvent *iEvent, const QPoint &iPos) override;
    void keyPressEvent(QKeyEvent *iEvent) override;

private:
    typedef Bnd_ConnectionToModel<Bndt_Array<long>> LongArray;

    void BuildRowView();
    void InitRowView();
    void insertColumn(long iColumn);
    void removeColumn(long iColumn);
    void moveColumnAndDivider(long iFrom, long iTo);
    void insertColumnDragViews(long iColumn);
    void visibleColumnsChanged(const Bnd_MessageInterface &iMsg);
    void widthsChanged(const Bnd_MessageInterface &iMsg);
    void columnBeingDraggedChanged();
    Kiv_HStackView *stack() const;
    bool isCellEditable(long iColumn) const;
    void activateCell(long iRow, long iColumn);
    void columnAttributesChanged(const Bnd_MessageInterface &iMsg);
    QString name(const char *iSuffix) const { return mColumnModel + QLatin1String(iSuffix); }

    QString mColumnModel;
    long mRowHeight = 0;
    int mLeadingWidth = 0;
    ViewTypeMap mViewTypes;
    bool mColumnDragging = false;
    bool mConnecting = false;
    long mActiveRow = -1;
    long mActiveColumn = -1;
    Bnd_ConnectionEnvironmentPtr mEnv;

    Bnd_ConnectionToModel<Bndt_SimpleValue<long>> mColumnBeingDragged;
    Bnd_ListenerBase mVisibleChanges; // ".sortedVisibleColumns.arrayMetaData"
    LongArray mVisible;
    LongArray mViewType;
    LongArray mWidth;
    Bnd_ConnectionToModel<Bndt_Array<bool>> mReadOnly;
    Bnd_ConnectionToModel<Bndt_Array<QString>> mEnvironmentVars;
    LongArray mMinWidth;
};
