#pragma once

#include "Bnd_ListenerBase.h"
#include "Bnde_SimpleValue.h"
#include "Kiv_ViewBase.h"
#include "Kiv_ViewContainerInterface.h"
#include "SortedValueList.h"
#include "kivcore_export.h"

#include <QColor>
#include <QFont>
#include <QPoint>
#include <QSize>

#include <memory>
#include <utility>
#include <vector>

class Kiv_Script;
class QMimeData;

/// A vertical list of equally tall rows bound to an array model, at any size.
///
/// The list owns no view per row. It owns one row view (any view, typically a container of
/// bound views) and reuses it for every row: before the row view draws, takes an event, gives
/// a tool tip or a drag element for row N, the list sets its private current-row model to N.
/// The row view is connected in an environment where the variable "Row" names that model, so
/// a cell bound to "Clips.name[$Row]" shows the name of row N. Painting touches only the rows
/// in the rectangle asked for, so a list of a million rows paints as fast as one of a hundred.
///
/// The list is a view: host it in a Kiv_BridgeQScrollArea.
///
///     auto *list = new Kiv_ListView;
///     list->SetRowView(rowView.release());        // cells bound to "...[$Row]"
///     list->SetListConnectionName("Clips.name");  // any array: it gives the row count
///     list->setSelectionMode(Kiv_ListView::SelectExtended);
///     list->setEnterActionString("Clips.Actions.open[$Row]()");
///     scrollArea->setChild(list);
///     scrollArea->makeConnections(env);
///
/// The selection is published next to the array, as three models: list name + ":SelectionList"
/// (the selected rows, a SortedValueList<long> stored as runs, so selecting all of 100 million
/// rows is one run), list name + ":LastSelection" (the anchor of Shift-extension, -1 for none)
/// and list name + ".isSelected" (an array of bool answering per row without scanning). After
/// each selection change the selection script runs, with the current row set to the row acted
/// on; Return and Enter run the enter script.
class KIVCORE_EXPORT Kiv_ListView : public Kiv_ViewContainerInterface, public Kiv_ViewBase
{
public:
    enum SelectionMode {
        SelectSingle = 0, ///< a click selects the row alone
        SelectMulti = 1, ///< Ctrl toggles the row, otherwise single
        SelectExtended = 2, ///< Shift extends from the anchor, Ctrl toggles, otherwise single
        SelectNone = 3 ///< the selection never changes (the default)
    };
    typedef std::vector<std::pair<Qt::KeyboardModifiers, Qt::DropAction>> DragActionMap;
    typedef Bnde_SimpleValue<long, Bndt_Index<long>> CurrentRowModel;

    /// Pixels the pointer must move, along x or along y, before a press on a selected row
    /// becomes a drag.
    static constexpr int cDragThreshold = 11;

    Kiv_ListView();
    /// A copy has the settings (names, scripts, colours, mode, drag map), a clone of the row
    /// view and fresh models; it is bound again by makeConnections().
    Kiv_ListView(const Kiv_ListView &iOther);
    ~Kiv_ListView() override;
    /// Takes the settings and a clone of the row view; the models stay this list's own.
    Kiv_ListView &operator=(const Kiv_ListView &iOther);

    // Binding.
    void SetListConnectionName(const QString &iName);
    const QString &GetListConnectionName() const { return mListName; }
    /// Replaces the row view (the old one is deleted); the list becomes its container. Null
    /// puts back a blank row view.
    void SetRowView(Kiv_ViewInterface *iRowView);
    Kiv_ViewInterface *getRowView() const { return mRowViewP.get(); }
    /// The environment of the row view: `iEnv` with the variable "Row" naming the current-row
    /// model.
    Bnd_ConnectionEnvironmentPtr
    getCellConnectionEnv(const Bnd_ConnectionEnvironmentPtr &iEnv) const;
    /// The name of the current-row model, unique to this list.
    const QString &currentRowConnectionName() const { return mCurrentRowName; }

    const QString &getEnterActionString() const { return mEnterAction; }
    void setEnterActionString(const QString &iScript);
    const QString &getSelectionActionString() const { return mSelectionAction; }
    void setSelectionActionString(const QString &iScript);

    // Selection.
    SelectionMode getSelectionMode() const { return mSelectionMode; }
    /// Sets the mode and empties the selection.
    void setSelectionMode(SelectionMode iMode);
    /// Selects as a click on `iRow` with the modifiers would (all rows when `iAll`, as Ctrl+A
    /// does: a second time deselects them), makes the row visible and current and runs the
    /// selection script. -1 (or any negative row) is "no row"; a row past the end means the
    /// last one. Always answers true.
    bool SetSelected(long iRow, bool iAll = false, Qt::KeyboardModifiers iModifiers = {});
    long GetRowSelectionListSize() const;
    /// The first selected row, -1 when none.
    long GetFirstRowSelection() const;
    /// The selected row after `iRow`, -1 when none.
    long GetNextRowSelection(long iRow) const;
    bool IsRowSelected(long iRow) const;
    const SortedValueList<long> &getSelectedList() const;
    /// The row the row view shows now.
    long getCurrentCell() const { return mCurrentRow.getValue(); }
    long GetNumItems() const { return mRowCount; }
    /// Keyboard navigation: Home, End, Up and Down select one row (Up on the first row and Down
    /// on the last wrap around).
    void changeSelection(int iKey);

