#include "Kiv_ColumnsModel.h"

#include "Bnde_ActionModel.h"
#include "Bnde_Array.h"
#include "Bnde_Container.h"
#include "Bnde_SimpleValue.h"

#include <QDebug>

#include <algorithm>

struct Kiv_ColumnsModel::Models
{
    explicit Models(const QString &iBaseName)
        : root(iBaseName)
    { }

    Bnde_Container root;
    Bnde_Array<long> *sortedVisible = nullptr;
    Bnde_Array<long> *hidden = nullptr;
    Bnde_Array<long> *identifier = nullptr;
    Bnde_Array<long> *width = nullptr;
    Bnde_Array<long> *minWidth = nullptr;
    Bnde_Array<QString> *label = nullptr;
    Bnde_Array<bool> *canHide = nullptr;
    Bnde_Array<bool> *visible = nullptr;
    Bnde_Array<bool> *isSorted = nullptr;
    Bnde_Array<bool> *isSortedAscending = nullptr;
    Bnde_Array<long> *viewType = nullptr;
    Bnde_Array<bool> *readOnly = nullptr;
    Bnde_Array<QString> *environmentVars = nullptr;
    Bnde_ActionArray *hideColumn = nullptr;
    Bnde_ActionArray *showColumn = nullptr;
    Bnde_ActionArray *sortByColumn = nullptr;
    Bnde_SimpleValue<long> *columnBeingDragged = nullptr;
    Bnde_ActionModelWithType<Bndt_Action<void(long)>> *addNewColumn = nullptr;
};

Kiv_ColumnsModel::Kiv_ColumnsModel(const QString &iBaseName)
    : mBaseName(iBaseName)
    , mModels(std::make_unique<Models>(iBaseName))
{
    Models &m = *mModels;
    Bnde_Container &root = m.root;
    m.sortedVisible = root.add<Bnde_Array<long>>(QStringLiteral("sortedVisibleColumns"));
    m.hidden = root.add<Bnde_Array<long>>(QStringLiteral("hiddenColumns"));
    m.identifier = root.add<Bnde_Array<long>>(QStringLiteral("identifier"));
    m.width = root.add<Bnde_Array<long>>(QStringLiteral("width"));
    m.minWidth = root.add<Bnde_Array<long>>(QStringLiteral("minWidth"));
    m.label = root.add<Bnde_Array<QString>>(QStringLiteral("label"));
    m.canHide = root.add<Bnde_Array<bool>>(QStringLiteral("canHide"));
    m.visible = root.add<Bnde_Array<bool>>(QStringLiteral("visible"));
    m.isSorted = root.add<Bnde_Array<bool>>(QStringLiteral("isSorted"));
    m.isSortedAscending = root.add<Bnde_Array<bool>>(QStringLiteral("isSortedAscending"));
    m.viewType = root.add<Bnde_Array<long>>(QStringLiteral("viewType"));
    m.readOnly = root.add<Bnde_Array<bool>>(QStringLiteral("readOnly"));
    m.environmentVars = root.add<Bnde_Array<QString>>(QStringLiteral("connectionEnvironmentVars"));
    m.hideColumn = root.add<Bnde_ActionArray>(
        QStringLiteral("hideColumn"), 0L,
        [this](long iColumn, const Bnd_ArgList &, Bnd_Variant *) { hideColumn(iColumn); });
    m.showColumn = root.add<Bnde_ActionArray>(
        QStringLiteral("showColumn"), 0L,
        [this](long iColumn, const Bnd_ArgList &iArgs, Bnd_Variant *) {
            const long *position = iArgs.size() == 1 ? iArgs.front().get<long>() : nullptr;
            if (!position) {
                qWarning().noquote() << "Kiv_ColumnsModel::showColumn, column" << iColumn << "of"
                                     << mBaseName << "needs the display position (long)";
                return;
            }
            showColumn(iColumn, *position);
        });
    m.sortByColumn = root.add<Bnde_ActionArray>(
        QStringLiteral("sortByColumn"), 0L,
        [this](long iIndex, const Bnd_ArgList &, Bnd_Variant *) { sortByDisplayIndex(iIndex); });
    m.columnBeingDragged
        = root.add<Bnde_SimpleValue<long>>(QStringLiteral("columnBeingDragged"), -1L);
    root.setSize(0);

    // New columns are offered by the application as a whole, so only a top-level columns model
    // carries the action.
    if (!iBaseName.contains(QLatin1Char('.'))) {
        Bnde_Container *actions = root.add<Bnde_Container>(QStringLiteral("Actions"));
        m.addNewColumn = actions->add<Bnde_ActionModelWithType<Bndt_Action<void(long)>>>(
            QStringLiteral("addNewColumn"), [this](long iPosition) {
                if (mAddColumnCallback.empty())
                    return;
                const AddColumnCallback callback = mAddColumnCallback; // it may replace itself
                callback(iPosition);
            });
        m.addNewColumn->setIsEnabledCB([this] { return !mAddColumnCallback.empty(); });
    }
}

