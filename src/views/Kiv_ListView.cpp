#include "Kiv_ListView.h"

#include "Bnd_ConnectionDict.h"
#include "Bnd_Utils.h"
#include "Bndt_Root_Notifications.h"
#include "Kib_Assert.h"
#include "Kiv_BlankView.h"
#include "Kiv_BridgeQScrollArea.h"
#include "Kiv_KeymapMgr.h"
#include "Kiv_ListViewCell.h"
#include "Kiv_RetireLater.h"
#include "Kiv_Script.h"

#include <QApplication>
#include <QDebug>
#include <QDrag>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QRegularExpression>

#include <algorithm>
#include <boost/make_shared.hpp>
#include <climits>

namespace {
// Geometry is computed in 64 bits and clamped to what Qt's int coordinates can hold.
int clampToInt(qint64 iValue)
{
    return int(std::max<qint64>(INT_MIN, std::min<qint64>(INT_MAX, iValue)));
}

// A drag carries at most this many rows: the document holds one element per row.
constexpr long cMaxDragRows = 100000;
} // namespace

/// The ".isSelected" model: an array of bool answering whether row i is selected.
class Kiv_ListView::IsSelectedModel : public Bnd_ModelBase
{
public:
    explicit IsSelectedModel(Kiv_ListView *iList)
        : Bnd_ModelBase(Bndt_Array<bool>::type())
        , mList(iList)
    {
        SetReadOnly(true);
    }

    /// Tells element listeners that rows [first, last] may have changed.
    void notifyRows(long iFirst, long iLast)
    {
        if (listenerCount() > 0 && iFirst <= iLast)
            SendToListeners(Bndt_Array_Notifications::MsgElementsReplaced(
                iFirst, iLast + 1, iLast + 1 - iFirst, mList->mRowCount));
    }

protected:
    void handleMessage(const Bnd_MessageInterface &iMsg) override
    {
        if (const auto *size = iMsg.as<Bndt_Array_API::MsgGetSize>()) {
            if (size->size)
                *size->size = mList->mRowCount;
        } else if (const auto *indexed = iMsg.as<Bndt_Array_API::MsgWithIndex>()) {
            const Bnd_MessageInterface &inner = indexed->inner;
            const bool selected = mList->IsRowSelected(indexed->index);
            if (const auto *get = inner.as<Bndt_SimpleValue_API<bool>::MsgGet>()) {
                if (get->value)
                    *get->value = selected;
            } else if (const auto *variant = inner.as<Bndt_SimpleValue_BaseAPI::MsgGetVariant>()) {
                if (variant->value)
                    *variant->value = Bnd_Variant(selected);
            } else if (const auto *ro = inner.as<Bndt_SimpleValue_BaseAPI::MsgIsReadOnly>()) {
                if (ro->readOnly)
                    *ro->readOnly = true;
            } else {
                iMsg.setStatus(Bnd_Status::ReadOnly);
            }
            inner.setStatus(iMsg.status());
        } else {
            Bnd_ModelBase::handleMessage(iMsg);
        }
    }

private:
    Kiv_ListView *mList;
};

/// The ":SelectionList" model: a set from outside (a script, the host) goes through the list,
/// so its rows are repainted, clamped to the rows there are and announced like a click's.
class Kiv_ListView::SelectionModel
    : public Bnde_SimpleValue<SortedValueList<long>, Bndt_SimpleValue<SortedValueList<long>>>
{
public:
    explicit SelectionModel(Kiv_ListView *iList)
        : mList(iList)
    { }

protected:
    void handleMessage(const Bnd_MessageInterface &iMsg) override
    {
        if (const auto *set = iMsg.as<API::MsgSet>()) {
            mList->takeSelectionFromOutside(set->value);
        } else if (const auto *variant = iMsg.as<Bndt_SimpleValue_BaseAPI::MsgSetVariant>()) {
            if (const auto *list = variant->value.get<SortedValueList<long>>())
                mList->takeSelectionFromOutside(*list);
            else
                iMsg.setStatus(Bnd_Status::WrongType);
        } else {
            Bnde_SimpleValue::handleMessage(iMsg);
        }
    }

private:
    Kiv_ListView *mList;
};

Kiv_ListView::RowViewCall::RowViewCall(Kiv_ListView *iList)
    : mList(iList)
    , mAlive(iList->mAliveP)
{
    ++mList->mRowViewCalls;
}

Kiv_ListView::RowViewCall::~RowViewCall()
{
    if (*mAlive && --mList->mRowViewCalls == 0)
        mList->mRetiredRowViews.clear();
}

Kiv_ListView::Kiv_ListView()
{
    setName(QStringLiteral("ListView"));
    mDragActionMap.emplace_back(Qt::ControlModifier, Qt::CopyAction);
    init();
    SetRowView(nullptr);
}

Kiv_ListView::Kiv_ListView(const Kiv_ListView &iOther)
    : Kiv_ViewContainerInterface(iOther)
    , Kiv_ViewBase(iOther)
{
    init();
    *this = iOther;
}