    // Geometry.
    /// The row pitch: the row view's height.
    int getCellHeight() const;
    void setCellHeight(int iHeight);
    /// The row at `iY` (list coordinates) in `*oRow` (-1 without a row view); answers whether
    /// it is below the row count. There is deliberately no lower bound test.
    bool CellContaining(long iY, long *oRow) const;
    /// Asks for one row to be redrawn (nothing for a row outside the list).
    void CellUpdate(long iRow);

    // Drags.
    /// The action of a drag with no matching modifier rule, the modifiers looked at, and the
    /// (modifiers, action) rules tried in order.
    void setDragActionMap(Qt::DropAction iDefault, Qt::KeyboardModifiers iMask,
                          const DragActionMap &iMap);
    /// The drag document of the selected rows ("mobIDDragObjectList" with one element per row,
    /// made by the row view) and in `oImage` the folded drag image. `iPress` is the press point
    /// in list coordinates.
    QDomDocument makeDragDocument(const QPoint &iPress, QPixmap *oImage);
    /// Folds the image of item `iK` (from 1) of `iN` dragged items into the drag image: the
    /// first nine (or all ten when there are exactly ten) are stacked, the tenth of more than
    /// ten becomes the strip "... (+N - 9)", later ones add nothing.
    static void foldDragImage(QPixmap &ioImage, const QPixmap &iItem, long iK, long iN);

    // Looks.
    QColor GetBackgroundColor() const { return mBackground; }
    void SetBackgroundColor(const QColor &iColor);
    QColor GetSelectionBackgroundColor() const { return mSelectionBackground; }
    void SetSelectionBackgroundColor(const QColor &iColor);
    QColor GetLedgerShadeBackgroundColor() const { return mLedgerBackground; }
    void SetLedgerShadeBackgroundColor(const QColor &iColor);
    QColor GetLedgerShadeHighlightColor() const { return mLedgerHighlight; }
    void SetLedgerShadeHighlightColor(const QColor &iColor);
    QFont GetFont() const { return mFont; }
    virtual void SetFont(const QFont &iFont);
    void enableLedgerShading(bool iOn);
    bool isLedgerShadingEnabled() const { return mLedgerShading; }

    // The view.
    void drawContents(QPainter *iPainter, const QRect &iRect) override;
    int getWidth() const override;
    int getHeight() const override;
    QSize getSize() const override;
    void setSize(const QSize &iSize) override;
    QSize getMinSize() const override;
    /// Takes the size of the viewport the list is shown in (the bridge's viewport).
    virtual void adjustToPortSize();
    void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv) override;
    std::unique_ptr<Kiv_ViewInterface> clone() const override;
    bool findItem(const QString &iName, QPoint *oWhere) override;
    QString findUiName(const QPoint &iPos) override;
    bool getToolTip(const QPoint &iPos, QRect *oTipRect, QString *oTipString) override;
    void mousePressEvent(QMouseEvent *iEvent, const QPoint &iPos) override;
    void mouseReleaseEvent(QMouseEvent *iEvent, const QPoint &iPos) override;
    void mouseMoveEvent(QMouseEvent *iEvent, const QPoint &iPos) override;
    void mouseDoubleClickEvent(QMouseEvent *iEvent, const QPoint &iPos) override;
    void dragMoveEvent(QDragMoveEvent *iEvent, const QPoint &iPos) override;
    void dropEvent(QDropEvent *iEvent, const QPoint &iPos) override;
    void keyPressEvent(QKeyEvent *iEvent) override;
    /// Drags the selected rows as a press at the point would (with the default drag action).
    void startDrag(const QPoint &iPos) override;

    // The container of the row view.
    void SetChild(Kiv_ViewInterface *iChild) { SetRowView(iChild); }
    void childSizeChanged(Kiv_ViewInterface *iChild, QSize iNewSize, QSize iOldSize) override;
    void childInsertedRow(Kiv_ViewInterface *iChild, int iY, int iHeight) override;
    void childDeletedRow(Kiv_ViewInterface *iChild, int iY, int iHeight) override;
    void childInsertedColumn(Kiv_ViewInterface *iChild) override;
    void childBitsChanged(Kiv_ViewInterface *iChild, const QRect &iRect, bool iImmediate) override;
    QWidget *getBridgeWidget() override;
    void overlayChildEditWidget(Kiv_ViewInterface *iChild, QWidget *iEditor, int iX,
                                int iY) override;

