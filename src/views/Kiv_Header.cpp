#include "Kiv_Header.h"

#include "Bnd_ConnectionEnvironment.h"
#include "Bnd_ConnectionToModel.h"
#include "Bndt_Array_API.h"
#include "Kib_Resource.h"
#include "Kiv_FontManager.h"
#include "Kiv_PopupMenu.h"
#include "Kiv_RetireLater.h"
#include "Kiv_TransparentOverlay.h"
#include "Kiv_WhatsThis.h"
#include "views/Kiv_HeaderGeometry.h"

#include <QApplication>
#include <QDebug>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QProxyStyle>

#include <algorithm>
#include <utility>
#include <vector>

using namespace Kiv_HeaderGeometry;

namespace {
const char *const cFontName = "FontSettings.Kiv_Header.Font";
const char *const cSortUpImage = "Images/ResearchPane/sortIconUp.png";
const char *const cSortDownImage = "Images/ResearchPane/sortIconDown.png";
const char *const cStyleOverrideModel = "RemoteAssetsTool.StyleOverride";
const char *const cNewColumnPrivilege
    = "Settings.User.AM.Privileges.UserPriviledges.CanCreateNewColumn";

// Context menu item keys.
const char *const cHideKey = "HideColumn";
const char *const cNewKey = "NewColumn";
const char *const cSelectKey = "SelectColumn";
const QLatin1String cNoArgumentPrefix("action0:");
const QLatin1String cColumnArgumentPrefix("action1:");

const QColor cLabelColour(46, 48, 50);
const QColor cDraggedSlotColour(136, 136, 136);

typedef Bnd_ConnectionToModel<Bndt_Array<long>> LongArrayListener;
typedef Bnd_ConnectionToModel<Bndt_Array<bool>> BoolArrayListener;
typedef Bnd_ConnectionToModel<Bndt_Array<QString>> StringArrayListener;
typedef Bnd_ConnectionToModel<Bndt_Array<Bndt_Action<void()>>> ActionArrayListener;
typedef Bnd_ConnectionToModel<Bndt_Action<void()>> ActionListener;
} // namespace

struct Kiv_Header::Models
{
    Bnd_ListenerBase root;
    LongArrayListener sortedVisible;
    Bnd_ListenerBase sortedVisibleMeta;
    LongArrayListener hidden;
    Bnd_ListenerBase hiddenMeta;
    LongArrayListener identifier;
    LongArrayListener width;
    LongArrayListener minWidth;
    StringArrayListener label;
    BoolArrayListener canHide;
    BoolArrayListener visible;
    BoolArrayListener isSorted;
    BoolArrayListener isSortedAscending;
    ActionArrayListener hideColumn;
    ActionArrayListener showColumn;
    ActionArrayListener sortByColumn;
    Bnd_ConnectionToModel<Bndt_SimpleValue<long>> columnBeingDragged;
    ActionListener addNewColumn;
    ActionListener columnSelection;

    struct ExtraItem
    {
        QString label;
        QString connection;
        bool takesColumn = false;
        std::unique_ptr<ActionListener> action;
    };
    std::vector<ExtraItem> extraItems;

    // The layout of the visible columns, rebuilt from the models when invalidated.
    bool layoutValid = false;
    std::vector<long> columns; // column numbers in display order
    Layout layout;
    std::vector<long> dividers;

    /// The listeners of the columns model, each with what it adds to the base name.
    std::vector<std::pair<Bnd_ListenerBase *, const char *>> columnListeners()
    {
        return { { &root, "" },
                 { &sortedVisible, ".sortedVisibleColumns" },
                 { &sortedVisibleMeta, ".sortedVisibleColumns.arrayMetaData" },
                 { &hidden, ".hiddenColumns" },
                 { &hiddenMeta, ".hiddenColumns.arrayMetaData" },
                 { &identifier, ".identifier" },
                 { &width, ".width" },
                 { &minWidth, ".minWidth" },
                 { &label, ".label" },
                 { &canHide, ".canHide" },
                 { &visible, ".visible" },
                 { &isSorted, ".isSorted" },
                 { &isSortedAscending, ".isSortedAscending" },
                 { &hideColumn, ".hideColumn" },
                 { &showColumn, ".showColumn" },
                 { &sortByColumn, ".sortByColumn" },
                 { &columnBeingDragged, ".columnBeingDragged" } };
    }
};

