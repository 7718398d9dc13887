#include "Kiv_Double.h"

#include "Kiv_TextFormat.h"
#include "Kiv_WhatsThis.h"

#include <QDebug>

Kiv_Double::Kiv_Double(QWidget *iParent, const char *iName)
    : QLabel(iParent)
    , mValue(this, "Kiv_Double::setConnectionSpec", Kiv_DisplayBinding<double>::MayPublish, 0.0)
    , mDoubleFormat("%g")
    , mFormat(QStringLiteral("%1"))
{
    setObjectName(QString::fromUtf8(iName));
    Kiv_WhatsThis::setBestWhatsThisName(this, QStringLiteral("Kiv_Double"));
    mValue.onChanged([this] { refresh(); });
}

Kiv_Double::~Kiv_Double() = default;

void Kiv_Double::setConnectionSpec(const QString &iConnection)
{
    mValue.setConnectionString(iConnection.toUtf8());
}

void Kiv_Double::setDoubleFormat(const QString &iFormat)
{
    const std::string format = iFormat.toStdString();
    if (!Kiv_IsPrintfFormat(format, Kiv_PrintfKind::Real)) {
        qWarning().noquote().nospace() << "Kiv_Double::setDoubleFormat, '" << iFormat
                                       << "' is not a format of one double; keeping '"
                                       << QString::fromStdString(mDoubleFormat) << "'";
        return;
    }
    mDoubleFormat = format;
    refresh();
}

void Kiv_Double::SetFormat(QString iFormat)
{
    mFormat = std::move(iFormat);
    refresh();
}

void Kiv_Double::makeConnections(Bnd_ConnectionEnvironmentPtr iEnv)
{
    mValue.connect(iEnv);
}

void Kiv_Double::refresh()
{
    if (!mValue.wasGiven())
        return; // the host's text
    if (!mValue.hasValue()) {
        setText(QString());
        return;
    }
    const QString number = Kiv_FormatPrintf(mDoubleFormat, mValue.value());
    setText(mFormat.isEmpty() ? number : Kiv_FormatArgs(mFormat, { number }));
}
