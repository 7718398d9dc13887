#pragma once

#include "kivcore_export.h"

#include <QString>
#include <QWidget>

class QLabel;
class QProgressBar;

/// The small progress window (a thermometer) shown during a long operation: a message, an
/// optional progress bar, and below them a time estimate and a cancel hint.
///
/// A plain widget the host drives by calls; it binds to no model. Its children are named
/// "KivThermMessage", "KivThermProgressBar", "KivThermTimeMessage" and
/// "KivThermCancelMessage"; its font is the named font "FontSettings.Kiv_StatusWindow.Font".
/// The host places and sizes the window with setGeometry() before showing it.
class KIVCORE_EXPORT Kiv_StatusWindow : public QWidget
{
    Q_OBJECT

public:
    typedef void (*Callback)();

    /// `iCallback` (may be null) is called once, when the window is destroyed.
    Kiv_StatusWindow(QWidget *iParent = nullptr, const QString &iName = QString(),
                     Qt::WindowFlags iFlags = Qt::WindowFlags(), Callback iCallback = nullptr);
    ~Kiv_StatusWindow() override;

    using QWidget::setGeometry;

public slots:
    /// Lays the children out in the window's rectangle (margin 4, three rows of (H - 8) / 3,
    /// the two short texts side by side in the last row) and shows the window. Without the
    /// progress bar the message takes the first two rows and the bar gets an empty rectangle.
    virtual void showWindow(bool iWithProgress);
    /// Throws away the keys typed while the window was up, then hides it.
    virtual void hideWindow();
    virtual void setGeometry(int x, int y, int w, int h);
    /// Sets the message and repaints it at once.
    virtual void setMsgText(const QString &iText);
    /// Sets the time estimate.
    virtual void setTMsgText(const QString &iText);
    /// Sets the cancel hint.
    virtual void setCMsgText(const QString &iText);
    /// While the window is visible: a positive maximum shows `iValue` of `iMaximum` on the bar,
    /// bringing the bar back if it was removed; a maximum of 0 removes the bar; a negative
    /// maximum does nothing.
    virtual void setProgress(int iValue, int iMaximum);

private:
    QLabel *mMsgLabelP = nullptr;
    QProgressBar *mProgressBarP = nullptr;
    QLabel *mTimeLabelP = nullptr;
    QLabel *mCancelLabelP = nullptr;
    Callback mCallbackP = nullptr;
};
