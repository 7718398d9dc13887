#include "Bnd_ConnectionEnvironment.h"

#include "Bnd_ConnectionDict.h"

namespace {
bool isNameStart(QChar c)
{
    return c.isLetter() || c == QLatin1Char('_');
}
bool isNameChar(QChar c)
{
    return c.isLetterOrNumber() || c == QLatin1Char('_');
}

// Where the variable reference starting with the "$" at iPos ends, or -1 if that "$" is text.
int variableEnd(const QString &iText, int iPos)
{
    if (iPos > 0 && isNameChar(iText.at(iPos - 1)))
        return -1;
    int end = iPos + 1;
    if (end >= iText.size() || !isNameStart(iText.at(end)))
        return -1;
    while (end < iText.size() && isNameChar(iText.at(end)))
        ++end;
    return end;
}
} // namespace

Bnd_ConnectionEnvironment::Bnd_ConnectionEnvironment(const Bnd_ConnectionEnvironmentPtr &iParent,
                                                     Bnd_ConnectionServiceInterface *iService)
    : mParent(iParent)
    , mService(iService ? iService
                        : (iParent ? iParent->service() : &Bnd_ConnectionDict::Singleton()))
{ }

Bnd_ConnectionEnvironment::~Bnd_ConnectionEnvironment() = default;

Bnd_ConnectionEnvironmentPtr Bnd_ConnectionEnvironment::blankEnvironment()
{
    static const Bnd_ConnectionEnvironmentPtr blank(
        new Bnd_ConnectionEnvironment(Bnd_ConnectionEnvironmentPtr(), nullptr));
    return blank;
}

void Bnd_ConnectionEnvironment::set(const QString &iName, const QString &iValue)
{
    for (auto &v : mVariables) {
        if (v.first == iName) {
            v.second = iValue;
            return;
        }
    }
    mVariables.emplace_back(iName, iValue);
}

long Bnd_ConnectionEnvironment::set(const QString &iAssignments)
{
    long count = 0;
    const QStringList pairs = iAssignments.split(QLatin1Char(';'), Qt::SkipEmptyParts);
    for (const QString &pair : pairs) {
        const int eq = pair.indexOf(QLatin1Char('='));
        if (eq < 0)
            continue;
        QString name = pair.left(eq).trimmed();
        if (name.startsWith(QLatin1Char('$')))
            name.remove(0, 1);
        if (name.isEmpty() || !isNameStart(name.at(0))
            || !std::all_of(name.cbegin(), name.cend(), isNameChar))
            continue;
        set(name, pair.mid(eq + 1).trimmed());
        ++count;
    }
    return count;
}

const QString *Bnd_ConnectionEnvironment::find(const QString &iName) const
{
    for (const Bnd_ConnectionEnvironment *e = this; e; e = e->mParent.get()) {
        for (const auto &v : e->mVariables)
            if (v.first == iName)
                return &v.second;
    }
    return nullptr;
}

QString Bnd_ConnectionEnvironment::get(const QString &iName) const
{
    const QString *v = find(iName);
    return v ? *v : QString();
}

bool Bnd_ConnectionEnvironment::isBound(const QString &iName) const
{
    return find(iName);
}

bool Bnd_ConnectionEnvironment::needsEnvironment(const QString &iName)
{
    const QString trimmed = iName.trimmed();
    if (trimmed.startsWith(QLatin1Char('.')))
        return true;
    for (int i = trimmed.indexOf(QLatin1Char('$')); i >= 0;
         i = trimmed.indexOf(QLatin1Char('$'), i + 1)) {
        if (variableEnd(trimmed, i) > 0)
            return true;
    }
    return false;
}

QString Bnd_ConnectionEnvironment::replaceVariableNames(const QString &iText, bool *oAllBound) const
{
    bool allBound = true;
    int pos = iText.indexOf(QLatin1Char('$'));
    if (pos < 0) { // the common case: nothing to replace, no copy
        if (oAllBound)
            *oAllBound = true;
        return iText;
    }
    QString out;
    int copied = 0;
    for (; pos >= 0; pos = iText.indexOf(QLatin1Char('$'), pos + 1)) {
        const int end = variableEnd(iText, pos);
        if (end < 0)
            continue;
        const QString *value = find(iText.mid(pos + 1, end - pos - 1));
        if (!value) {
            allBound = false;
            continue;
        }
        out += QStringView(iText).mid(copied, pos - copied);
        out += *value;
        copied = end;
        pos = end - 1;
    }
    out += QStringView(iText).mid(copied);
    if (oAllBound)
        *oAllBound = allBound;
    return out;
}