Kiv_ListView &Kiv_ListView::operator=(const Kiv_ListView &iOther)
{
    if (this == &iOther)
        return *this;
    mDefaultDragAction = iOther.mDefaultDragAction;
    mDragModifierMask = iOther.mDragModifierMask;
    mDragActionMap = iOther.mDragActionMap;
    mListName = iOther.mListName;
    mSelectionMode = iOther.mSelectionMode;
    mLedgerShading = iOther.mLedgerShading;
    mLedgerHighlight = iOther.mLedgerHighlight;
    mLedgerBackground = iOther.mLedgerBackground;
    mSelectionBackground = iOther.mSelectionBackground;
    mBackground = iOther.mBackground;
    mFont = iOther.mFont;
    mEnterAction = iOther.mEnterAction;
    mSelectionAction = iOther.mSelectionAction;
    SetRowView(iOther.mRowViewP ? iOther.mRowViewP->clone().release() : nullptr);
    return *this;
}

Kiv_ListView::~Kiv_ListView()
{
    *mAliveP = false;
    if (mRowViewCalls > 0) {
        // Destroyed from inside a row view's handler (its script closed the window): the row
        // views outlive the call.
        Kiv_RetireLater::view(std::move(mRowViewP));
        for (auto &view : mRetiredRowViews)
            Kiv_RetireLater::view(std::move(view));
    }
    // The row views may talk to their container as they go.
    mRowViewP.reset();
    mRetiredRowViews.clear();
}

void Kiv_ListView::init()
{
    setAcceptsFocus(true);
    mCurrentRowName = Bnd_Utils::Bnd_UniqueConnString(
        QStringLiteral("Kiv_ListView%1::currentRow").arg(quintptr(this), 0, 16));
    mCurrentRow.SetConnectionName(mCurrentRowName);
    mCurrentRow.setValueQuietly(-1);
    mCurrentRow.Publish(&Bnd_ConnectionDict::Singleton());
    mLastSelection.setValueQuietly(-1);
    mSelectionListP = std::make_unique<SelectionModel>(this);
    mIsSelectedP = std::make_unique<IsSelectedModel>(this);
    mListListenerP = std::make_unique<Bnd_ListenerBase>();
    mListListenerP->setReceiveMessageCB(
        [this](const Bnd_MessageInterface &iMsg) { receiveListMessage(iMsg); });
}

// ---------------------------------------------------------------------------------------------
// Binding

void Kiv_ListView::SetListConnectionName(const QString &iName)
{
    mListName = iName;
}

void Kiv_ListView::SetRowView(Kiv_ViewInterface *iRowView)
{
    std::unique_ptr<Kiv_ViewInterface> view(iRowView);
    if (!view)
        view = std::make_unique<Kiv_BlankView>(QSize(100, 20));
    if (view->getParent()) {
        qWarning() << "Kiv_ListView::SetRowView, the view already has a container; left there";
        view.release();
        return;
    }
    // A row view that is handling an event (whose handler replaced it) goes when it returns.
    if (mRowViewCalls > 0 && mRowViewP)
        mRetiredRowViews.push_back(std::move(mRowViewP));
    mRowViewP = std::move(view);
    mRowViewP->setParent(this);
    if (mRowEnv)
        mRowViewP->makeConnections(mRowEnv);
    if (Kiv_ViewContainerInterface *parent = getParent())
        parent->childSizeChanged(this, getSize(), getSize());
}

Bnd_ConnectionEnvironmentPtr
Kiv_ListView::getCellConnectionEnv(const Bnd_ConnectionEnvironmentPtr &iEnv) const
{
    const Bnd_ConnectionEnvironmentPtr parent
        = iEnv ? iEnv : Bnd_ConnectionEnvironment::blankEnvironment();
    auto env = boost::make_shared<Bnd_ConnectionEnvironment>(parent, parent->service());
    env->set(QStringLiteral("Row"), mCurrentRowName);
    return env;
}

void Kiv_ListView::setEnterActionString(const QString &iScript)
{
    mEnterAction = iScript;
}

void Kiv_ListView::setSelectionActionString(const QString &iScript)
{
    mSelectionAction = iScript;
}

void Kiv_ListView::makeConnections(Bnd_ConnectionEnvironmentPtr iEnv)
{
    if (!iEnv)
        iEnv = Bnd_ConnectionEnvironment::blankEnvironment();
    Kiv_ViewBase::makeConnections(iEnv);
    // 1. The row view reads the row the current-row model names.
    mRowEnv = getCellConnectionEnv(iEnv);
    mRowViewP->makeConnections(mRowEnv);
    // 2. The array.
    mListListenerP->ClearConnection();
    if (!mListName.isEmpty()) {
        mListListenerP->SetConnectionName(mListName);
        mListListenerP->connect(iEnv);
    }
    // 3. The selection, published next to the array.
    mSelectionListP->UnPublish();
    mLastSelection.UnPublish();
    mIsSelectedP->UnPublish();
    if (!mListName.isEmpty()) {
        mSelectionListP->SetConnectionName(mListName + QLatin1String(":SelectionList"));
        mSelectionListP->publish(iEnv);
        mLastSelection.SetConnectionName(mListName + QLatin1String(":LastSelection"));
        mLastSelection.publish(iEnv);
        mLastSelection.setValue(-1);
        mIsSelectedP->SetConnectionName(mListName + QLatin1String(".isSelected"));
        mIsSelectedP->publish(iEnv);
    }
    // 4. The scripts run in the row environment.
    sendScriptsTo(mRowEnv);
}

