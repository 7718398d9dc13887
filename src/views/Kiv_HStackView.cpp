#include "Kiv_HStackView.h"

#include <QPainter>
#include <QPixmap>

#include <algorithm>
#include <boost/make_shared.hpp>
#include <map>

Kiv_HStackView::Kiv_HStackView() = default;

Kiv_HStackView::Kiv_HStackView(const Kiv_HStackView &iOther)
    : Kiv_ContainerViewBase(iOther)
{
    // The base copied the sub-views in its stacking order; find each clone's original.
    std::map<const Kiv_ViewInterface *, Kiv_ViewInterface *> cloneOf;
    auto original = iOther.subViews().begin();
    for (auto copy = subViews().begin();
         copy != subViews().end() && original != iOther.subViews().end(); ++copy, ++original)
        cloneOf[original->second] = copy->second;
    for (const Entry &entry : iOther.mOrder) {
        auto it = cloneOf.find(entry.view);
        if (it != cloneOf.end())
            mOrder.push_back({ it->second, entry.variables, QColor() });
    }
    layoutSubViews();
}

Kiv_HStackView::~Kiv_HStackView()
{
    mOrder.clear();
}

std::unique_ptr<Kiv_ViewInterface> Kiv_HStackView::clone() const
{
    return std::unique_ptr<Kiv_ViewInterface>(new Kiv_HStackView(*this));
}

bool Kiv_HStackView::insertSubView(int iIndex, Kiv_ViewInterface *iView, const QString &iVariables)
{
    if (!AddSubView(iView))
        return false;
    const int index = std::clamp(iIndex, 0, subViewCount());
    mOrder.insert(mOrder.begin() + index, Entry { iView, iVariables, QColor() });
    if (mEnv)
        iView->makeConnections(environmentFor(mOrder[size_t(index)]));
    layoutSubViews();
    return true;
}

bool Kiv_HStackView::appendSubView(Kiv_ViewInterface *iView, const QString &iVariables)
{
    return insertSubView(subViewCount(), iView, iVariables);
}

void Kiv_HStackView::removeSubViewAt(int iIndex)
{
    if (Kiv_ViewInterface *view = subViewAt(iIndex))
        removeView(view);
}

void Kiv_HStackView::removeView(Kiv_ViewInterface *iView)
{
    const int index = indexOf(iView);
    if (index < 0)
        return;
    mOrder.erase(mOrder.begin() + index);
    Kiv_ContainerViewBase::removeView(iView);
    layoutSubViews();
}

void Kiv_HStackView::moveSubView(int iFrom, int iTo)
{
    const int n = subViewCount();
    if (iFrom < 0 || iFrom >= n || iTo < 0 || iTo >= n || iFrom == iTo)
        return;
    if (iFrom < iTo)
        std::rotate(mOrder.begin() + iFrom, mOrder.begin() + iFrom + 1, mOrder.begin() + iTo + 1);
    else
        std::rotate(mOrder.begin() + iTo, mOrder.begin() + iFrom, mOrder.begin() + iFrom + 1);
    layoutSubViews();
    sendAllBitsChanged();
}

Kiv_ViewInterface *Kiv_HStackView::subViewAt(int iIndex) const
{
    return iIndex >= 0 && iIndex < subViewCount() ? mOrder[size_t(iIndex)].view : nullptr;
}

int Kiv_HStackView::indexOf(const Kiv_ViewInterface *iView) const
{
    for (size_t i = 0; i < mOrder.size(); ++i)
        if (mOrder[i].view == iView)
            return int(i);
    return -1;
}

int Kiv_HStackView::indexAt(int iX) const
{
    for (size_t i = 0; i < mOrder.size(); ++i) {
        const QRect r = mOrder[i].view->getRectInParent();
        if (iX >= r.left() && iX <= r.right())
            return int(i);
    }
    return -1;
}