Kiv_Header::Kiv_Header(QWidget *iParent, QString iName)
    : QWidget(iParent)
    , mModels(std::make_unique<Models>())
{
    setObjectName(iName);
    Kiv_WhatsThis::setBestWhatsThisName(this, QStringLiteral("Kiv_Header"));
    setFont(Kiv_FontManager::getFont(QLatin1String(cFontName)));
    mSortUpPixmap = Kib_Resource::loadPixmap(QLatin1String(cSortUpImage));
    mSortDownPixmap = Kib_Resource::loadPixmap(QLatin1String(cSortDownImage));
    setMouseTracking(true); // the divider cursor
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);

    Models &m = *mModels;
    const auto relayout = [this](const Bnd_MessageInterface &) {
        handleColumnListChanged();
    };
    const std::initializer_list<Bnd_ListenerBase *> layoutSources
        = { &m.root,       &m.sortedVisible, &m.sortedVisibleMeta, &m.hidden,
            &m.hiddenMeta, &m.width,         &m.minWidth };
    for (Bnd_ListenerBase *listener : layoutSources)
        listener->setReceiveMessageCB(relayout);
    const auto repaint = [this](const Bnd_MessageInterface &) {
        update();
    };
    m.isSorted.setReceiveMessageCB(repaint);
    m.isSortedAscending.setReceiveMessageCB(repaint);
    m.label.setReceiveMessageCB([this](const Bnd_MessageInterface &iMsg) {
        const auto *replaced = iMsg.as<Bndt_Array_Notifications::MsgElementsReplaced>();
        if (replaced && replaced->count == 1 && replaced->end == replaced->first + 1)
            handleColumnNameChanged(replaced->first);
        else
            handleColumnListChanged();
    });
}

Kiv_Header::~Kiv_Header()
{
    Models &m = *mModels;
    if (mColumnDrag.active)
        m.columnBeingDragged.setValue(-1L);
    // Detaching must not call back into a header that is going away.
    for (auto &entry : m.columnListeners())
        entry.first->setReceiveMessageCB(Bnd_ListenerBase::ReceiveCallback());
}

void Kiv_Header::setColumnBaseConnectionName(QString iName)
{
    if (iName == mColumnBaseName)
        return;
    mColumnBaseName = iName;
    if (mConnectionsMade)
        connectColumnListeners();
}

void Kiv_Header::setColumnSelectionConnectionSpec(QString iSpec)
{
    if (iSpec == mColumnSelectionSpec)
        return;
    mColumnSelectionSpec = iSpec;
    if (!mConnectionsMade)
        return;
    if (iSpec.isEmpty()) {
        mModels->columnSelection.ClearConnection();
    } else {
        mModels->columnSelection.SetConnectionName(iSpec);
        mModels->columnSelection.connect(mEnv);
    }
}

void Kiv_Header::setLeftMargin(long iMargin)
{
    mLeftMargin = iMargin;
    handleColumnListChanged();
}

void Kiv_Header::setOffset(int iOffset, bool iRepaint)
{
    if (iOffset == mOffset)
        return;
    mOffset = iOffset;
    mModels->layoutValid = false;
    if (iRepaint)
        repaint();
    else
        update();
}

void Kiv_Header::setCreateColumnDragOverlayCB(const CreateOverlayCallback &iCallback)
{
    mCreateOverlay = iCallback;
}