void Kiv_ListView::sendScriptsTo(const Bnd_ConnectionEnvironmentPtr &iEnv)
{
    const auto make = [&](const QString &iText, std::unique_ptr<Kiv_Script> &oScript) {
        oScript.reset();
        if (iText.isEmpty())
            return;
        oScript = std::make_unique<Kiv_Script>();
        if (oScript->setText(iText))
            oScript->connect(iEnv, getBridgeWidget());
        if (!oScript->hasScript())
            qWarning().noquote() << "Kiv_ListView::makeConnections, the script" << iText << "of"
                                 << getName() << "does not parse or connect";
    };
    make(mEnterAction, mEnterScriptP);
    make(mSelectionAction, mSelectionScriptP);
}

void Kiv_ListView::receiveListMessage(const Bnd_MessageInterface &iMsg)
{
    if (const auto *c = iMsg.as<Bndt_Root_Notifications::MsgConnectedChanged>()) {
        std::shared_ptr<bool> alive = mAliveP;
        SetSelected(-1);
        if (!*alive)
            return;
        long size = 0;
        if (c->connected)
            mListListenerP->SendMessageToModel(Bndt_Array_API::MsgGetSize(&size));
        setRowCount(size);
        if (Kiv_ViewContainerInterface *parent = getParent())
            parent->childSizeChanged(this, getSize(), getSize());
        sendAllBitsChanged();
    } else if (const auto *r = iMsg.as<Bndt_Array_Notifications::MsgElementsReplaced>()) {
        setRowCount(r->newSize);
        if (getSelectedList().last() >= r->newSize) {
            SortedValueList<long> kept = getSelectedList();
            kept.removeFrom(r->newSize);
            storeSelection(kept); // announced last
        }
        Kiv_ViewContainerInterface *parent = getParent();
        const qint64 h = getCellHeight();
        const long d = r->count - (r->end - r->first);
        if (parent && d > 0)
            parent->childInsertedRow(this, clampToInt(h * r->end), clampToInt(h * d));
        else if (parent && d < 0)
            parent->childDeletedRow(this, clampToInt(h * (r->end + d)), clampToInt(-h * d));
        const long absD = d < 0 ? -d : d;
        if (parent && r->end - r->first + absD >= 1) {
            const qint64 top = h * r->first;
            parent->childBitsChanged(
                this, QRect(0, clampToInt(top), getWidth(), clampToInt(h * (r->end + absD) - top)),
                false);
        }
        announceSelection(); // last: a listener may destroy this list
    } else if (const auto *m = iMsg.as<Bndt_Array_Notifications::MsgElementsMoved>()) {
        repaintRows(std::min(m->from, m->to), std::max(m->from, m->to));
    }
}

void Kiv_ListView::setRowCount(long iCount)
{
    mRowCount = std::max(0L, iCount);
}

// ---------------------------------------------------------------------------------------------
// Selection

void Kiv_ListView::setSelectionMode(SelectionMode iMode)
{
    mSelectionMode = iMode;
    storeSelection(SortedValueList<long>());
    announceSelection();
}

void Kiv_ListView::takeSelectionFromOutside(SortedValueList<long> iList)
{
    iList.removeFrom(mRowCount);
    if (!iList.isEmpty() && iList.first() < 0)
        iList.removeRange(iList.first(), -1);
    storeSelection(iList);
    announceSelection();
}

const SortedValueList<long> &Kiv_ListView::getSelectedList() const
{
    return mSelectionListP->getValue();
}

long Kiv_ListView::GetRowSelectionListSize() const
{
    return getSelectedList().size();
}

long Kiv_ListView::GetFirstRowSelection() const
{
    return getSelectedList().first();
}

long Kiv_ListView::GetNextRowSelection(long iRow) const
{
    return getSelectedList().nextAfter(iRow);
}

bool Kiv_ListView::IsRowSelected(long iRow) const
{
    return getSelectedList().contains(iRow);
}

bool Kiv_ListView::SetSelected(long iRow, bool iAll, Qt::KeyboardModifiers iModifiers)
{
    long row = iRow >= mRowCount ? mRowCount - 1 : iRow;
    if (row < 0)
        row = -1;
    if (mSelectionMode == SelectNone)
        return true;
    SortedValueList<long> list = getSelectedList();
    const bool ctrl = iModifiers & Qt::ControlModifier;
    const bool shift = iModifiers & Qt::ShiftModifier;
    if (iAll) {
        if (mSelectionMode == SelectMulti || mSelectionMode == SelectExtended)
            TotalSelection(list);
    } else if ((mSelectionMode == SelectMulti && ctrl)
               || (mSelectionMode == SelectExtended && ctrl && !shift)) {
        MultiSelection(row, list);
    } else if (mSelectionMode == SelectExtended && shift) {
        ExtendedSelection(row, list);
    } else {
        SingleSelection(row, list);
    }
    storeSelection(list);
    if (row >= 0) {
        const int h = getCellHeight();
        if (auto *area = dynamic_cast<Kiv_BridgeQScrollArea *>(getParent()))
            area->ensureRectVisible(
                QRect(area->contentsOffset().x(), clampToInt(qint64(h) * row), 0, h));
        setCurrentRow(row);
    }
    if (announceSelection())
        runSelectionScript(); // may destroy this list: nothing may follow
    return true;
}

