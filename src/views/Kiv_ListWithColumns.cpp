#include "Kiv_ListWithColumns.h"

#include "Bndt_Root_Notifications.h"
#include "Kiv_BlankView.h"
#include "Kiv_BridgeQScrollArea.h"
#include "Kiv_HStackView.h"
#include "Kiv_TransparentOverlay.h"

#include <QFontInfo>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWidget>

#include <algorithm>

namespace {
// The column a header drag started with. One value for all lists, on purpose: there is one
// pointer, so one column drag at a time.
long sPreviousColumnBeingDragged = -1;

const QColor cDraggedColumnColor(136, 136, 136);
} // namespace

Kiv_ListWithColumns::Kiv_ListWithColumns()
{
    init();
}

Kiv_ListWithColumns::Kiv_ListWithColumns(const Kiv_ListWithColumns &iOther)
    : Kiv_ListView(iOther)
    , mColumnModel(iOther.mColumnModel)
    , mRowHeight(iOther.mRowHeight)
    , mLeadingWidth(iOther.mLeadingWidth)
    , mViewTypes(iOther.mViewTypes)
{
    const long height = mRowHeight;
    init();
    mRowHeight = height;
}

Kiv_ListWithColumns::~Kiv_ListWithColumns() = default;

void Kiv_ListWithColumns::init()
{
    mRowHeight = GetFontRowHeight();
    mVisibleChanges.setReceiveMessageCB(
        [this](const Bnd_MessageInterface &iMsg) { visibleColumnsChanged(iMsg); });
    mWidth.setReceiveMessageCB([this](const Bnd_MessageInterface &iMsg) { widthsChanged(iMsg); });
    mColumnBeingDragged.setReceiveMessageCB([this](const Bnd_MessageInterface &iMsg) {
        if (iMsg.is<Bndt_SimpleValue_Notifications::MsgValueChanged>()
            || iMsg.is<Bndt_Root_Notifications::MsgConnectedChanged>())
            columnBeingDraggedChanged(); // a model gone mid-drag ends the drag
    });
    for (Bnd_ListenerBase *attribute :
         std::initializer_list<Bnd_ListenerBase *> { &mViewType, &mReadOnly, &mEnvironmentVars })
        attribute->setReceiveMessageCB(
            [this](const Bnd_MessageInterface &iMsg) { columnAttributesChanged(iMsg); });
}

std::unique_ptr<Kiv_ViewInterface> Kiv_ListWithColumns::clone() const
{
    return std::unique_ptr<Kiv_ViewInterface>(new Kiv_ListWithColumns(*this));
}

void Kiv_ListWithColumns::SetColumnDataModel(const QString &iName)
{
    mColumnModel = iName;
}

void Kiv_ListWithColumns::SetViewTypeMap(const ViewTypeMap &iMap)
{
    mViewTypes = iMap;
}

void Kiv_ListWithColumns::setLeadingWidth(int iWidth)
{
    mLeadingWidth = std::max(0, iWidth);
    if (Kiv_HStackView *s = stack())
        if (Kiv_ViewInterface *lead = s->subViewAt(0)) {
            lead->setSize(QSize(mLeadingWidth, lead->getHeight()));
            s->layoutSubViews();
        }
}

void Kiv_ListWithColumns::makeConnections(Bnd_ConnectionEnvironmentPtr iEnv)
{
    mEnv = iEnv ? iEnv : Bnd_ConnectionEnvironment::blankEnvironment();
    // The attributes first, the visible list last: its connection builds the row.
    mConnecting = true;
    const auto bind = [&](Bnd_ListenerBase &iListener, const char *iSuffix) {
        iListener.ClearConnection();
        if (mColumnModel.isEmpty())
            return;
        iListener.SetConnectionName(name(iSuffix));
        iListener.connect(mEnv);
    };
    bind(mViewType, ".viewType");
    bind(mWidth, ".width");
    bind(mMinWidth, ".minWidth");
    bind(mReadOnly, ".readOnly");
    bind(mEnvironmentVars, ".connectionEnvironmentVars");
    bind(mColumnBeingDragged, ".columnBeingDragged");
    bind(mVisible, ".sortedVisibleColumns");
    bind(mVisibleChanges, ".sortedVisibleColumns.arrayMetaData");
    mConnecting = false;
    BuildRowView();
    Kiv_ListView::makeConnections(mEnv);
}