void Kiv_Header::makeConnections(Bnd_ConnectionEnvironmentPtr iEnv)
{
    mEnv = iEnv;
    mConnectionsMade = true;
    connectColumnListeners();
    Models &m = *mModels;
    if (mColumnSelectionSpec.isEmpty()) {
        m.columnSelection.ClearConnection();
    } else {
        m.columnSelection.SetConnectionName(mColumnSelectionSpec);
        m.columnSelection.connect(mEnv);
    }
    for (size_t i = 0; i < m.extraItems.size(); ++i)
        connectExtraItem(i);
}

void Kiv_Header::connectColumnListeners()
{
    Models &m = *mModels;
    for (auto &entry : m.columnListeners()) {
        if (mColumnBaseName.isEmpty()) {
            entry.first->ClearConnection();
        } else {
            entry.first->SetConnectionName(mColumnBaseName + QLatin1String(entry.second));
            entry.first->connect(mEnv);
        }
    }
    // New columns belong to the application as a whole: the action lives under the first
    // component of the base name only.
    if (mColumnBaseName.isEmpty()) {
        m.addNewColumn.ClearConnection();
    } else {
        m.addNewColumn.SetConnectionName(mColumnBaseName.section(QLatin1Char('.'), 0, 0)
                                         + QLatin1String(".Actions.addNewColumn"));
        m.addNewColumn.connect(mEnv);
    }
    handleColumnListChanged();
}

void Kiv_Header::addContextMenuItem(QString iLabel, QString iConnection)
{
    addContextMenuItem(iLabel, iConnection, QString());
}

void Kiv_Header::addContextMenuItem(QString iLabel, QString iConnection, QString iArgument)
{
    const bool takesColumn = iArgument.compare(QLatin1String("column"), Qt::CaseInsensitive) == 0;
    if (!takesColumn && !iArgument.isEmpty())
        qWarning().noquote() << "Kiv_Header::addContextMenuItem, unknown argument" << iArgument
                             << "for" << iConnection << "; the action runs without one";
    Models::ExtraItem item;
    item.label = iLabel;
    item.connection = iConnection;
    item.takesColumn = takesColumn;
    item.action = std::make_unique<ActionListener>();
    mModels->extraItems.push_back(std::move(item));
    connectExtraItem(mModels->extraItems.size() - 1);
}

void Kiv_Header::connectExtraItem(size_t iItem)
{
    Models::ExtraItem &item = mModels->extraItems[iItem];
    item.action->SetConnectionName(item.connection);
    if (mConnectionsMade)
        item.action->connect(mEnv);
}

void Kiv_Header::clearContextMenuItems()
{
    // An item's own action may be what clears the items.
    for (Models::ExtraItem &item : mModels->extraItems)
        Kiv_RetireLater::listener(std::move(item.action));
    mModels->extraItems.clear();
}

void Kiv_Header::handleColumnListChanged()
{
    mModels->layoutValid = false;
    updateGeometry();
    update();
}

void Kiv_Header::handleColumnNameChanged(long iColumn)
{
    mModels->layoutValid = false;
    ensureLayout();
    const Models &m = *mModels;
    const auto found = std::find(m.columns.begin(), m.columns.end(), iColumn);
    if (found == m.columns.end())
        return; // a hidden column's label shows only in the menu
    const long index = long(found - m.columns.begin());
    update(int(columnLeft(m.layout, index)), 0, int(m.layout.widths[size_t(index)]), height());
}

void Kiv_Header::ensureLayout() const
{
    Models &m = *mModels;
    if (m.layoutValid)
        return;
    m.columns.clear();
    m.layout.widths.clear();
    if (m.sortedVisible.isConnectedToModel() && m.width.isConnectedToModel()) {
        const long count = m.sortedVisible.size();
        for (long i = 0; i < count; ++i) {
            const long column = m.sortedVisible.at(i, -1L);
            m.columns.push_back(column);
            m.layout.widths.push_back(std::max(0L, m.width.at(column, 0L)));
        }
    }
    m.layout.origin = mLeftMargin - mOffset;
    m.dividers = dividerPositions(m.layout);
    m.layoutValid = true;
}

