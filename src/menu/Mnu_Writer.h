#pragma once

#include <QDateTime>
#include <QString>

#include <functional>
#include <ostream>

// Writes the lines of a menu description or of generated menu source to a narrow stream, in
// the local 8-bit encoding. Values are escaped for where they stand: XML text for elements, C
// string literals for setter calls. Empty values are left out in both forms.
class Mnu_Writer
{
public:
    explicit Mnu_Writer(std::ostream &oStream)
        : mStream(oStream)
    { }

    void line(const QString &iIndent, const QString &iText)
    {
        mStream << (iIndent + iText).toLocal8Bit().constData() << '\n';
    }
    void line(const QString &iIndent, const char *iText)
    {
        line(iIndent, QString::fromUtf8(iText));
    }

    /// <Tag>value</Tag>
    void element(const QString &iIndent, const char *iTag, const QString &iValue)
    {
        if (iValue.isEmpty())
            return;
        const QString tag = QString::fromLatin1(iTag);
        line(iIndent,
             QLatin1Char('<') + tag + QLatin1Char('>') + xmlEscaped(iValue) + QStringLiteral("</")
                 + tag + QLatin1Char('>'));
    }

    /// Element text that reads back as it is, in plain ASCII whatever the local encoding:
    /// markup characters as entities; a carriage return (a parser would turn a raw one into a
    /// line feed) and every character beyond ASCII as character references.
    static QString xmlEscaped(const QString &iValue)
    {
        QString out;
        for (const char32_t c : iValue.toUcs4()) {
            switch (c) {
            case '&':
                out += QLatin1String("&amp;");
                break;
            case '<':
                out += QLatin1String("&lt;");
                break;
            case '>':
                out += QLatin1String("&gt;");
                break;
            case '"':
                out += QLatin1String("&quot;");
                break;
            default:
                if (c == '\r' || c > 0x7e)
                    out += QStringLiteral("&#%1;").arg(uint(c));
                else
                    out += QChar(char16_t(c));
            }
        }
        return out;
    }

    /// before + "value" + after, the value written inside a C string literal.
    void call(const QString &iIndent, const char *iBefore, const QString &iValue,
              const char *iAfter)
    {
        if (iValue.isEmpty())
            return;
        line(iIndent, QString::fromUtf8(iBefore) + cEscaped(iValue) + QString::fromUtf8(iAfter));
    }

    /// A C string literal's content in plain ASCII: quotes, back-slashes and control
    /// characters escaped, and every byte of the UTF-8 form beyond ASCII as an octal escape
    /// (which tr() decodes).
    static QString cEscaped(const QString &iValue)
    {
        QString out;
        for (const char byte : iValue.toUtf8()) {
            const uchar c = uchar(byte);
            switch (c) {
            case '"':
                out += QLatin1String("\\\"");
                break;
            case '\\':
                out += QLatin1String("\\\\");
                break;
            case '\n':
                out += QLatin1String("\\n");
                break;
            case '\r':
                out += QLatin1String("\\r");
                break;
            case '\t':
                out += QLatin1String("\\t");
                break;
            default:
                if (c >= 0x20 && c < 0x7f)
                    out += QLatin1Char(char(c));
                else
                    out += QStringLiteral("\\%1").arg(uint(c), 3, 8, QLatin1Char('0'));
            }
        }
        return out;
    }