void Kiv_ListView::SingleSelection(long iRow, SortedValueList<long> &ioList)
{
    ioList.clear();
    if (iRow >= 0)
        ioList.insert(iRow);
    storeSelection(ioList);
    setAnchor(iRow);
}

void Kiv_ListView::MultiSelection(long iRow, SortedValueList<long> &ioList)
{
    if (iRow < 0) {
        ioList.clear();
        setAnchor(-1);
    } else if (ioList.insert(iRow)) {
        setAnchor(iRow);
    } else {
        ioList.remove(iRow);
        setAnchor(-1);
    }
}

void Kiv_ListView::ExtendedSelection(long iRow, SortedValueList<long> &ioList)
{
    if (iRow < 0) {
        ioList.clear();
        setAnchor(-1);
        return;
    }
    const long from = anchor();
    if (from < 0)
        return;
    const long lo = std::min(from, iRow);
    const long hi = std::max(from, iRow);
    if (!ioList.isEmpty()) {
        ioList.removeRange(ioList.first(), lo - 1);
        ioList.removeRange(hi + 1, ioList.last());
    }
    ioList.insertRange(std::max(0L, lo), std::min(hi, mRowCount - 1));
}

void Kiv_ListView::TotalSelection(SortedValueList<long> &ioList)
{
    if (mRowCount <= 0 || ioList.insertRange(0, mRowCount - 1) == 0)
        ioList.clear();
}

void Kiv_ListView::setAnchor(long iRow)
{
    if (mLastSelection.getValue() == iRow)
        return;
    mLastSelection.setValueQuietly(iRow);
    mPending.anchor = true;
}

bool Kiv_ListView::announceSelection()
{
    const std::shared_ptr<bool> alive = mAliveP;
    const PendingNotes pending = mPending;
    mPending = PendingNotes();
    if (pending.anchor) {
        mLastSelection.notifyValueChanged();
        if (!*alive)
            return false;
    }
    if (pending.list) {
        mIsSelectedP->notifyRows(pending.first, pending.last);
        if (!*alive)
            return false;
        mSelectionListP->notifyValueChanged();
        if (!*alive)
            return false;
    }
    return true;
}

void Kiv_ListView::storeSelection(const SortedValueList<long> &iList)
{
    const SortedValueList<long> &old = getSelectedList();
    if (old == iList)
        return;
    // Only the rows on screen whose state changes are repainted, whatever the selection's size.
    auto *area = dynamic_cast<Kiv_BridgeQScrollArea *>(getParent());
    const int h = getCellHeight();
    if (area && h > 0) {
        const qint64 top = area->contentsOffset().y();
        const long first = long(top / h);
        const long last = std::min(mRowCount - 1, long((top + area->visibleHeight()) / h));
        for (long row = first; row <= last; ++row)
            if (old.contains(row) != iList.contains(row))
                CellUpdate(row);
    } else {
        sendAllBitsChanged();
    }
    for (const SortedValueList<long> *l : { &old, &iList })
        if (!l->isEmpty()) {
            mPending.first = mPending.first < 0 ? l->first() : std::min(mPending.first, l->first());
            mPending.last = std::max(mPending.last, l->last());
        }
    mPending.list = true;
    mSelectionListP->setValueQuietly(iList);
}

void Kiv_ListView::runSelectionScript()
{
    if (mSelectionScriptP && mSelectionScriptP->hasScript())
        mSelectionScriptP->run(); // may destroy this list: nothing may follow
}

bool Kiv_ListView::hasSelectionScript() const
{
    return mSelectionScriptP && mSelectionScriptP->hasScript();
}

void Kiv_ListView::changeSelection(int iKey)
{
    long row = -1;
    switch (iKey) {
    case Qt::Key_Home:
        row = 0;
        break;
    case Qt::Key_End:
        row = mRowCount - 1;
        break;
    case Qt::Key_Up: {
        const long first = GetFirstRowSelection();
        row = first >= 1 ? first - 1 : mRowCount - 1;
        break;
    }
    case Qt::Key_Down: {
        const long last = getSelectedList().last();
        row = last >= 0 && last + 1 < mRowCount ? last + 1 : 0;
        break;
    }
    default:
        return;
    }
    SetSelected(row, false, Qt::NoModifier);
}

// ---------------------------------------------------------------------------------------------
// Geometry and painting

int Kiv_ListView::getCellHeight() const
{
    return mRowViewP ? mRowViewP->getHeight() : 0;
}

void Kiv_ListView::setCellHeight(int iHeight)
{
    if (!mRowViewP || iHeight == mRowViewP->getHeight())
        return;
    const QSize old = getSize();
    mRowViewP->setSize(QSize(mRowViewP->getWidth(), iHeight));
    if (Kiv_ViewContainerInterface *parent = getParent())
        parent->childSizeChanged(this, getSize(), old);
}

bool Kiv_ListView::CellContaining(long iY, long *oRow) const
{
    const int h = getCellHeight();
    const long row = h > 0 ? iY / h : -1;
    if (oRow)
        *oRow = row;
    return row < mRowCount;
}