long Kiv_Header::visibleCount() const
{
    ensureLayout();
    return mModels->layout.count();
}

long Kiv_Header::columnAt(long iIndex) const
{
    ensureLayout();
    const std::vector<long> &columns = mModels->columns;
    return iIndex >= 0 && iIndex < long(columns.size()) ? columns[size_t(iIndex)] : -1;
}

long Kiv_Header::columnIndexForPos(const QPoint &iPos) const
{
    ensureLayout();
    return Kiv_HeaderGeometry::columnIndexForPos(mModels->layout, iPos.x());
}

long Kiv_Header::dividerIndexForPos(int iX) const
{
    ensureLayout();
    return Kiv_HeaderGeometry::dividerIndexForPos(mModels->dividers, iX);
}

QSize Kiv_Header::sizeHint() const
{
    ensureLayout();
    const Layout &layout = mModels->layout;
    const long columnsWidth = columnLeft(layout, layout.count()) - layout.origin;
    const int textHeight = fontMetrics().height() + 8;
    const int iconHeight = int(mSortUpPixmap.deviceIndependentSize().height()) + 4;
    return QSize(int(std::max(0L, mLeftMargin + columnsWidth)), std::max(textHeight, iconHeight));
}

void Kiv_Header::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const QRect all = rect();
    painter.fillRect(all, palette().color(QPalette::Button));
    painter.setPen(palette().color(QPalette::Light));
    painter.drawLine(all.topLeft(), all.topRight());
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawLine(all.bottomLeft(), all.bottomRight());

    ensureLayout();
    const Models &m = *mModels;
    long left = m.layout.origin;
    for (long i = 0; i < m.layout.count() && left <= all.right(); ++i) {
        const long width = m.layout.widths[size_t(i)];
        if (left + width + cColumnGap >= 0) {
            if (mColumnDrag.active && i == mColumnDrag.currentIndex)
                painter.fillRect(QRect(int(left), 0, int(width), all.height()), cDraggedSlotColour);
            else
                paintLabel(painter, i, left, width);
            const bool dragged = mDividerDrag.active && i == mDividerDrag.index;
            painter.setPen(palette().color(dragged ? QPalette::Shadow : QPalette::Mid));
            const int x = int(m.dividers[size_t(i)]);
            painter.drawLine(x, 3, x, all.bottom() - 3);
        }
        left += width + cColumnGap;
    }
}

void Kiv_Header::paintLabel(QPainter &iPainter, long iIndex, long iLeft, long iWidth) const
{
    const Models &m = *mModels;
    const QRect labelRect(int(iLeft), 0, int(iWidth - 3), height());
    if (labelRect.width() <= 0)
        return;
    const long column = m.columns[size_t(iIndex)];
    iPainter.save();
    iPainter.setClipRect(labelRect);
    QRect textRect = labelRect;
    if (m.isSorted.isConnectedToModel() && m.isSorted.at(column, false)) {
        const QPixmap &arrow
            = m.isSortedAscending.at(column, true) ? mSortUpPixmap : mSortDownPixmap;
        if (!arrow.isNull()) {
            const QSize size = arrow.deviceIndependentSize().toSize();
            iPainter.drawPixmap(labelRect.right() + 1 - size.width(),
                                labelRect.top() + (labelRect.height() - size.height()) / 2, arrow);
            textRect.setRight(textRect.right() - size.width());
        }
    }
    iPainter.setClipRect(textRect);
    iPainter.setPen(cLabelColour);
    iPainter.setFont(font());
    iPainter.drawText(int(iLeft) + 5, textRect.bottom() - 4, m.label.at(column));
    iPainter.restore();
}

