#pragma once

#include "kivcore_export.h"

#include <QLineEdit>

/// A line edit that shows the end of a text too long for it.
///
/// While the whole text fits, it is left-aligned. When it does not fit, the line edit aligns it
/// to the right and, unless the user is editing (the widget has focus), puts the cursor at the
/// end, so the end of the text (the file name of a path, the last words of a title) stays in
/// view. The alignment follows every change of the text, the size and the font.
class KIVCORE_EXPORT Kiv_AutoAlignLineEdit : public QLineEdit
{
    Q_OBJECT

public:
    explicit Kiv_AutoAlignLineEdit(QWidget *iParent = nullptr);

    /// Whether the whole text fits into the space the line edit gives it.
    bool textFits() const;

protected:
    void resizeEvent(QResizeEvent *iEvent) override;
    void changeEvent(QEvent *iEvent) override;
    void focusOutEvent(QFocusEvent *iEvent) override;

private:
    void updateAlignment();
};