void Kiv_HStackView::setSubViewHeights(int iHeight)
{
    mLayingOut = true;
    for (const Entry &entry : mOrder)
        entry.view->setSize(QSize(entry.view->getWidth(), iHeight));
    mLayingOut = false;
    layoutSubViews();
}

void Kiv_HStackView::layoutSubViews()
{
    int x = 0;
    int height = 0;
    for (const Entry &entry : mOrder) {
        entry.view->setOrigin(QPoint(x, 0));
        x += entry.view->getWidth();
        height = std::max(height, entry.view->getHeight());
    }
    const QSize size(x, height);
    if (size != getSize())
        setSizeAndNotifyParent(size);
    else
        sendAllBitsChanged();
}

QSize Kiv_HStackView::getMinSize() const
{
    return getSize().expandedTo(Kiv_ContainerViewBase::getMinSize());
}

void Kiv_HStackView::setProxy(const Kiv_ViewInterface *iView, const QColor &iColor)
{
    const int index = indexOf(iView);
    if (index >= 0) {
        mOrder[size_t(index)].proxy = iColor;
        sendAllBitsChanged();
    }
}

void Kiv_HStackView::clearProxies()
{
    for (Entry &entry : mOrder)
        entry.proxy = QColor();
    sendAllBitsChanged();
}

void Kiv_HStackView::drawContents(QPainter *iPainter, const QRect &iRect)
{
    if (!iPainter)
        return;
    for (const Entry &entry : mOrder) {
        const QRect r = entry.view->getRectInParent();
        if (!r.intersects(iRect))
            continue;
        if (entry.proxy.isValid())
            iPainter->fillRect(r, entry.proxy);
        else
            paintSubView(entry.view, iPainter, iRect);
    }
}

Bnd_ConnectionEnvironmentPtr Kiv_HStackView::environmentFor(const Entry &iEntry) const
{
    if (iEntry.variables.isEmpty())
        return mEnv;
    auto env = boost::make_shared<Bnd_ConnectionEnvironment>(mEnv, mEnv->service());
    env->set(iEntry.variables);
    return env;
}

void Kiv_HStackView::makeConnections(Bnd_ConnectionEnvironmentPtr iEnv)
{
    mEnv = iEnv ? iEnv : Bnd_ConnectionEnvironment::blankEnvironment();
    const std::vector<Entry> entries = mOrder; // a view may change the stack while it connects
    for (const Entry &entry : entries)
        if (indexOf(entry.view) >= 0)
            entry.view->makeConnections(environmentFor(entry));
    Kiv_ViewBase::makeConnections(mEnv);
}

bool Kiv_HStackView::canDrag(const QPoint &iPos)
{
    const int index = indexAt(iPos.x());
    if (index >= 0) {
        Kiv_ViewInterface *view = mOrder[size_t(index)].view;
        if (view->canDrag(iPos - view->getOrigin()))
            return true;
    }
    return Kiv_ViewBase::canDrag(iPos);
}

QDomElement Kiv_HStackView::getDragElement(QPoint iPos, QDomDocument &ioDocument)
{
    QDomElement item = ioDocument.createElement(QStringLiteral("Item"));
    for (const Entry &entry : mOrder) {
        const QDomElement part
            = entry.view->getDragElement(iPos - entry.view->getOrigin(), ioDocument);
        if (!part.isNull())
            item.appendChild(part);
    }
    return item;
}

QDomElement Kiv_HStackView::getDragData(QPoint iPos, QDomDocument &ioDocument, QPixmap &oPixmap)
{
    const QDomElement item = getDragElement(iPos, ioDocument);
    const QSize size = getSize();
    if (size.isEmpty())
        return item;
    oPixmap = QPixmap(size);
    oPixmap.fill(QColor(255, 255, 255, 200));
    QPainter painter(&oPixmap);
    drawContents(&painter, getLocalDrawingRect());
    return item;
}

void Kiv_HStackView::childSizeChanged(Kiv_ViewInterface *, QSize, QSize)
{
    if (!mLayingOut)
        layoutSubViews();
}