void Kiv_Header::mousePressEvent(QMouseEvent *iEvent)
{
    iEvent->accept(); // so that the release comes here too, whatever the button
    if (iEvent->button() != Qt::LeftButton || mDividerDrag.active || mColumnDrag.active)
        return;
    const QPoint pos = iEvent->position().toPoint();
    const long divider = dividerIndexForPos(pos.x());
    if (divider < 0) {
        mColumnPressPending = true;
        mPressPos = pos;
        return;
    }
    mDividerDrag.active = true;
    mDividerDrag.index = divider;
    mDividerDrag.pressX = pos.x();
    mDividerDrag.startWidth = mModels->width.at(columnAt(divider), 0L);
    setCursor(Qt::SplitHCursor);
    update();
}

void Kiv_Header::mouseMoveEvent(QMouseEvent *iEvent)
{
    const QPoint pos = iEvent->position().toPoint();
    if (mDividerDrag.active) {
        trackDraggingDivider(pos);
        return;
    }
    if (mColumnPressPending) {
        if ((pos - mPressPos).manhattanLength() <= QApplication::startDragDistance())
            return;
        mColumnPressPending = false;
        const long index = columnIndexForPos(mPressPos);
        if (index >= 0)
            startDraggingColumn(index, mPressPos);
    }
    if (mColumnDrag.active) {
        trackDraggingColumn(pos);
        return;
    }
    if (dividerIndexForPos(pos.x()) >= 0)
        setCursor(Qt::SplitHCursor);
    else
        unsetCursor();
}

void Kiv_Header::mouseReleaseEvent(QMouseEvent *iEvent)
{
    iEvent->accept();
    const QPoint pos = iEvent->position().toPoint();
    mColumnPressPending = false;
    if (mDividerDrag.active) {
        trackDraggingDivider(pos);
        mDividerDrag = DividerDrag();
        unsetCursor();
        update();
    } else if (mColumnDrag.active) {
        trackDraggingColumn(pos);
        stopDraggingColumn();
    } else if (iEvent->button() == Qt::RightButton) {
        popupContextMenu(pos);
    } else if (iEvent->button() == Qt::LeftButton) {
        const long index = columnIndexForPos(pos);
        if (index >= 0)
            sortByColumn(index);
    }
}

void Kiv_Header::trackDraggingDivider(const QPoint &iPos)
{
    const Models &m = *mModels;
    const long column = columnAt(mDividerDrag.index);
    if (column < 0 || !m.width.isConnectedToModel())
        return;
    const long width = dividerDragWidth(mDividerDrag.startWidth, m.minWidth.at(column, 0L),
                                        mDividerDrag.pressX, iPos, rect().bottom());
    if (m.width.at(column, -1L) != width)
        m.width.setAt(column, width);
}

void Kiv_Header::startDraggingColumn(long iIndex, const QPoint &iPressPos)
{
    ensureLayout();
    const Models &m = *mModels;
    if (iIndex < 0 || iIndex >= m.layout.count())
        return;
    // The grab offset is from the column's own left edge; the image starts 3 pixels further
    // left when it shows the gap to a neighbour there.
    const long columnLeftEdge = columnLeft(m.layout, iIndex);
    const int imageMargin = iIndex > 0 ? int(cOverlayMargin) : 0;
    ColumnDrag drag;
    drag.active = true;
    drag.grabOffset = iPressPos.x() - int(columnLeftEdge);
    drag.overlayWidth = int(dragOverlayWidth(m.layout, iIndex));
    drag.startIndex = iIndex;
    drag.currentIndex = iIndex;
    mColumnDrag = drag;
    if (!mCreateOverlay.empty()) {
        const CreateOverlayCallback create = mCreateOverlay; // it may replace itself
        mOverlay.reset(create(QPoint(drag.overlayWidth, height()), m.columns[size_t(iIndex)]));
        if (mOverlay) {
            mOverlay->move(mapToGlobal(QPoint(int(columnLeftEdge) - imageMargin, 0)));
            mOverlay->show();
        }
    }
    m.columnBeingDragged.setValue(iIndex);
    update();
}

