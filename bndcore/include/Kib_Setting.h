#pragma once

#include "bndcore_export.h"

#include <QDomDocument>
#include <QList>
#include <QPair>
#include <QString>

/// Reads named parameters from a settings XML document.
///
/// Layout of the document:
///
///     <Settings>                                  document element, any name
///       <Windows>                                 one element per start root
///         <FontSettings>                          the element named by the prefix
///           <Kiv_Header>
///             <Font>DejaVu Sans,9,50</Font>       FontSettings.Kiv_Header.Font
///           </Kiv_Header>
///           <Param name="Kiv_Placard.TopLine.Font" value="DejaVu Sans,8"/>
///                                                 FontSettings.Kiv_Placard.TopLine.Font
///         </FontSettings>
///       </Windows>
///       <Application> ... </Application>          another start root
///     </Settings>
///
/// - The start root (SetStartRoot) selects the children of the document element with that
///   name; an empty start root selects the document element itself.
/// - The prefix (SetPrefix) selects, inside the start root, the element of that name; a dotted
///   prefix ("FontSettings.Kiv_Placard") walks down nested elements. With an empty prefix every
///   parameter under the start root is read.
/// - Every element without child elements is a parameter. Its name is the dotted path of
///   element names from below the start root down to it, so it begins with the prefix
///   ("FontSettings.Kiv_Header.Font"); its value is its text, trimmed (an empty element has an
///   empty value). Elements with child elements only group; any text beside the children is
///   ignored.
/// - The attribute form `<Param name="Kiv_Header.Font" value="Arial,12"/>` is one parameter
///   named by the path of the element holding it followed by the name attribute
///   ("FontSettings" + "." + "Kiv_Header.Font"). Without a value attribute the trimmed text is
///   the value. A Param without a name is logged and skipped.
/// - Parameters come in document order. A name may come more than once; value() answers the
///   last one, so a later entry overrides an earlier one.
///
/// The prefix and start root may be set before or after the XML; the parameters always follow
/// the three of them.
class BNDCORE_EXPORT Kib_Setting
{
public:
    Kib_Setting();

    void SetPrefix(QString iPrefix);
    void SetStartRoot(QString iStartRoot);

    /// Parses the document. Answers false for malformed XML, which leaves no parameters, and
    /// then logs the line and the parser's message when `iLogErrors` is set.
    bool SetXML(const QString &iXml, bool iLogErrors = true);
    /// Reads the document from a file; a missing or unreadable file answers false like
    /// malformed XML does.
    bool SetXMLFile(const QString &iPath, bool iLogErrors = true);

    /// The n-th parameter (from 0) in document order; false past the end.
    bool GetNthParam(int n, QString &oName, QString &oValue) const;
    int count() const;
    /// The value of the named parameter, or `iDefault` when there is none.
    QString value(const QString &iName, const QString &iDefault = QString()) const;

private:
    void rebuild();
    void collect(const QDomElement &iElement, const QString &iPath);
    template<class Text> bool parse(const Text &iXml, bool iLogErrors, const QString &iWhere);

    QString mPrefix;
    QString mStartRoot;
    QDomDocument mDocument;
    bool mHasDocument = false;
    bool mLogErrors = true;
    QList<QPair<QString, QString>> mParams;
};
