#pragma once

#include "Bnd_ConnectionEnvironment.h"
#include "kivcore_export.h"

#include <QByteArray>
#include <QFont>
#include <QString>

#include <memory>
#include <optional>
#include <vector>

class Bnd_ListenerBase;
class QWidget;

/// Reads a font description: "family", "family,points" or "family,points,weight", or the longer
/// form that QFont::toString() writes. Points are a positive integer. A weight below 100 is on
/// the 0 to 99 scale of the settings files (50 normal, 75 bold), one from 100 to 1000 a
/// QFont::Weight; parts left out stay unset, so the font takes them from where it is used.
/// Blanks around the parts are ignored. Answers false, leaving `oFont` alone, for an empty
/// family, a part that is not a number in range, or a long form that QFont cannot read.
KIVCORE_EXPORT bool Kiv_FontFromDescription(const QString &iText, QFont *oFont);

/// A font weight as settings files write it, on QFont's scale: a weight below 100 is on the
/// older 0 to 99 scale (50 normal, 75 bold) and becomes the nearest named weight (the lighter of
/// two as near); 100 to 1000 is taken as it is (larger is 1000); a negative weight stays
/// negative ("not set").
KIVCORE_EXPORT int Kiv_FontWeightFromSetting(int iWeight);

/// The font connection of a bound widget: the model it names holds the widget's font, either
/// as a QFont or as its description text (see Kiv_FontFromDescription).
///
/// Since the model may be of either type, this is the one binding of the library whose
/// listener takes any model; it reads the value through the type-free get. A font is only ever
/// read: the connection string is "" (unbound) or a model name; "publish" is refused with a
/// warning. The same string again changes nothing.
///
/// While the model holds a font, the widget uses it. When there is no model (unbound, not
/// found yet, gone), the widget gets back the font it had before the first model font was
/// applied (its inherited font if it had none of its own). A model value that is no font is
/// reported as a warning naming the widget's class, and the widget keeps its present font.
class KIVCORE_EXPORT Kiv_FontConnection
{
public:
    explicit Kiv_FontConnection(QWidget *iOwner);
    ~Kiv_FontConnection();
    Kiv_FontConnection(const Kiv_FontConnection &) = delete;
    Kiv_FontConnection &operator=(const Kiv_FontConnection &) = delete;

    /// Accepts a connection string; answers false when it equals the stored one.
    bool setConnectionString(const QByteArray &iString);
    const QByteArray &connectionString() const { return mString; }
    /// Binds the listener in the environment.
    void connect(const Bnd_ConnectionEnvironmentPtr &iEnv);
    bool isConnected() const;

private:
    void clear();
    void apply();
    void restoreOwnFont();
    void warn(const char *iWhat, const QString &iDetail) const;

    QWidget *mOwnerP;
    QByteArray mString;
    std::unique_ptr<Bnd_ListenerBase> mListenerP;
    /// The widget's font before a model font was applied; empty while none is applied.
    std::optional<QFont> mOwnFont;
    bool mOwnFontWasSet = false;
};