// ---------------------------------------------------------------------------------------------
// The row

Kiv_HStackView *Kiv_ListWithColumns::stack() const
{
    return dynamic_cast<Kiv_HStackView *>(getRowView());
}

void Kiv_ListWithColumns::InitRowView()
{
    auto *row = new Kiv_HStackView;
    row->setName(QStringLiteral("RowView"));
    row->setCanDrag(Kiv_ViewBase::canDrag(QPoint()));
    row->appendSubView(new Kiv_BlankView(QSize(mLeadingWidth, int(mRowHeight))));
    SetRowView(row);
}

void Kiv_ListWithColumns::BuildRowView()
{
    mActiveRow = mActiveColumn = -1;
    InitRowView();
    const long count = mVisible.size();
    for (long k = 0; k < count; ++k)
        insertColumn(k);
    AdjustWidths();
    sendAllBitsChanged();
}

void Kiv_ListWithColumns::insertColumn(long iColumn)
{
    Kiv_HStackView *row = stack();
    const long column = mVisible.at(iColumn, -1);
    if (!row || column < 0)
        return;
    const auto prototype = mViewTypes.find(int(mViewType.at(column, -1)));
    std::unique_ptr<Kiv_ViewInterface> cell
        = prototype != mViewTypes.end() && prototype->second ? prototype->second->clone() : nullptr;
    if (!cell)
        cell = std::make_unique<Kiv_BlankView>();
    cell->setName(QString::asprintf("column%ld", column));
    const long width = std::max(mWidth.at(column, 100), mMinWidth.at(column, 0));
    cell->setSize(QSize(int(width), int(mRowHeight)));
    cell->setReadOnly(mReadOnly.at(column, true));
    if (row->insertSubView(columnIndexToViewIndex(iColumn), cell.get(),
                           mEnvironmentVars.at(column)))
        cell.release();
    row->insertSubView(columnIndexToViewIndex(iColumn) + 1, new Kiv_BlankView(separatorSize()));
}

void Kiv_ListWithColumns::removeColumn(long iColumn)
{
    if (Kiv_HStackView *row = stack()) {
        row->removeSubViewAt(columnIndexToViewIndex(iColumn)); // the cell,
        row->removeSubViewAt(columnIndexToViewIndex(iColumn)); // then its separator
    }
}

void Kiv_ListWithColumns::moveColumnAndDivider(long iFrom, long iTo)
{
    Kiv_HStackView *row = stack();
    if (!row || iFrom == iTo)
        return;
    const int f = int(iFrom);
    const int t = int(iTo);
    if (f < t) {
        row->moveSubView(2 * f + 1, 2 * t + 2);
        row->moveSubView(2 * f + 1, 2 * t + 2); // the separator, now where the cell was
    } else {
        row->moveSubView(2 * f + 1, 2 * t + 1);
        row->moveSubView(2 * f + 2, 2 * t + 2);
    }
}

void Kiv_ListWithColumns::insertColumnDragViews(long iColumn)
{
    if (Kiv_HStackView *row = stack())
        row->setProxy(row->subViewAt(columnIndexToViewIndex(iColumn)), cDraggedColumnColor);
}

