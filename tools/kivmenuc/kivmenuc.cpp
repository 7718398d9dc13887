// kivmenuc: the menu compiler. Turns a menu description (root <MenuBar> or <Menu>) into the
// source that builds the same menus in code and registers them under the description's name,
// so a program needs no description file at run time:
//
//   kivmenuc Menus/MainMenuBar.xml -o MainMenuBar.cpp
//
// The class in the source is named after the file ("MainMenuBar"), which must therefore be a
// C++ identifier; Mnu_QtMenuBarManager (or Mnu_QtManager) finds the registered code under
// that name. Exit status 0 on success, 1 with a message on stderr otherwise.

#include "Mnu_QtManager.h"
#include "Mnu_QtMenuBarManager.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>
#include <QXmlStreamReader>

#include <cstdio>
#include <sstream>

namespace {
int fail(const QString &iMessage)
{
    std::fprintf(stderr, "kivmenuc: %s\n", qPrintable(iMessage));
    return 1;
}

QString rootTag(const QByteArray &iXml)
{
    QXmlStreamReader reader(iXml);
    while (!reader.atEnd())
        if (reader.readNext() == QXmlStreamReader::StartElement)
            return reader.name().toString();
    return QString();
}
} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() != 4 || args[2] != QLatin1String("-o"))
        return fail(QStringLiteral("usage: kivmenuc DESCRIPTION.xml -o OUT.cpp"));
    const QString input = args[1];
    const QString output = args[3];

    const QString className = QFileInfo(input).completeBaseName();
    static const QRegularExpression cIdentifier(QStringLiteral("^[A-Za-z_][A-Za-z0-9_]*$"));
    if (!cIdentifier.match(className).hasMatch())
        return fail(QStringLiteral("%1: the file name must be a C++ identifier, it names the "
                                   "generated class")
                        .arg(input));
    QFile file(input);
    if (!file.open(QIODevice::ReadOnly))
        return fail(QStringLiteral("cannot read %1: %2").arg(input, file.errorString()));
    const QByteArray xml = file.readAll();

    std::ostringstream source;
    const QString root = rootTag(xml);
    if (root == QLatin1String("MenuBar")) {
        Mnu_QtMenuBarManager menuBar;
        if (!menuBar.parseDescription(xml, input))
            return fail(QStringLiteral("%1 is not a menu bar description").arg(input));
        menuBar.saveMenuBar(source, className, Mnu_Segment::CodeFormat);
    } else if (root == QLatin1String("Menu")) {
        Mnu_QtManager menu;
        if (!menu.parseDescription(xml, input))
            return fail(QStringLiteral("%1 is not a menu description").arg(input));
        menu.savePopupMenu(source, className, Mnu_Segment::CodeFormat);
    } else {
        return fail(
            QStringLiteral("%1: the root must be <MenuBar> or <Menu>, not <%2>").arg(input, root));
    }

    QSaveFile out(output);
    const std::string text = source.str();
    if (!out.open(QIODevice::WriteOnly) || out.write(text.data(), qint64(text.size())) < 0
        || !out.commit())
        return fail(QStringLiteral("cannot write %1: %2").arg(output, out.errorString()));
    return 0;
}
