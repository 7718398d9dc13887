#include "Kiv_FontConnection.h"

#include "Kiv_RetireLater.h"

#include "Bnd_ListenerBase.h"
#include "Bnd_Variant.h"
#include "Bndt_Root_Notifications.h"
#include "Bndt_SimpleValue_API.h"

#include <QDebug>
#include <QStringList>
#include <QWidget>

#include <algorithm>
#include <cstdlib>

int Kiv_FontWeightFromSetting(int iWeight)
{
    if (iWeight < 0)
        return iWeight;
    if (iWeight >= 100)
        return std::min(iWeight, 1000);
    static const int named[][2] = { { 0, 100 },  { 12, 200 }, { 25, 300 }, { 50, 400 }, { 57, 500 },
                                    { 63, 600 }, { 75, 700 }, { 81, 800 }, { 87, 900 } };
    int nearest = named[0][1];
    int distance = std::abs(iWeight - named[0][0]);
    for (const auto &pair : named) {
        if (std::abs(iWeight - pair[0]) < distance) {
            distance = std::abs(iWeight - pair[0]);
            nearest = pair[1];
        }
    }
    return nearest;
}

bool Kiv_FontFromDescription(const QString &iText, QFont *oFont)
{
    if (!oFont)
        return false;
    const QString text = iText.trimmed();
    const QStringList parts = text.split(QLatin1Char(','));
    if (parts.size() > 3) {
        QFont font;
        if (!font.fromString(text))
            return false;
        *oFont = font;
        return true;
    }
    const QString family = parts[0].trimmed();
    if (family.isEmpty())
        return false;
    QFont font(family);
    bool ok = true;
    if (parts.size() >= 2) {
        const int points = parts[1].trimmed().toInt(&ok);
        if (!ok || points < 1 || points > 1000)
            return false;
        font.setPointSize(points);
    }
    if (parts.size() >= 3) {
        const int weight = parts[2].trimmed().toInt(&ok);
        if (!ok || weight < 0 || weight > 1000)
            return false;
        font.setWeight(QFont::Weight(Kiv_FontWeightFromSetting(weight)));
    }
    *oFont = font;
    return true;
}

Kiv_FontConnection::Kiv_FontConnection(QWidget *iOwner)
    : mOwnerP(iOwner)
{ }

Kiv_FontConnection::~Kiv_FontConnection()
{
    Kiv_RetireLater::listener(std::move(mListenerP));
}

bool Kiv_FontConnection::setConnectionString(const QByteArray &iString)
{
    if (iString == mString)
        return false;
    mString = iString;
    clear();
    const QString text = QString::fromUtf8(iString);
    const QString trimmed = text.trimmed();
    if (trimmed.startsWith(QLatin1String("publish"))) {
        warn("setFontConnectionSpec",
             QStringLiteral("a font is only read from a model; '%1' left unbound").arg(text));
    } else if (!trimmed.isEmpty()) {
        mListenerP = std::make_unique<Bnd_ListenerBase>(
            QString(), Bnd_ConnectionEnvironment::blankEnvironment());
        mListenerP->setReceiveMessageCB([this](const Bnd_MessageInterface &iMsg) {
            if (iMsg.is<Bndt_SimpleValue_Notifications::MsgValueChanged>()
                || iMsg.is<Bndt_Root_Notifications::MsgConnectedChanged>())
                apply();
        });
        mListenerP->SetConnectionName(text); // a model found at once is applied from here
    }
    return true;
}

void Kiv_FontConnection::connect(const Bnd_ConnectionEnvironmentPtr &iEnv)
{
    if (mListenerP)
        mListenerP->connect(iEnv);
}

bool Kiv_FontConnection::isConnected() const
{
    return mListenerP && mListenerP->isConnectedToModel();
}

void Kiv_FontConnection::clear()
{
    Kiv_RetireLater::listener(std::move(mListenerP));
    restoreOwnFont(); // the widget gets its own font back
}

void Kiv_FontConnection::apply()
{
    if (!isConnected()) {
        restoreOwnFont();
        return;
    }
    Bnd_Variant value;
    if (!mListenerP->SendMessageToModel(Bndt_SimpleValue_BaseAPI::MsgGetVariant(&value))) {
        warn("applyFont",
             QStringLiteral("'%1' answers no value").arg(mListenerP->GetResolvedConnectionName()));
        return;
    }
    QFont font;
    if (const QFont *modelFont = value.get<QFont>()) {
        font = *modelFont;
    } else if (const QString *description = value.get<QString>()) {
        if (!Kiv_FontFromDescription(*description, &font)) {
            warn("applyFont",
                 QStringLiteral("'%1' is no font description (family,points,weight)")
                     .arg(*description));
            return;
        }
    } else {
        warn("applyFont",
             QStringLiteral("'%1' holds a %2, neither a QFont nor a font description")
                 .arg(mListenerP->GetResolvedConnectionName(),
                      Bnd_ValueTraits::typeName(value.Type())));
        return;
    }
    if (!mOwnFont) {
        mOwnFont = mOwnerP->font();
        mOwnFontWasSet = mOwnerP->testAttribute(Qt::WA_SetFont);
    }
    mOwnerP->setFont(font);
}

void Kiv_FontConnection::restoreOwnFont()
{
    if (!mOwnFont)
        return;
    // A default QFont resolves nothing, which gives the widget back its inherited font.
    mOwnerP->setFont(mOwnFontWasSet ? *mOwnFont : QFont());
    mOwnFont.reset();
}

void Kiv_FontConnection::warn(const char *iWhat, const QString &iDetail) const
{
    qWarning().noquote().nospace()
        << mOwnerP->metaObject()->className() << "::" << iWhat << ", " << iDetail;
}