void Kiv_Header::trackDraggingColumn(const QPoint &iPos)
{
    const int left = iPos.x() - mColumnDrag.grabOffset;
    if (mOverlay)
        mOverlay->move(
            mapToGlobal(QPoint(left - (mColumnDrag.startIndex > 0 ? int(cOverlayMargin) : 0), 0)));
    const int overlayHeight = mOverlay ? mOverlay->height() : height();
    const bool outside = shouldCancelColumnDrag(iPos, rect().right(), overlayHeight);
    if (mColumnDrag.cancelled) {
        if (outside)
            return;
        mColumnDrag.cancelled = false;
        if (mOverlay)
            mOverlay->show();
    } else if (outside) {
        mColumnDrag.cancelled = true;
        if (mOverlay)
            mOverlay->hide();
        moveDraggingColumn(mColumnDrag.startIndex);
        return;
    }
    ensureLayout();
    const long target = computeIndexForDraggingColumn(mModels->layout, mColumnDrag.currentIndex,
                                                      left, left + mColumnDrag.overlayWidth);
    if (target >= 0)
        moveDraggingColumn(target);
}

void Kiv_Header::moveDraggingColumn(long iIndex)
{
    if (iIndex == mColumnDrag.currentIndex)
        return;
    const Models &m = *mModels;
    if (!m.sortedVisible.moveElement(mColumnDrag.currentIndex, iIndex))
        return;
    mColumnDrag.currentIndex = iIndex;
    m.columnBeingDragged.setValue(iIndex);
    update();
}

void Kiv_Header::stopDraggingColumn()
{
    mColumnDrag = ColumnDrag();
    if (mOverlay) {
        mOverlay->hide();
        mOverlay.release()->deleteLater();
    }
    mModels->columnBeingDragged.setValue(-1L);
    update();
}

void Kiv_Header::sortByColumn(long iIndex)
{
    const ActionArrayListener &sort = mModels->sortByColumn;
    if (!sort.isConnectedToModel())
        return;
    // Sorting a long list takes a while; the action may also delete this header.
    QApplication::setOverrideCursor(Qt::WaitCursor);
    sort.invokeAt(iIndex);
    QApplication::restoreOverrideCursor();
}

std::unique_ptr<Kiv_PopupMenu> Kiv_Header::buildContextMenu(const QPoint &iPos)
{
    // No parent: the menu must outlive a header that one of its actions deletes.
    auto menu = std::make_unique<Kiv_PopupMenu>(nullptr, "Kiv_HeaderContextMenu");
    {
        Bnd_ConnectionToModel<Bndt_SimpleValue<QProxyStyle *>> styleOverride(
            QLatin1String(cStyleOverrideModel), Bnd_ConnectionEnvironment::blankEnvironment());
        QProxyStyle *style = nullptr;
        if (styleOverride.isConnectedToModel() && styleOverride.readValue(style) && style)
            menu->setStyle(style);
    }

    const Models &m = *mModels;
    const long column = columnAt(columnIndexForPos(iPos));
    QAction *hide = menu->insertItem(tr("Hide this Column", "context menu item"),
                                     QVariant(QLatin1String(cHideKey)));
    hide->setEnabled(column >= 0 && m.canHide.isConnectedToModel() && m.canHide.at(column, false));

    const long hiddenCount = m.hidden.isConnectedToModel() ? m.hidden.size() : 0;
    if (hiddenCount > 0) {
        menu->addSeparator();
        for (long i = 0; i < hiddenCount; ++i) {
            const long hiddenColumn = m.hidden.at(i, -1L);
            if (hiddenColumn < 0)
                continue;
            menu->insertItem(tr("Show %1",
                                "Hide/Show column menu. %1 will be replaced with name of column "
                                "to be shown")
                                 .arg(m.label.at(hiddenColumn)),
                             QVariant(qlonglong(hiddenColumn)));
        }
    }

    const bool offerNew = m.addNewColumn.isConnectedToModel();
    const bool offerSelection = m.columnSelection.isConnectedToModel();
    if (offerNew || offerSelection)
        menu->addSeparator();
    if (offerNew) {
        QAction *add = menu->insertItem(tr("New Column"), QVariant(QLatin1String(cNewKey)));
        add->setEnabled(hasCreatePropertyPrivs());
    }
    if (offerSelection) {
        menu->insertItem(tr("Select Working Set of Columns"), QVariant(QLatin1String(cSelectKey)));
    }

    if (!m.extraItems.empty()) {
        menu->addSeparator();
        for (const Models::ExtraItem &item : m.extraItems) {
            const QString key
                = (item.takesColumn ? cColumnArgumentPrefix : cNoArgumentPrefix) + item.connection;
            QAction *action = menu->insertItem(item.label, QVariant(key));
            action->setEnabled(item.action->isConnectedToModel()
                               && (!item.takesColumn || column >= 0));
        }
    }
    return menu;
}