void Kiv_ListView::CellUpdate(long iRow)
{
    if (iRow < 0 || iRow >= mRowCount)
        return;
    if (Kiv_ViewContainerInterface *parent = getParent()) {
        const qint64 h = getCellHeight();
        parent->childBitsChanged(this, QRect(0, clampToInt(h * iRow), getWidth(), int(h)), false);
    }
}

void Kiv_ListView::repaintRows(long iFirst, long iLast)
{
    Kiv_ViewContainerInterface *parent = getParent();
    if (!parent || iLast < iFirst)
        return;
    const qint64 h = getCellHeight();
    parent->childBitsChanged(
        this, QRect(0, clampToInt(h * iFirst), getWidth(), clampToInt(h * (iLast - iFirst + 1))),
        false);
}

QPoint Kiv_ListView::rowOrigin(long iRow) const
{
    return QPoint(0, clampToInt(qint64(getCellHeight()) * iRow));
}

void Kiv_ListView::setCurrentRow(long iRow)
{
    mCurrentRow.setValueQuietly(iRow);
    if (mRowViewP) {
        mRowViewP->setOrigin(rowOrigin(iRow));
        mRowViewP->setName(QStringLiteral("RowView(%1)").arg(iRow));
    }
}

QColor Kiv_ListView::GetLedgerShadeIndexColor(int iRow) const
{
    return iRow / 2 != (iRow + 1) / 2 ? mLedgerHighlight : mLedgerBackground;
}

void Kiv_ListView::paintCell(QPainter *iPainter, const QRect &iRect, long iRow)
{
    if (!iPainter) {
        Kib_Assert::handleFailedAssert(
            "iPainterP && \"Kiv_ListView::paintCell - Cannot draw because painter is a null "
            "object!\"",
            "coresw/UIF/Kiv/Kiv_ListView", __LINE__);
        return;
    }
    setCurrentRow(iRow);
    const QPoint origin = mRowViewP->getOrigin();
    iPainter->save();
    iPainter->translate(origin);
    const QColor background = IsRowSelected(iRow) ? mSelectionBackground
        : mLedgerShading                          ? GetLedgerShadeIndexColor(int(iRow))
                                                  : mBackground;
    const QRect rowRect = mRowViewP->getLocalDrawingRect();
    iPainter->fillRect(QRect(0, 0, std::max(rowRect.width(), getWidth()), rowRect.height()),
                       background);
    long size = 0;
    mListListenerP->SendMessageToModel(Bndt_Array_API::MsgGetSize(&size));
    if (iRow >= 0 && iRow < size) {
        const QRect clip = rowRect.intersected(iRect.translated(-origin));
        if (!clip.isEmpty()) {
            iPainter->setClipRect(clip);
            iPainter->setFont(mFont);
            mRowViewP->drawContents(iPainter, clip);
        }
    }
    iPainter->restore();
}

void Kiv_ListView::drawContents(QPainter *iPainter, const QRect &iRect)
{
    if (!iPainter) {
        paintCell(iPainter, iRect, -1); // asserts
        return;
    }
    const int h = getCellHeight();
    if (h <= 0) {
        iPainter->fillRect(iRect, mBackground);
        return;
    }
    const long first = std::max(0, iRect.top()) / h;
    const long last = std::max(0, iRect.bottom()) / h;
    for (long row = first; row <= last; ++row)
        paintCell(iPainter, iRect, row);
}

int Kiv_ListView::viewportHeight() const
{
    QWidget *port = const_cast<Kiv_ListView *>(this)->getBridgeWidget();
    return port ? port->height() : mPortSize.height();
}

void Kiv_ListView::adjustToPortSize()
{
    if (QWidget *port = getBridgeWidget())
        mPortSize = port->size();
}

int Kiv_ListView::getWidth() const
{
    return std::max(mPortSize.width(), mRowViewP ? mRowViewP->getWidth() : 0);
}

int Kiv_ListView::getHeight() const
{
    return std::max(mPortSize.height(), clampToInt(qint64(getCellHeight()) * mRowCount));
}

QSize Kiv_ListView::getSize() const
{
    return QSize(getWidth(), getHeight());
}

void Kiv_ListView::setSize(const QSize &iSize)
{
    Kiv_ViewBase::setSize(iSize);
    adjustToPortSize();
}

QSize Kiv_ListView::getMinSize() const
{
    return QSize(mRowViewP ? mRowViewP->getMinSize().width() : 0,
                 clampToInt(qint64(getCellHeight()) * mRowCount));
}

std::unique_ptr<Kiv_ViewInterface> Kiv_ListView::clone() const
{
    return std::unique_ptr<Kiv_ViewInterface>(new Kiv_ListView(*this));
}

// ---------------------------------------------------------------------------------------------
// Names, tool tips

QString Kiv_ListView::findUiName(const QPoint &iPos)
{
    long row = -1;
    if (!CellContaining(iPos.y(), &row) || row < 0)
        return getName();
    setCurrentRow(row);
    const RowViewCall call(this);
    return getName() + QLatin1Char('.') + mRowViewP->findUiName(iPos - mRowViewP->getOrigin());
}

