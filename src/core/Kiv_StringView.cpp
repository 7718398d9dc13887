#include "Kiv_StringView.h"

#include "Bnd_Utils.h"
#include "Kiv_LineEdit.h"
#include "Kiv_ViewContainerInterface.h"
#include "Kiv_ViewText.h"

#include <QDebug>
#include <QMouseEvent>

Kiv_StringView::Kiv_StringView()
{
    mValue.onChanged([this] { sendAllBitsChanged(); });
}

Kiv_StringView::Kiv_StringView(const Kiv_StringView &iOther)
    : Kiv_ViewBase(iOther)
{
    mValue.onChanged([this] { sendAllBitsChanged(); });
    mValue.copyConnection(iOther.mValue);
}

Kiv_StringView::~Kiv_StringView()
{
    finishEditing();
}

void Kiv_StringView::SetConnectionID(QString iConnection)
{
    if (mValue.setConnectionString(iConnection.toUtf8()))
        finishEditing(); // the editor edits the old model
}

Kiv_LineEdit *Kiv_StringView::editor() const
{
    return mEditorP.data();
}

QString Kiv_StringView::text() const
{
    return mValue.value();
}

QString Kiv_StringView::modelName()
{
    const Kiv_ValueBinding<QString> &binding = getConnection().binding();
    if (binding.holdsValue())
        return binding.ownModel()->publishedName();
    if (binding.isConnected())
        return binding.listener()->GetResolvedConnectionName();
    return QString();
}

bool Kiv_StringView::startEditing()
{
    if (mEditorP)
        return true;
    if (getReadOnly())
        return false;
    const QString name = modelName();
    if (name.isEmpty()) {
        qWarning().noquote().nospace()
            << "Kiv_StringView::startEditing, view '" << getName() << "' has no model to edit";
        return false;
    }
    QWidget *bridge = bridgeWidget();
    if (!bridge) {
        qWarning().noquote().nospace()
            << "Kiv_StringView::startEditing, view '" << getName() << "' is not shown in a widget";
        return false;
    }
    auto *editor = new Kiv_LineEdit(bridge, QStringLiteral("StringViewEditor"));
    // The name is resolved already: a static connection binds the editor to exactly that model.
    editor->SetTextConnection(
        Bnd_Utils::Bnd_MakeStaticConnectionSpec(QString::fromLatin1(name.toLatin1())).toLatin1());
    editor->makeConnections(Bnd_ConnectionEnvironment::blankEnvironment());
    editor->resize(getSize());
    getParent()->overlayChildEditWidget(this, editor, 0, 0);
    mEditorP = editor;
    mEditorFinished = QObject::connect(editor, &QLineEdit::editingFinished, editor,
                                       [this] { finishEditing(); });
    editor->show();
    editor->setFocus(Qt::OtherFocusReason);
    editor->selectAll();
    return true;
}

void Kiv_StringView::finishEditing()
{
    QObject::disconnect(mEditorFinished);
    if (!mEditorP)
        return;
    // Later: this may run inside one of the editor's own event handlers.
    mEditorP->hide();
    mEditorP->deleteLater();
    mEditorP = nullptr;
}

void Kiv_StringView::makeConnections(Bnd_ConnectionEnvironmentPtr iEnv)
{
    mValue.connect(iEnv, bridgeWidget());
    Kiv_ViewBase::makeConnections(iEnv);
}

void Kiv_StringView::drawContents(QPainter *iPainter, const QRect &)
{
    Kiv_DrawViewText(iPainter, getLocalDrawingRect(), text(), Qt::AlignLeft | Qt::AlignVCenter);
}

std::unique_ptr<Kiv_ViewInterface> Kiv_StringView::clone() const
{
    return std::unique_ptr<Kiv_ViewInterface>(new Kiv_StringView(*this));
}

void Kiv_StringView::mouseDoubleClickEvent(QMouseEvent *iEvent, const QPoint &iPos)
{
    if (!getReadOnly() && startEditing()) {
        iEvent->accept();
        return;
    }
    Kiv_ViewBase::mouseDoubleClickEvent(iEvent, iPos);
}