void Kiv_ListWithColumns::visibleColumnsChanged(const Bnd_MessageInterface &iMsg)
{
    if (mConnecting)
        return;
    if (iMsg.is<Bndt_Root_Notifications::MsgConnectedChanged>()) {
        BuildRowView();
    } else if (const auto *r = iMsg.as<Bndt_Array_Notifications::MsgElementsReplaced>()) {
        if (r->count == 0 && !isCallingRowView()) {
            for (long k = r->end - 1; k >= r->first; --k)
                removeColumn(k);
        } else if (r->first == r->end) {
            for (long k = r->first; k < r->first + r->count; ++k)
                insertColumn(k);
        } else {
            BuildRowView();
        }
        mActiveRow = mActiveColumn = -1;
        sendAllBitsChanged();
    } else if (const auto *m = iMsg.as<Bndt_Array_Notifications::MsgElementsMoved>()) {
        moveColumnAndDivider(m->from, m->to);
        // The active cell keeps its column, wherever that goes.
        if (mActiveColumn == m->from)
            mActiveColumn = m->to;
        else if (m->from < m->to && mActiveColumn > m->from && mActiveColumn <= m->to)
            --mActiveColumn;
        else if (m->from > m->to && mActiveColumn >= m->to && mActiveColumn < m->from)
            ++mActiveColumn;
        sendAllBitsChanged();
    }
}

void Kiv_ListWithColumns::widthsChanged(const Bnd_MessageInterface &iMsg)
{
    const auto *r = iMsg.as<Bndt_Array_Notifications::MsgElementsReplaced>();
    Kiv_HStackView *row = stack();
    if (!r || !row || mConnecting)
        return;
    // Only the visible columns whose width changed are resized; the rows repaint once.
    const long count = mVisible.size();
    for (long k = 0; k < count; ++k) {
        const long column = mVisible.at(k, -1);
        if (column < r->first || column >= r->end)
            continue;
        if (Kiv_ViewInterface *cell = row->subViewAt(columnIndexToViewIndex(k))) {
            const int width
                = int(std::max(mWidth.at(column, cell->getWidth()), mMinWidth.at(column, 0)));
            cell->setSize(QSize(width, cell->getHeight()));
        }
    }
    row->layoutSubViews();
    sendAllBitsChanged();
}

void Kiv_ListWithColumns::columnAttributesChanged(const Bnd_MessageInterface &iMsg)
{
    if (!mConnecting && iMsg.is<Bndt_Array_Notifications::MsgElementsReplaced>())
        BuildRowView();
}

void Kiv_ListWithColumns::columnBeingDraggedChanged()
{
    const long column = mColumnBeingDragged.getValue(-1);
    const long previous = sPreviousColumnBeingDragged;
    sPreviousColumnBeingDragged = column;
    Kiv_HStackView *row = stack();
    if (!row)
        return;
    if (previous < 0 && column >= 0) {
        mColumnDragging = true;
        insertColumnDragViews(column);
    } else if (column < 0) {
        mColumnDragging = false;
        row->clearProxies();
    }
    sendAllBitsChanged();
}

// ---------------------------------------------------------------------------------------------
// Sizes

long Kiv_ListWithColumns::GetFontRowHeight() const
{
    const QFont font = GetFont();
    const int points = font.pointSize() > 0 ? font.pointSize() : QFontInfo(font).pointSize();
    return points + 12;
}

long Kiv_ListWithColumns::GetMinimumRowHeight() const
{
    long height = GetFontRowHeight();
    if (const Kiv_HStackView *row = stack())
        for (int i = 0; i < row->subViewCount(); ++i)
            height = std::max<long>(height, row->subViewAt(i)->getMinSize().height());
    return height;
}

void Kiv_ListWithColumns::SetFont(const QFont &iFont)
{
    Kiv_ListView::SetFont(iFont);
    SetRowHeight(GetFontRowHeight());
}

void Kiv_ListWithColumns::SetRowHeight(long iHeight)
{
    mRowHeight = std::max(1L, iHeight);
    if (Kiv_HStackView *row = stack())
        row->setSubViewHeights(int(mRowHeight));
}

