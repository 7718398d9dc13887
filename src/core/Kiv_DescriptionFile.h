#pragma once

#include <QByteArray>
#include <QStringList>

class QFile;

// Reading the description files (menus, keymaps) safely, whatever their text.

/// How deep the elements of an XML text nest, read without building anything: the readers of
/// description files check it before they build a document, so that neither the document nor
/// anything walking it recurses deeper than the format allows. Answers a value above `iLimit`
/// as soon as one element lies deeper, and -1 for text that is no XML.
int Kiv_XmlElementDepth(const QByteArray &iXml, int iLimit);

/// The largest description file (menus, keymaps) that is read.
constexpr qint64 cKivMaxDescriptionSize = 16 * 1024 * 1024;

/// Opens the first of the paths that names a regular file of at most cKivMaxDescriptionSize
/// bytes (a folder, a device or a huge file is never read). Answers whether one opened.
bool Kiv_OpenDescriptionFile(QFile &oFile, const QStringList &iPaths);

/// Whether every tag of an XML text has a sane number of attributes (Qt's readers take time
/// that grows with the square of an element's attributes); a text with a tag beyond that is
/// logged, naming `iWho`, and answers false. Reads the text once, without parsing it.
bool Kiv_XmlTagsAreSane(const QByteArray &iXml, const QString &iWho);
bool Kiv_XmlTagsAreSane(const QString &iXml, const QString &iWho);