    /// The whole generated source of a menu bar (or, with `iMenuBar` false, of a popup) named
    /// `iClass`: a class whose static instance registers the code that builds the menus, which
    /// `iMenus` writes at the indentation it is given.
    static void generatedFile(std::ostream &oStream, const QString &iClass, bool iMenuBar,
                              const std::function<void(const QString &)> &iMenus)
    {
        Mnu_Writer out(oStream);
        const QString none;
        const QString &c = iClass;
        out.line(none, "/*");
        out.line(none, "\tGenerated code - DO NOT EDIT - all changes will be lost!");
        out.line(none, QStringLiteral("\tFile: ") + c + QStringLiteral(".cpp"));
        out.line(none,
                 QStringLiteral("\tCreated: ")
                     + QDateTime::currentDateTime().toString(Qt::ISODate));
        out.line(none, "*/");
        for (const char *header :
             { "Mnu_BooleanSegment.h", "Mnu_CommandSegment.h", "Mnu_SeparatorSegment.h",
               "Mnu_RadioItemsSegment.h", "Mnu_RadioListSegment.h", "Mnu_ListSegment.h",
               "Mnu_SubmenuSegment.h", "Mnu_QtManager.h", "Mnu_QtMenuBarManager.h" }) {
            const QString name = QString::fromLatin1(header);
            if (!iMenuBar
                && (name == QLatin1String("Mnu_RadioItemsSegment.h")
                    || name == QLatin1String("Mnu_QtMenuBarManager.h")))
                continue;
            out.line(none, QStringLiteral("#include \"") + name + QLatin1Char('"'));
        }
        out.line(none, QStringLiteral("/* Class definition for ") + c + QStringLiteral(" */"));
        out.line(none, QStringLiteral("class ") + c);
        out.line(none, "{");
        out.line(none, "public:");
        out.line(none, QStringLiteral("\t") + c + QStringLiteral("(void);"));
        out.line(none, QStringLiteral("\tvirtual ~") + c + QStringLiteral("(void);"));
        out.line(none,
                 iMenuBar ? QStringLiteral("\tstatic Mnu_QtMenuBarManager* createMenuBarManager( "
                                           "Mnu_QtMenuBarManager* menubarMgr );")
                          : QStringLiteral("\tstatic Mnu_QtManager* createMenuManager( "
                                           "Mnu_QtManager* menuMgr);"));
        out.line(none, "};");
        out.line(none, QStringLiteral("/* Constructor for ") + c + QStringLiteral(" */"));
        out.line(none, c + QStringLiteral("::") + c + QStringLiteral("(void)"));
        out.line(none, "{");
        out.line(none,
                 iMenuBar ? QStringLiteral("\tMnu_QtMenuBarManager::registerMenuBarFactory( \"") + c
                         + QStringLiteral("\", createMenuBarManager );")
                          : QStringLiteral("\tMnu_QtManager::registerMenuFactory( \"") + c
                         + QStringLiteral("\", (void *)this, createMenuManager );"));
        out.line(none, "}");
        out.line(none, QStringLiteral("/* Destructor for ") + c + QStringLiteral(" */"));
        out.line(none, c + QStringLiteral("::~") + c + QStringLiteral("(void)"));
        out.line(none, "{");
        out.line(none,
                 iMenuBar ? QStringLiteral("\tMnu_QtMenuBarManager::unregisterMenuBarFactory( \"")
                         + c + QStringLiteral("\" );")
                          : QStringLiteral("\tMnu_QtManager::unregisterMenuFactory( \"") + c
                         + QStringLiteral("\", (void *)this );"));
        out.line(none, "}");
        out.line(none, QStringLiteral("/* Menu creation method for ") + c + QStringLiteral(" */"));
        out.line(none,
                 iMenuBar ? QStringLiteral("Mnu_QtMenuBarManager* ") + c
                         + QStringLiteral("::createMenuBarManager( Mnu_QtMenuBarManager* "
                                          "menubarMgr )")
                          : QStringLiteral("Mnu_QtManager* ") + c
                         + QStringLiteral("::createMenuManager( Mnu_QtManager* menuMgr )"));
        out.line(none, "{");
        iMenus(QStringLiteral("\t"));
        out.line(none, iMenuBar ? "    return menubarMgr;" : "    return menuMgr;");
        out.line(none, "}");
        out.line(none, "/* Create an instance in order to call constructor/registration code */");
        out.line(none, QStringLiteral("static ") + c + QStringLiteral(" menubar;"));
    }

private:
    std::ostream &mStream;
};