QSize Kiv_ListWithColumns::separatorSize() const
{
    return QSize(5, int(mRowHeight));
}

void Kiv_ListWithColumns::AdjustWidths()
{
    const Kiv_HStackView *row = stack();
    const long count = mVisible.size();
    for (long k = 0; row && k < count; ++k) {
        const long column = mVisible.at(k, -1);
        const Kiv_ViewInterface *cell = row->subViewAt(columnIndexToViewIndex(k));
        if (column >= 0 && cell && mWidth.at(column, cell->getWidth()) != cell->getWidth())
            mWidth.setAt(column, cell->getWidth());
    }
}

// ---------------------------------------------------------------------------------------------
// Cells and keys

Kiv_ViewInterface *Kiv_ListWithColumns::GetCellAt(const QPoint &iPos, long *oRow, long *oColumn)
{
    long row = -1;
    Kiv_HStackView *s = stack();
    if (!s || !CellContaining(iPos.y(), &row) || row < 0)
        return nullptr;
    const int index = s->indexAt(iPos.x());
    if (index < 0)
        return nullptr;
    if (oRow)
        *oRow = row;
    if (oColumn)
        *oColumn = (index + 1) / 2 - 1;
    return s->subViewAt(index);
}

bool Kiv_ListWithColumns::isCellEditable(long iColumn) const
{
    const Kiv_HStackView *row = stack();
    const Kiv_ViewInterface *cell = row ? row->subViewAt(columnIndexToViewIndex(iColumn)) : nullptr;
    return cell && !cell->getReadOnly();
}

void Kiv_ListWithColumns::mousePressEvent(QMouseEvent *iEvent, const QPoint &iPos)
{
    const std::shared_ptr<bool> alive = aliveToken();
    Kiv_ListView::mousePressEvent(iEvent, iPos);
    if (!*alive)
        return;
    // A click on an editable cell makes it the one the keyboard works on; a click elsewhere
    // leaves Return and Enter to the list.
    long row = -1;
    long column = -1;
    if (GetCellAt(iPos, &row, &column) && column >= 0 && isCellEditable(column)) {
        mActiveRow = row;
        mActiveColumn = column;
    } else {
        mActiveRow = mActiveColumn = -1;
    }
}