bool Kiv_ListView::findItem(const QString &iName, QPoint *oWhere)
{
    // "ListView.RowView(12).column3": the row between the brackets, then the row view's part.
    static const QRegularExpression firstComponent(QStringLiteral("^[^.]+[.]"));
    if (iName.section(QLatin1Char('.'), 0, 0) != getName())
        return iName == getName() && Kiv_ViewBase::findItem(iName, oWhere);
    QString rest = iName;
    rest.remove(firstComponent);
    const int open = rest.indexOf(QLatin1Char('('));
    const int close = rest.indexOf(QLatin1Char(')'));
    bool isNumber = false;
    const long row
        = open >= 0 && close > open ? rest.mid(open + 1, close - open - 1).toLong(&isNumber) : -1;
    if (!isNumber || row < 0 || row >= mRowCount)
        return false;
    setCurrentRow(row);
    const RowViewCall call(this);
    if (rest.section(QLatin1Char('.'), 0, 0) != mRowViewP->getName())
        return false;
    QPoint where;
    if (!mRowViewP->findItem(rest, &where))
        return false;
    if (oWhere)
        *oWhere = where + mRowViewP->getOrigin();
    return true;
}

bool Kiv_ListView::getToolTip(const QPoint &iPos, QRect *oTipRect, QString *oTipString)
{
    long row = -1;
    if (!CellContaining(iPos.y(), &row) || row < 0)
        return false;
    setCurrentRow(row);
    const QPoint origin = mRowViewP->getOrigin();
    const RowViewCall call(this);
    if (!mRowViewP->getToolTip(iPos - origin, oTipRect, oTipString))
        return false;
    if (!oTipRect) {
        Kib_Assert::handleFailedAssert("oTipRect", "coresw/UIF/Kiv/Kiv_ListView", __LINE__);
        return true;
    }
    oTipRect->translate(origin);
    return true;
}

// ---------------------------------------------------------------------------------------------
// Mouse

long Kiv_ListView::rowAt(const QPoint &iPos, QPoint *oInRow) const
{
    long row = -1;
    if (!CellContaining(iPos.y(), &row) || row < 0)
        return -1;
    if (oInRow)
        *oInRow = iPos - rowOrigin(row);
    return row;
}

void Kiv_ListView::mousePressEvent(QMouseEvent *iEvent, const QPoint &iPos)
{
    const std::shared_ptr<bool> alive = mAliveP;
    QPoint inRow;
    const long row = rowAt(iPos, &inRow);
    if (iEvent->button() == Qt::RightButton) {
        if (row < 0)
            SetSelected(-1);
        else if (!IsRowSelected(row))
            SetSelected(row, false, Qt::NoModifier);
        if (!*alive || row < 0)
            return;
        setCurrentRow(row);
        const RowViewCall call(this);
        mRowViewP->mousePressEvent(iEvent, inRow);
        return;
    }
    mMovedSincePress = false;
    mClickDeselect = false;
    mDragArmed = false;
    if (QWidget *port = getBridgeWidget()) {
        port->setFocusPolicy(Qt::StrongFocus);
        port->setFocus(Qt::MouseFocusReason);
    }
    if (row < 0) {
        SetSelected(-1);
        return;
    }
    setCurrentRow(row);
    const bool handle = mRowViewP->canDrag(inRow);
    if (handle && IsRowSelected(row))
        mClickDeselect = true; // a plain click on it at the release selects it alone
    else
        SetSelected(row, false, iEvent->modifiers());
    if (!*alive)
        return;
    if (handle && IsRowSelected(row)) {
        mDragArmed = true;
        mPressGlobal = iEvent->globalPosition().toPoint();
        mPressLocal = iPos;
    }
    setCurrentRow(row);
    const RowViewCall call(this);
    mRowViewP->mousePressEvent(iEvent, inRow);
}

void Kiv_ListView::mouseReleaseEvent(QMouseEvent *iEvent, const QPoint &iPos)
{
    const std::shared_ptr<bool> alive = mAliveP;
    QPoint pos = iPos;
    if (mDragArmed) {
        mDragArmed = false;
        pos = mPressLocal;
    }
    QPoint inRow;
    const long row = rowAt(pos, &inRow);
    if (mClickDeselect && !mMovedSincePress) {
        mClickDeselect = false;
        SetSelected(row, false, iEvent->modifiers());
        if (!*alive)
            return;
    }
    mClickDeselect = false;
    if (row >= 0) {
        setCurrentRow(row);
        const RowViewCall call(this);
        mRowViewP->mouseReleaseEvent(iEvent, inRow);
    }
}

void Kiv_ListView::mouseMoveEvent(QMouseEvent *iEvent, const QPoint &iPos)
{
    if (!mDragArmed) {
        QPoint inRow;
        const long row = rowAt(iPos, &inRow);
        if (row >= 0) {
            setCurrentRow(row);
            const RowViewCall call(this);
            mRowViewP->mouseMoveEvent(iEvent, inRow);
        }
        return;
    }
    const Qt::DropAction action = getDragAction(iEvent);
    // A press whose release never came (a dialog took it) arms nothing any more.
    if (action == Qt::IgnoreAction || !(iEvent->buttons() & Qt::LeftButton)
        || rowAt(mPressLocal, nullptr) < 0) {
        mDragArmed = false;
        return;
    }
    const QPoint moved = iEvent->globalPosition().toPoint() - mPressGlobal;
    if (std::abs(moved.x()) < cDragThreshold && std::abs(moved.y()) < cDragThreshold)
        return; // a hand's jitter is still a click
    mMovedSincePress = true;
    mDragArmed = false;
    startDragOfSelection(mPressLocal, action);
}

