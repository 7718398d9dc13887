#include "Kiv_BlankView.h"

Kiv_BlankView::Kiv_BlankView(const QSize &iSize)
{
    setSize(iSize);
}

void Kiv_BlankView::drawContents(QPainter *, const QRect &) { }

std::unique_ptr<Kiv_ViewInterface> Kiv_BlankView::clone() const
{
    return std::unique_ptr<Kiv_ViewInterface>(new Kiv_BlankView(*this));
}
