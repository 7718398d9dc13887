#pragma once

#include "bndcore_export.h"

#include <QString>
#include <boost/shared_ptr.hpp>

#include <utility>
#include <vector>

class Bnd_ConnectionServiceInterface;
class Bnd_ConnectionEnvironment;

typedef boost::shared_ptr<const Bnd_ConnectionEnvironment> Bnd_ConnectionEnvironmentPtr;

/// A scope of variables for connection names, chained to a parent scope.
///
/// In a name, `$Name` (a "$" at the start or after a character that is not a letter, digit or
/// "_", followed by letters, digits and "_") is replaced by the value bound to Name in the
/// nearest scope. A "$" inside a word ("1f3a$Window") is plain text. A name starting with "."
/// is relative: it stands for `$Base` followed by the name.
class BNDCORE_EXPORT Bnd_ConnectionEnvironment
{
public:
    /// A scope below `iParent` whose names are looked up in `iService` (the process-wide
    /// dictionary when null).
    Bnd_ConnectionEnvironment(const Bnd_ConnectionEnvironmentPtr &iParent,
                              Bnd_ConnectionServiceInterface *iService);
    ~Bnd_ConnectionEnvironment();

    /// The shared root scope: no variables, the process-wide dictionary.
    static Bnd_ConnectionEnvironmentPtr blankEnvironment();

    /// Binds a variable in this scope (a later binding of the same name replaces it).
    void set(const QString &iName, const QString &iValue);
    /// Binds the variables of a list of "Name=Value" pairs separated by ";" and answers how many
    /// were bound. Pairs without "=" or with an invalid name are skipped.
    long set(const QString &iAssignments);
    /// The value of the nearest binding; a null string when the variable is unbound.
    QString get(const QString &iName) const;
    bool isBound(const QString &iName) const;

    /// The text with every bound variable replaced. Unbound variables stay as written and make
    /// `*oAllBound` false.
    QString replaceVariableNames(const QString &iText, bool *oAllBound = nullptr) const;

    Bnd_ConnectionServiceInterface *service() const { return mService; }
    const Bnd_ConnectionEnvironmentPtr &parent() const { return mParent; }

    /// Whether a name must go through an environment (it holds a variable or is relative).
    static bool needsEnvironment(const QString &iName);

private:
    const QString *find(const QString &iName) const;

    Bnd_ConnectionEnvironmentPtr mParent;
    Bnd_ConnectionServiceInterface *mService;
    std::vector<std::pair<QString, QString>> mVariables;
};
