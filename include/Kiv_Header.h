#pragma once

#include "Kiv_WidgetConnectInterface.h"
#include "kivcore_export.h"

#include <QPixmap>
#include <QPoint>
#include <QString>
#include <QVariant>
#include <QWidget>
#include <boost/function.hpp>

#include <memory>

class Kiv_PopupMenu;
class Kiv_TransparentOverlay;

/// The column header strip above a list with columns.
///
/// The header keeps no column data of its own: it shows and changes a columns model (see
/// Kiv_ColumnsModel) named by its column base connection name B. It paints the labels of the
/// visible columns with their dividers and sort arrows, and lets the user
/// - resize a column by dragging the divider after it (".width"; taking the pointer more than 80
///   pixels above or below the header undoes the resize until it comes back),
/// - reorder columns by dragging a label (move-element messages on ".sortedVisibleColumns",
///   ".columnBeingDragged" telling the list which column is on the move; taking the pointer far
///   off the header puts the column back until it comes back),
/// - sort by clicking a label (".sortByColumn"),
/// - hide, show and create columns, and run the host's own commands, from the context menu.
///
///     auto *header = new Kiv_Header(pane, QStringLiteral("clipHeader"));
///     header->setColumnBaseConnectionName(QStringLiteral("ClipColumns"));
///     header->setCreateColumnDragOverlayCB([=](QPoint size, long column) {
///         return list->makeColumnDragOverlay(size, column, header); });
///     header->addContextMenuItem(tr("Fit Columns"), QStringLiteral("ClipList.fitColumns"));
///     header->makeConnections(env);
///
/// Without a connected columns model the header is empty and ignores the pointer.
class KIVCORE_EXPORT Kiv_Header : public QWidget, public Kiv_WidgetConnectInterface
{
    Q_OBJECT

public:
    /// Makes the floating image of a column being dragged. It gets the size wanted (x the width:
    /// the column's width plus 3 on each side that has a neighbour; y the header's height) and
    /// the column number. The header owns what it answers; null means no image.
    typedef boost::function<Kiv_TransparentOverlay *(QPoint, long)> CreateOverlayCallback;

    Kiv_Header(QWidget *iParent, QString iName);
    ~Kiv_Header() override;

    /// Names the columns model. Once connected, a new name rebinds at once.
    void setColumnBaseConnectionName(QString iName);
    /// Names the action that opens the chooser of the working set of columns; the context menu
    /// offers it while it is connected. It is run without arguments.
    void setColumnSelectionConnectionSpec(QString iSpec);
    /// Pixels before the first column.
    void setLeftMargin(long iMargin);
    /// The horizontal scroll position of the list below: the columns move left by it. With
    /// `iRepaint` the header repaints at once, otherwise on the next update.
    void setOffset(int iOffset, bool iRepaint);
    void setCreateColumnDragOverlayCB(const CreateOverlayCallback &iCallback);

    void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv) override;

    /// Appends a command to the context menu: the action named by the connection, run without
    /// arguments. The item is disabled while the action is not connected.
    void addContextMenuItem(QString iLabel, QString iConnection);
    /// The same for an action that takes an argument: with `iArgument` "column" it gets the
    /// number (long) of the column under the pointer, and the item is disabled off the columns.
    /// An empty `iArgument` is the two-argument form.
    void addContextMenuItem(QString iLabel, QString iConnection, QString iArgument);
    void clearContextMenuItems();

    /// The context menu for a point of the header, not yet shown. Items are identified by their
    /// data: "HideColumn", the column number (qlonglong) of each "Show" item, "NewColumn",
    /// "SelectColumn", and "action0:" or "action1:" followed by the connection of an added item.
    std::unique_ptr<Kiv_PopupMenu> buildContextMenu(const QPoint &iPos);
    /// Performs the context menu item with the data, as chosen at the point.
    void runContextMenuItem(const QVariant &iData, const QPoint &iPos);

    /// The visible columns or their widths changed: lay out again and repaint.
    void handleColumnListChanged();
    /// A column's label changed.
    void handleColumnNameChanged(long iColumn);

    /// Wide enough for every visible column, high enough for a line of the label font.
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *iEvent) override;
    void mousePressEvent(QMouseEvent *iEvent) override;
    void mouseMoveEvent(QMouseEvent *iEvent) override;
    void mouseReleaseEvent(QMouseEvent *iEvent) override;

private:
    struct Models;

    void connectColumnListeners();
    void connectExtraItem(size_t iItem);
    /// Rebuilds the layout of the visible columns when it was invalidated.
    void ensureLayout() const;
    long visibleCount() const;
    /// The column number at a display index, -1 when there is none.
    long columnAt(long iIndex) const;
    long columnIndexForPos(const QPoint &iPos) const;
    long dividerIndexForPos(int iX) const;
    void paintLabel(QPainter &iPainter, long iIndex, long iLeft, long iWidth) const;

    void trackDraggingDivider(const QPoint &iPos);
    void startDraggingColumn(long iIndex, const QPoint &iPressPos);
    void trackDraggingColumn(const QPoint &iPos);
    void moveDraggingColumn(long iIndex);
    void stopDraggingColumn();
    void sortByColumn(long iIndex);
    void popupContextMenu(const QPoint &iPos);
    static bool hasCreatePropertyPrivs();

    std::unique_ptr<Models> mModels;
    Bnd_ConnectionEnvironmentPtr mEnv;
    bool mConnectionsMade = false;
    QString mColumnBaseName;
    QString mColumnSelectionSpec;
    long mLeftMargin = 0;
    int mOffset = 0;
    QPixmap mSortUpPixmap;
    QPixmap mSortDownPixmap;

    struct DividerDrag
    {
        bool active = false;
        long index = -1;
        int pressX = 0;
        long startWidth = 0;
    };
    DividerDrag mDividerDrag;

    bool mColumnPressPending = false;
    QPoint mPressPos;

    struct ColumnDrag
    {
        bool active = false;
        /// From the left edge of the drag image to the pointer.
        int grabOffset = 0;
        int overlayWidth = 0;
        long startIndex = -1;
        long currentIndex = -1;
        bool cancelled = false;
    };
    ColumnDrag mColumnDrag;

    std::unique_ptr<Kiv_TransparentOverlay> mOverlay;
    CreateOverlayCallback mCreateOverlay;
};