Kiv_ColumnsModel::~Kiv_ColumnsModel() = default;

long Kiv_ColumnsModel::addColumn(const Column &iColumn)
{
    Models &m = *mModels;
    const long column = columnCount();
    m.identifier->append(iColumn.identifier);
    m.width->append(std::max(iColumn.width, iColumn.minWidth));
    m.minWidth->append(iColumn.minWidth);
    m.label->append(iColumn.label);
    m.canHide->append(iColumn.canHide);
    m.visible->append(iColumn.visible);
    m.isSorted->append(false);
    m.isSortedAscending->append(true);
    m.viewType->append(iColumn.viewType);
    m.readOnly->append(iColumn.readOnly);
    m.environmentVars->append(iColumn.environmentVars);
    m.hideColumn->setSize(column + 1);
    m.showColumn->setSize(column + 1);
    m.root.setSize(column + 1);
    if (iColumn.visible) {
        m.sortByColumn->setSize(m.sortedVisible->size() + 1);
        m.sortedVisible->append(column);
    } else {
        m.hidden->append(column);
    }
    return column;
}

long Kiv_ColumnsModel::columnCount() const
{
    return mModels->identifier->size();
}

bool Kiv_ColumnsModel::publish()
{
    if (mModels->root.Publish())
        return true;
    qWarning().noquote() << "Kiv_ColumnsModel::publish, the name" << mBaseName
                         << "is empty or taken";
    return false;
}

void Kiv_ColumnsModel::setAddColumnCallback(const AddColumnCallback &iCallback)
{
    const bool wasEnabled = !mAddColumnCallback.empty();
    mAddColumnCallback = iCallback;
    if (mModels->addNewColumn && wasEnabled != !iCallback.empty())
        mModels->addNewColumn->notifyEnabledChanged();
}

bool Kiv_ColumnsModel::hideColumn(long iColumn)
{
    Models &m = *mModels;
    if (!isColumn(iColumn) || !m.canHide->at(iColumn) || !m.visible->at(iColumn))
        return false;
    const std::vector<long> &order = m.sortedVisible->values();
    const auto found = std::find(order.begin(), order.end(), iColumn);
    const long position = found == order.end() ? -1 : long(found - order.begin());
    m.visible->set(iColumn, false);
    m.hidden->append(iColumn);
    if (position >= 0) {
        // The sort actions follow the visible count before the list's listeners hear of it.
        m.sortByColumn->setSize(m.sortedVisible->size() - 1);
        m.sortedVisible->remove(position);
    }
    return true;
}

bool Kiv_ColumnsModel::showColumn(long iColumn, long iPosition)
{
    Models &m = *mModels;
    if (!isColumn(iColumn) || m.visible->at(iColumn))
        return false;
    const std::vector<long> &hidden = m.hidden->values();
    const auto found = std::find(hidden.begin(), hidden.end(), iColumn);
    m.visible->set(iColumn, true);
    if (found != hidden.end())
        m.hidden->remove(long(found - hidden.begin()));
    const long count = m.sortedVisible->size();
    m.sortByColumn->setSize(count + 1);
    m.sortedVisible->insert(std::clamp(iPosition, 0L, count), iColumn);
    return true;
}

void Kiv_ColumnsModel::sortByDisplayIndex(long iIndex)
{
    Models &m = *mModels;
    if (iIndex < 0 || iIndex >= m.sortedVisible->size())
        return;
    const long column = m.sortedVisible->at(iIndex);
    if (!isColumn(column))
        return;
    const bool wasSorted = m.isSorted->at(column);
    const bool ascending = wasSorted ? !m.isSortedAscending->at(column) : true;
    if (!wasSorted)
        for (long other = 0; other < columnCount(); ++other)
            if (other != column)
                m.isSorted->set(other, false);
    // The direction first, so that a painter never sees the new column with the old direction.
    m.isSortedAscending->set(column, ascending);
    m.isSorted->set(column, true);
    if (mSortCallback.empty())
        return;
    const SortCallback callback = mSortCallback; // it may replace itself
    callback(column, ascending);
}

const std::vector<long> &Kiv_ColumnsModel::visibleColumns() const
{
    return mModels->sortedVisible->values();
}

const std::vector<long> &Kiv_ColumnsModel::hiddenColumns() const
{
    return mModels->hidden->values();
}

long Kiv_ColumnsModel::width(long iColumn) const
{
    return isColumn(iColumn) ? mModels->width->at(iColumn) : 0;
}