void Kiv_ListWithColumns::activateCell(long iRow, long iColumn)
{
    const std::shared_ptr<bool> alive = aliveToken();
    SetSelected(iRow, false, Qt::NoModifier);
    if (!*alive)
        return;
    mActiveRow = iRow;
    mActiveColumn = iColumn;
    Kiv_HStackView *row = stack();
    Kiv_ViewInterface *cell = row ? row->subViewAt(columnIndexToViewIndex(iColumn)) : nullptr;
    if (!cell || cell->getReadOnly())
        return;
    // Opened as a double click on it opens it (an editor over a text cell).
    setCurrentRow(iRow);
    const QPoint centre = cell->getLocalDrawingRect().center();
    const QPoint inList = centre + cell->getOrigin() + getRowView()->getOrigin();
    QWidget *port = getBridgeWidget();
    const QPointF global = port ? QPointF(port->mapToGlobal(inList)) : QPointF(inList);
    QMouseEvent click(QEvent::MouseButtonDblClick, QPointF(centre), global, Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    cell->mouseDoubleClickEvent(&click, centre);
}

void Kiv_ListWithColumns::changeGridSelection(int iMoveDirection)
{
    const long rows = GetNumItems();
    const long columns = mVisible.size();
    if (rows <= 0 || columns <= 0)
        return;
    long r = mActiveRow;
    long k = mActiveColumn;
    if (r < 0 || k < 0) {
        if (iMoveDirection == MoveUp || iMoveDirection == MoveDown) {
            changeSelection(iMoveDirection == MoveUp ? Qt::Key_Up : Qt::Key_Down);
            return;
        }
        r = std::max(0L, GetFirstRowSelection());
        k = iMoveDirection == MoveRight ? -1 : columns;
    }
    switch (iMoveDirection) {
    case MoveUp:
        r = r < 1 ? rows - 1 : r - 1;
        break;
    case MoveDown:
        if (r >= rows - 1)
            return; // the last row: stay
        ++r;
        break;
    case MoveLeft:
    case MoveRight: {
        const int step = iMoveDirection == MoveRight ? 1 : -1;
        long cr = r;
        long ck = k;
        // One turn through the columns at most: with no editable cell the move gives up.
        for (long tried = 0; tried <= columns; ++tried) {
            ck += step;
            if (ck < 0 || ck >= columns) {
                if ((step < 0 && cr == 0) || (step > 0 && cr >= rows - 1))
                    return; // the first or the last cell of the list: stay
                cr += step;
                ck = step > 0 ? 0 : columns - 1;
            }
            if (isCellEditable(ck)) {
                r = cr;
                k = ck;
                break;
            }
        }
        if (r == mActiveRow && k == mActiveColumn)
            return;
        if (k < 0 || k >= columns)
            return;
        break;
    }
    default:
        return;
    }
    activateCell(r, k);
}

void Kiv_ListWithColumns::executeSelectionAction()
{
    if (!hasSelectionScript())
        return;
    setCurrentRow(GetFirstRowSelection());
    runSelectionScript();
}

void Kiv_ListWithColumns::keyPressEvent(QKeyEvent *iEvent)
{
    switch (iEvent->key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
        iEvent->accept();
        changeGridSelection(iEvent->key() == Qt::Key_Up ? MoveUp : MoveDown);
        return;
    case Qt::Key_Tab:
        iEvent->accept();
        changeGridSelection(iEvent->modifiers() & Qt::ShiftModifier ? MoveLeft : MoveRight);
        return;
    case Qt::Key_Backtab:
        iEvent->accept();
        changeGridSelection(MoveLeft);
        return;
    case Qt::Key_Escape:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        iEvent->ignore();
        if (mActiveRow >= 0 && mActiveColumn >= 0) {
            mActiveRow = mActiveColumn = -1;
            return;
        }
        if (GetFirstRowSelection() >= 0)
            setCurrentRow(GetFirstRowSelection());
        Kiv_ListView::keyPressEvent(iEvent);
        return;
    default:
        Kiv_ListView::keyPressEvent(iEvent);
    }
}

Kiv_TransparentOverlay *Kiv_ListWithColumns::makeColumnDragOverlay(const QPoint &iSize,
                                                                   long iColumn, QWidget *iHeader)
{
    Kiv_HStackView *row = stack();
    QWidget *port = getBridgeWidget();
    if (!row || !port || iSize.x() <= 0)
        return nullptr;
    const long count = mVisible.size();
    long index = 0;
    while (index < count && mVisible.at(index, -1) != iColumn)
        ++index;
    const Kiv_ViewInterface *cell = row->subViewAt(columnIndexToViewIndex(index));
    if (index >= count || !cell)
        return nullptr;
    // The header and the viewport both show list x at x - the horizontal scroll position (the
    // header's left margin being the list's leading width).
    const auto *area = dynamic_cast<const Kiv_BridgeQScrollArea *>(getParent());
    const int scrolled = area ? area->contentsOffset().x() : 0;
    const int left = cell->getOrigin().x() - (index > 0 ? 3 : 0) - scrolled;
    const int headerHeight = iHeader ? iHeader->height() : 0;
    QPixmap image(iSize.x(), headerHeight + port->height());
    image.fill(Qt::transparent);
    QPainter painter(&image);
    if (iHeader)
        painter.drawPixmap(0, 0, iHeader->grab(QRect(left, 0, iSize.x(), headerHeight)));
    painter.drawPixmap(0, headerHeight, port->grab(QRect(left, 0, iSize.x(), port->height())));
    painter.end();
    return new Kiv_TransparentOverlay(image, 170);
}