protected:
    // The selection strategies, each given the row and the working copy of the selection.
    virtual void SingleSelection(long iRow, SortedValueList<long> &ioList);
    virtual void MultiSelection(long iRow, SortedValueList<long> &ioList);
    virtual void ExtendedSelection(long iRow, SortedValueList<long> &ioList);
    virtual void TotalSelection(SortedValueList<long> &ioList);

    /// The drag action for the modifiers of the event (see setDragActionMap()).
    virtual Qt::DropAction getDragAction(QMouseEvent *iEvent);
    /// Runs the drag; the default makes a QDrag on the bridge widget and executes it.
    virtual void execDrag(QMimeData *iData, const QPixmap &iImage, Qt::DropAction iAction);
    /// The ledger colour of a row: the highlight for odd rows, the background for even ones.
    virtual QColor GetLedgerShadeIndexColor(int iRow) const;
    /// Paints one row: its background and the row view showing it.
    void paintCell(QPainter *iPainter, const QRect &iRect, long iRow);
    /// Makes the row view show the row: sets the current-row model (quietly: the cells read
    /// on demand) and moves the row view to the row's origin.
    void setCurrentRow(long iRow);
    /// The row view's origin for a row.
    QPoint rowOrigin(long iRow) const;
    /// Runs the selection script, if there is one.
    void runSelectionScript();
    bool hasSelectionScript() const;
    /// The environment the row view was connected in (null before makeConnections()).
    const Bnd_ConnectionEnvironmentPtr &rowEnvironment() const { return mRowEnv; }
    /// Replaces the selection and repaints the rows on screen that changed. The selection
    /// models' listeners hear of it at announceSelection().
    void storeSelection(const SortedValueList<long> &iList);
    /// Tells the listeners of the selection models what changed since the last time; answers
    /// false when one of them destroyed the list (the caller must then return at once).
    bool announceSelection();
    /// Cleared when the list is destroyed: an event handler that runs a script or a drag checks
    /// it before touching the list again.
    std::shared_ptr<bool> aliveToken() const { return mAliveP; }
    /// Sets the anchor of Shift-extension (announced with the selection).
    void setAnchor(long iRow);
    long anchor() const { return mLastSelection.getValue(); }

    /// Keeps the row view (and whatever replaces it) alive while the list is calling it: a
    /// row view replaced meanwhile is deleted when the outermost call returns.
    class RowViewCall
    {
    public:
        explicit RowViewCall(Kiv_ListView *iList);
        ~RowViewCall();
        RowViewCall(const RowViewCall &) = delete;
        RowViewCall &operator=(const RowViewCall &) = delete;

    private:
        Kiv_ListView *mList;
        std::shared_ptr<bool> mAlive;
    };
    /// Whether the list is inside a call to its row view (an event it forwards).
    bool isCallingRowView() const { return mRowViewCalls > 0; }

private:
    class IsSelectedModel;
    class SelectionModel;

    void init();
    void receiveListMessage(const Bnd_MessageInterface &iMsg);
    void setRowCount(long iCount);
    void repaintRows(long iFirst, long iLast);
    void startDragOfSelection(const QPoint &iPress, Qt::DropAction iAction);
    void takeSelectionFromOutside(SortedValueList<long> iList);
    /// The row at the point (list coordinates) and the point in the row, or -1 off the rows.
    long rowAt(const QPoint &iPos, QPoint *oInRow) const;
    void sendScriptsTo(const Bnd_ConnectionEnvironmentPtr &iEnv);
    int viewportHeight() const;

    // Drag settings.
    Qt::DropAction mDefaultDragAction = Qt::MoveAction;
    Qt::KeyboardModifiers mDragModifierMask = Qt::ControlModifier;
    DragActionMap mDragActionMap;

    QString mCurrentRowName;
    QString mListName;
    std::unique_ptr<Kiv_ViewInterface> mRowViewP;
    CurrentRowModel mCurrentRow;
    long mRowCount = 0;
    Bnde_SimpleValue<long> mLastSelection;
    SelectionMode mSelectionMode = SelectNone;
    std::unique_ptr<Bnd_ListenerBase> mListListenerP;
    QSize mPortSize;

    // Drag state.
    bool mDragArmed = false;
    bool mClickDeselect = false;
    bool mMovedSincePress = false;
    QPoint mPressGlobal;
    QPoint mPressLocal;

    bool mLedgerShading = true;
    QColor mLedgerHighlight { 229, 240, 247 };
    QColor mLedgerBackground { Qt::white };
    QColor mSelectionBackground { 100, 136, 170 };
    QColor mBackground { Qt::white };
    QFont mFont;

    QString mEnterAction;
    QString mSelectionAction;
    std::unique_ptr<Kiv_Script> mEnterScriptP;
    std::unique_ptr<Kiv_Script> mSelectionScriptP;

    std::unique_ptr<SelectionModel> mSelectionListP;
    std::unique_ptr<IsSelectedModel> mIsSelectedP;
    // What the selection models' listeners have not heard yet.
    struct PendingNotes
    {
        bool anchor = false;
        bool list = false;
        long first = -1; // the rows whose state may have changed
        long last = -1;
    };
    PendingNotes mPending;
    int mRowViewCalls = 0;
    std::vector<std::unique_ptr<Kiv_ViewInterface>> mRetiredRowViews;
    Bnd_ConnectionEnvironmentPtr mRowEnv;
    // Cleared by the destructor: a script or a drag run from an event may destroy the list.
    std::shared_ptr<bool> mAliveP = std::make_shared<bool>(true);
};
