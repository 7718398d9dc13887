#include "Kiv_TransparentOverlay.h"

#include <QPainter>

#include <algorithm>

Kiv_TransparentOverlay::Kiv_TransparentOverlay(const QPixmap &iPixmap, unsigned short iAlpha)
    : QWidget(nullptr,
              Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint
                  | Qt::WindowTransparentForInput | Qt::WindowDoesNotAcceptFocus)
{
    setObjectName(QStringLiteral("Kiv_TransparentOverlay"));
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    setPixmap(iPixmap);
    setAlpha(iAlpha);
}

Kiv_TransparentOverlay::~Kiv_TransparentOverlay() = default;

void Kiv_TransparentOverlay::setPixmap(const QPixmap &iPixmap)
{
    mPixmap = iPixmap;
    if (!mPixmap.isNull())
        resize(mPixmap.deviceIndependentSize().toSize());
    update();
}

void Kiv_TransparentOverlay::setAlpha(unsigned short iAlpha)
{
    mAlpha = std::min<unsigned short>(iAlpha, 255);
    setWindowOpacity(level());
}

void Kiv_TransparentOverlay::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(rect(), Qt::transparent);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    if (!mPixmap.isNull())
        painter.drawPixmap(0, 0, mPixmap);
}
