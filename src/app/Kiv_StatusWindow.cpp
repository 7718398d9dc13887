#include "Kiv_StatusWindow.h"

#include "Kiv_FontManager.h"

#include "KivPlatform.h"

#include <QLabel>
#include <QProgressBar>

namespace {
const char *const cFontName = "FontSettings.Kiv_StatusWindow.Font";
const int cMargin = 4;
} // namespace

Kiv_StatusWindow::Kiv_StatusWindow(QWidget *iParent, const QString &iName, Qt::WindowFlags iFlags,
                                   Callback iCallback)
    : QWidget(iParent, iFlags)
    , mCallbackP(iCallback)
{
    setObjectName(iName);
    setFont(Kiv_FontManager::getFont(QLatin1String(cFontName)));

    mMsgLabelP = new QLabel(this);
    mMsgLabelP->setObjectName(QStringLiteral("KivThermMessage"));
    // Long messages wrap downwards from the top left rather than around the middle.
    mMsgLabelP->setAlignment((mMsgLabelP->alignment() & ~Qt::AlignVCenter) | Qt::AlignTop);
    mProgressBarP = new QProgressBar(this);
    mProgressBarP->setObjectName(QStringLiteral("KivThermProgressBar"));
    mTimeLabelP = new QLabel(this);
    mTimeLabelP->setObjectName(QStringLiteral("KivThermTimeMessage"));
    mCancelLabelP = new QLabel(this);
    mCancelLabelP->setObjectName(QStringLiteral("KivThermCancelMessage"));
}

Kiv_StatusWindow::~Kiv_StatusWindow()
{
    if (mCallbackP)
        mCallbackP();
}

void Kiv_StatusWindow::showWindow(bool iWithProgress)
{
    const int lineHeight = (height() - 2 * cMargin) / 3;
    const int fullWidth = width() - 2 * cMargin;
    const int halfWidth = fullWidth / 2;

    if (iWithProgress) {
        mMsgLabelP->setGeometry(cMargin, cMargin, fullWidth, lineHeight);
        mProgressBarP->reset();
        mProgressBarP->setGeometry(cMargin, cMargin + lineHeight, fullWidth, lineHeight);
    } else {
        mMsgLabelP->setGeometry(cMargin, cMargin, fullWidth, 2 * lineHeight);
        mProgressBarP->setGeometry(0, 0, 0, 0);
    }
    const int lastRow = cMargin + 2 * lineHeight;
    mTimeLabelP->setGeometry(cMargin, lastRow, halfWidth, lineHeight);
    mCancelLabelP->setGeometry(cMargin + halfWidth, lastRow, halfWidth, lineHeight);
    show();
}

void Kiv_StatusWindow::hideWindow()
{
    // Keys hit while the operation ran must not act on what comes after it.
    KivPlatform::discardTypedAheadKeys();
    hide();
}

void Kiv_StatusWindow::setGeometry(int x, int y, int w, int h)
{
    QWidget::setGeometry(x, y, w, h);
}

void Kiv_StatusWindow::setMsgText(const QString &iText)
{
    mMsgLabelP->setText(iText);
    mMsgLabelP->repaint();
}

void Kiv_StatusWindow::setTMsgText(const QString &iText)
{
    if (mTimeLabelP->text() != iText)
        mTimeLabelP->setText(iText);
}

void Kiv_StatusWindow::setCMsgText(const QString &iText)
{
    if (mCancelLabelP->text() != iText)
        mCancelLabelP->setText(iText);
}

void Kiv_StatusWindow::setProgress(int iValue, int iMaximum)
{
    if (!isVisible() || iMaximum < 0)
        return;
    if (iMaximum == 0) {
        if (mProgressBarP->height() < 1)
            return; // already without the bar
        showWindow(false);
        repaint();
        return;
    }
    if (mProgressBarP->height() < 2) {
        showWindow(true);
        repaint();
    }
    mProgressBarP->setRange(0, iMaximum);
    mProgressBarP->setValue(iValue);
}
