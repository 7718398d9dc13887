#pragma once

#include "Kiv_DisplayBinding.h"
#include "Kiv_ViewBase.h"
#include "kivcore_export.h"

#include <QMetaObject>
#include <QPointer>
#include <QString>

class Kiv_LineEdit;

/// A view that shows a QString model on one line, left-aligned and shortened with "…" when it
/// is too long, and that can edit it in place. Without a model it shows nothing. A "publish"
/// connection makes the view hold the text.
///
/// Editing: a double click on a view that is not read-only (views are read-only until
/// setReadOnly(false)), or startEditing(), puts a Kiv_LineEdit over the view. The editor is
/// bound by a static connection string to the very model the view shows, whatever environment it
/// is in, so every change typed reaches the model, and the view, at once. Return, or leaving
/// the editor, ends the edit and removes the editor.
class KIVCORE_EXPORT Kiv_StringView : public Kiv_ViewBase
{
public:
    Kiv_StringView();
    ~Kiv_StringView() override;

    void SetConnectionID(QString iConnection);
    QString connectionID() const { return QString::fromUtf8(mValue.connectionString()); }
    /// The text the view shows now.
    QString text() const;

    /// Opens the in-place editor; answers whether one is open. Refused (with a warning for the
    /// last two) while the view is read-only, has no model, or is not hosted in a widget.
    bool startEditing();
    /// Closes the in-place editor, if one is open. The model already holds what was typed.
    void finishEditing();
    /// The open editor, null when none is open. The bridge widget owns it.
    Kiv_LineEdit *editor() const;

    void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv) override;
    void drawContents(QPainter *iPainter, const QRect &iRect) override;
    std::unique_ptr<Kiv_ViewInterface> clone() const override;
    void mouseDoubleClickEvent(QMouseEvent *iEvent, const QPoint &iPos) override;

protected:
    /// A copy has the same connection, bound again by makeConnections(), and no editor.
    Kiv_StringView(const Kiv_StringView &iOther);

    /// The text binding.
    virtual Kiv_DisplayBinding<QString> &getConnection() { return mValue; }
    /// The resolved name of the model the view shows (empty without one): the name the editor
    /// binds to.
    QString modelName();

private:
    Kiv_DisplayBinding<QString> mValue { nullptr, "Kiv_StringView::SetConnectionID",
                                         Kiv_DisplayBinding<QString>::MayPublish };
    QPointer<Kiv_LineEdit> mEditorP;
    QMetaObject::Connection mEditorFinished;
};