void Kiv_Header::popupContextMenu(const QPoint &iPos)
{
    QPointer<Kiv_Header> self(this);
    const std::unique_ptr<Kiv_PopupMenu> menu = buildContextMenu(iPos);
    QAction *chosen = menu->exec(mapToGlobal(iPos));
    if (!self || !chosen)
        return;
    runContextMenuItem(chosen->data(), iPos);
}

void Kiv_Header::runContextMenuItem(const QVariant &iData, const QPoint &iPos)
{
    Models &m = *mModels;
    const long index = columnIndexForPos(iPos);
    const long column = columnAt(index);
    const long position = index >= 0 ? index : visibleCount();

    if (iData.typeId() == QMetaType::LongLong) {
        if (m.showColumn.isConnectedToModel())
            m.showColumn.invokeAt(long(iData.toLongLong()), Bnd_ArgList { Bnd_Variant(position) });
        return;
    }
    const QString key = iData.toString();
    if (key == QLatin1String(cHideKey)) {
        if (column >= 0 && m.hideColumn.isConnectedToModel())
            m.hideColumn.invokeAt(column);
    } else if (key == QLatin1String(cNewKey)) {
        if (m.addNewColumn.isConnectedToModel())
            m.addNewColumn.invoke(Bnd_ArgList { Bnd_Variant(position) });
    } else if (key == QLatin1String(cSelectKey)) {
        if (m.columnSelection.isConnectedToModel())
            m.columnSelection.invoke();
    } else if (key.startsWith(cNoArgumentPrefix) || key.startsWith(cColumnArgumentPrefix)) {
        const bool takesColumn = key.startsWith(cColumnArgumentPrefix);
        const QString connection = key.mid(cNoArgumentPrefix.size());
        for (const Models::ExtraItem &item : m.extraItems) {
            if (item.connection != connection || item.takesColumn != takesColumn)
                continue;
            if (takesColumn && column < 0)
                return;
            // Nothing of this header is touched after the action: it may delete the header.
            item.action->invoke(takesColumn ? Bnd_ArgList { Bnd_Variant(column) } : Bnd_ArgList());
            return;
        }
    } else {
        qWarning().noquote() << "Kiv_Header::runContextMenuItem, no item" << key;
    }
}

bool Kiv_Header::hasCreatePropertyPrivs()
{
    Bnd_ListenerBase setting(QLatin1String(cNewColumnPrivilege),
                             Bnd_ConnectionEnvironment::blankEnvironment());
    QString value = QStringLiteral("false");
    Bnd_Variant read;
    if (setting.isConnectedToModel()
        && setting.SendMessageToModel(Bndt_SimpleValue_BaseAPI::MsgGetVariant(&read))) {
        if (const bool *flag = read.get<bool>())
            value = *flag ? QStringLiteral("true") : QStringLiteral("false");
        else if (const QString *text = read.get<QString>())
            value = *text;
    }
    return value == QLatin1String("true");
}