void Kiv_ListView::mouseDoubleClickEvent(QMouseEvent *iEvent, const QPoint &iPos)
{
    QPoint inRow;
    const long row = rowAt(iPos, &inRow);
    if (row < 0)
        return;
    setCurrentRow(row);
    const RowViewCall call(this);
    mRowViewP->mouseDoubleClickEvent(iEvent, inRow);
}

void Kiv_ListView::dragMoveEvent(QDragMoveEvent *iEvent, const QPoint &iPos)
{
    QPoint inRow;
    const long row = rowAt(iPos, &inRow);
    if (row < 0)
        return;
    setCurrentRow(row);
    const RowViewCall call(this);
    mRowViewP->dragMoveEvent(iEvent, inRow);
}

void Kiv_ListView::dropEvent(QDropEvent *iEvent, const QPoint &iPos)
{
    QPoint inRow;
    const long row = rowAt(iPos, &inRow);
    if (row < 0)
        return;
    setCurrentRow(row);
    const RowViewCall call(this);
    mRowViewP->dropEvent(iEvent, inRow);
}

// ---------------------------------------------------------------------------------------------
// Drags

void Kiv_ListView::setDragActionMap(Qt::DropAction iDefault, Qt::KeyboardModifiers iMask,
                                    const DragActionMap &iMap)
{
    mDefaultDragAction = iDefault;
    mDragModifierMask = iMask;
    mDragActionMap = iMap;
}

Qt::DropAction Kiv_ListView::getDragAction(QMouseEvent *iEvent)
{
    const Qt::KeyboardModifiers m = mDragModifierMask & iEvent->modifiers();
    if (m == Qt::NoModifier || mDragActionMap.empty())
        return mDefaultDragAction;
    for (const auto &rule : mDragActionMap)
        if ((rule.first & m) == rule.first)
            return rule.second;
    return mDefaultDragAction;
}

void Kiv_ListView::foldDragImage(QPixmap &ioImage, const QPixmap &iItem, long iK, long iN)
{
    if (iK <= 1) {
        ioImage = iItem;
        return;
    }
    QPixmap addition;
    if (iK < 10 || iN == 10) {
        addition = iItem;
    } else if (iK == 10) {
        QFont font = QApplication::font();
        font.setPointSize(12);
        const QFontMetrics metrics(font);
        const QString text = QStringLiteral("... (+%1)").arg(iN - 9);
        addition = QPixmap(std::max(ioImage.width(), metrics.horizontalAdvance(text) + 6),
                           metrics.height());
        addition.fill(QColor(Qt::color0));
        QPainter painter(&addition);
        painter.setFont(font);
        painter.setPen(QColor(Qt::color1));
        painter.drawText(3, metrics.ascent(), text);
    } else {
        return;
    }
    QPixmap folded(std::max(ioImage.width(), addition.width()),
                   ioImage.height() + addition.height());
    folded.fill(Qt::transparent);
    QPainter painter(&folded);
    painter.drawPixmap(0, 0, ioImage);
    painter.drawPixmap(0, ioImage.height(), addition);
    painter.end();
    ioImage = folded;
}

QDomDocument Kiv_ListView::makeDragDocument(const QPoint &iPress, QPixmap *oImage)
{
    const RowViewCall call(this);
    QDomDocument document;
    QDomElement root = document.createElement(QStringLiteral("mobIDDragObjectList"));
    document.appendChild(root);
    const SortedValueList<long> selection = getSelectedList();
    const long n = selection.size();
    const int h = std::max(1, getCellHeight());
    QPixmap image;
    long k = 0;
    for (long row : selection) {
        ++k;
        setCurrentRow(row);
        const QPoint at(mRowViewP->getOrigin().x() + iPress.x(), iPress.y() % h);
        QDomElement element;
        if (k <= 10) {
            QPixmap item;
            element = mRowViewP->getDragData(at, document, item);
            foldDragImage(image, item, k, n);
        } else {
            element = mRowViewP->getDragElement(at, document);
        }
        if (!element.isNull()) {
            if (!element.hasAttribute(QStringLiteral("row")))
                element.setAttribute(QStringLiteral("row"), QString::number(row));
            root.appendChild(element);
        }
    }
    if (oImage)
        *oImage = image;
    return document;
}

void Kiv_ListView::startDrag(const QPoint &iPos)
{
    startDragOfSelection(iPos, mDefaultDragAction);
}

void Kiv_ListView::startDragOfSelection(const QPoint &iPress, Qt::DropAction iAction)
{
    mClickDeselect = false;
    const long n = GetRowSelectionListSize();
    if (n > cMaxDragRows) {
        qWarning().nospace() << "Kiv_ListView::startDrag, " << n << " rows of " << getName()
                             << " are selected; a drag carries at most " << cMaxDragRows;
        return;
    }
    QPixmap image;
    const QDomDocument document = makeDragDocument(iPress, &image);
    auto *data = new QMimeData;
    data->setText(document.toString(1));
    execDrag(data, image, iAction);
}

