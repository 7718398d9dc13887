#include "Kiv_AutoAlignLineEdit.h"

#include "Kiv_WhatsThis.h"

#include <QEvent>
#include <QFocusEvent>
#include <QStyle>
#include <QStyleOptionFrame>

namespace {
/// The blank QLineEdit leaves on each side of the text inside its contents rectangle.
constexpr int cHorizontalTextMargin = 2;
} // namespace

Kiv_AutoAlignLineEdit::Kiv_AutoAlignLineEdit(QWidget *iParent)
    : QLineEdit(iParent)
{
    Kiv_WhatsThis::setBestWhatsThisName(this, QStringLiteral("Kiv_AutoAlignLineEdit"));
    connect(this, &QLineEdit::textChanged, this, &Kiv_AutoAlignLineEdit::updateAlignment);
    updateAlignment();
}

bool Kiv_AutoAlignLineEdit::textFits() const
{
    QStyleOptionFrame option;
    initStyleOption(&option);
    const QRect contents = style()
                               ->subElementRect(QStyle::SE_LineEditContents, &option, this)
                               .marginsRemoved(textMargins());
    const int room = contents.width() - 2 * cHorizontalTextMargin;
    return fontMetrics().horizontalAdvance(displayText()) <= room;
}

void Kiv_AutoAlignLineEdit::resizeEvent(QResizeEvent *iEvent)
{
    QLineEdit::resizeEvent(iEvent);
    updateAlignment();
}

void Kiv_AutoAlignLineEdit::changeEvent(QEvent *iEvent)
{
    QLineEdit::changeEvent(iEvent);
    if (iEvent->type() == QEvent::FontChange || iEvent->type() == QEvent::StyleChange)
        updateAlignment();
}

void Kiv_AutoAlignLineEdit::focusOutEvent(QFocusEvent *iEvent)
{
    QLineEdit::focusOutEvent(iEvent);
    // A context menu or the menu bar takes the focus for a moment: leave the cursor and the
    // selection alone for it.
    if (iEvent->reason() != Qt::PopupFocusReason && iEvent->reason() != Qt::MenuBarFocusReason)
        updateAlignment();
}

void Kiv_AutoAlignLineEdit::updateAlignment()
{
    const bool fits = textFits();
    const Qt::Alignment horizontal = fits ? Qt::AlignLeft : Qt::AlignRight;
    if ((alignment() & Qt::AlignHorizontal_Mask) != horizontal)
        setAlignment(horizontal | (alignment() & Qt::AlignVertical_Mask));
    if (!fits && !hasFocus())
        setCursorPosition(int(text().size()));
}