void Kiv_ListView::execDrag(QMimeData *iData, const QPixmap &iImage, Qt::DropAction iAction)
{
    QWidget *source = getBridgeWidget();
    if (!source) {
        delete iData;
        return;
    }
    auto *drag = new QDrag(source);
    drag->setMimeData(iData);
    if (!iImage.isNull()) {
        drag->setPixmap(iImage);
        drag->setHotSpot(QPoint(std::min(mPressLocal.x(), iImage.width() - 1),
                                mPressLocal.y() % std::max(1, getCellHeight())));
    }
    drag->exec(Qt::CopyAction | Qt::MoveAction | Qt::LinkAction, iAction);
}

// ---------------------------------------------------------------------------------------------
// Keys

void Kiv_ListView::keyPressEvent(QKeyEvent *iEvent)
{
    if (mSelectionMode == SelectNone
        || Kiv_KeymapMgr::getInstance()->hasAction(iEvent, QStringLiteral("MainWindow"))) {
        iEvent->ignore();
        return;
    }
    const int h = std::max(1, getCellHeight());
    const long page = std::max(1, viewportHeight() / h);
    switch (iEvent->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        iEvent->accept();
        if (mEnterScriptP && mEnterScriptP->hasScript()) {
            if (GetFirstRowSelection() >= 0)
                setCurrentRow(GetFirstRowSelection());
            mEnterScriptP->run(); // may destroy this list
        }
        return;
    case Qt::Key_Home:
    case Qt::Key_End:
    case Qt::Key_Up:
    case Qt::Key_Down:
        iEvent->accept();
        changeSelection(iEvent->key());
        return;
    case Qt::Key_PageUp: {
        iEvent->accept();
        const long row = GetFirstRowSelection() - page;
        SetSelected(row < 0 ? 0 : row, false, Qt::NoModifier);
        return;
    }
    case Qt::Key_PageDown: {
        iEvent->accept();
        const long row = GetFirstRowSelection() + page;
        SetSelected(row < mRowCount ? row : mRowCount - 1, false, Qt::NoModifier);
        return;
    }
    case Qt::Key_A:
        if (iEvent->modifiers() & Qt::ControlModifier) {
            iEvent->accept();
            SetSelected(0, true, Qt::NoModifier);
            return;
        }
        break;
    default:
        break;
    }
    iEvent->ignore();
}

// ---------------------------------------------------------------------------------------------
// Looks

void Kiv_ListView::SetBackgroundColor(const QColor &iColor)
{
    mBackground = iColor;
    sendAllBitsChanged();
}

void Kiv_ListView::SetSelectionBackgroundColor(const QColor &iColor)
{
    mSelectionBackground = iColor;
    sendAllBitsChanged();
}

void Kiv_ListView::SetLedgerShadeBackgroundColor(const QColor &iColor)
{
    mLedgerBackground = iColor;
    sendAllBitsChanged();
}

void Kiv_ListView::SetLedgerShadeHighlightColor(const QColor &iColor)
{
    mLedgerHighlight = iColor;
    sendAllBitsChanged();
}

void Kiv_ListView::SetFont(const QFont &iFont)
{
    mFont = iFont;
    sendAllBitsChanged();
}

void Kiv_ListView::enableLedgerShading(bool iOn)
{
    mLedgerShading = iOn;
    sendAllBitsChanged();
}

// ---------------------------------------------------------------------------------------------
// The container of the row view

void Kiv_ListView::childSizeChanged(Kiv_ViewInterface *, QSize, QSize)
{
    if (Kiv_ViewContainerInterface *parent = getParent())
        parent->childSizeChanged(this, getSize(), getSize());
}

void Kiv_ListView::childInsertedRow(Kiv_ViewInterface *, int, int)
{
    sendAllBitsChanged();
}

void Kiv_ListView::childDeletedRow(Kiv_ViewInterface *, int, int)
{
    sendAllBitsChanged();
}

void Kiv_ListView::childInsertedColumn(Kiv_ViewInterface *)
{
    if (Kiv_ViewContainerInterface *parent = getParent())
        parent->childInsertedColumn(this);
}

void Kiv_ListView::childBitsChanged(Kiv_ViewInterface *iChild, const QRect &iRect, bool iImmediate)
{
    Kiv_ViewContainerInterface *parent = getParent();
    if (!parent || !iChild)
        return;
    // The row view stands at the row it showed last.
    parent->childBitsChanged(this, iRect.translated(iChild->getOrigin()), iImmediate);
}

QWidget *Kiv_ListView::getBridgeWidget()
{
    Kiv_ViewContainerInterface *parent = getParent();
    return parent ? parent->getBridgeWidget() : nullptr;
}

void Kiv_ListView::overlayChildEditWidget(Kiv_ViewInterface *iChild, QWidget *iEditor, int iX,
                                          int iY)
{
    if (Kiv_ViewContainerInterface *parent = getParent()) {
        const QPoint origin = iChild ? iChild->getOrigin() : QPoint();
        parent->overlayChildEditWidget(this, iEditor, iX + origin.x(), iY + origin.y());
    }
}

Kiv_ListViewCell::~Kiv_ListViewCell() = default;
