#pragma once

#include "kivcore_export.h"

#include <QString>

class QWidget;

/// The what's-this name of a widget: the name of the library class it is an instance of.
///
/// Every widget of the library calls setBestWhatsThisName() from its constructor with its own
/// class name. Constructors run from the base class down, so the most derived class calls last
/// and its name wins ("best" name). The name is kept as the dynamic property
/// "kivWhatsThisName" (read it with whatsThisName()) and shown as the widget's what's-this
/// text, unless the host has given the widget a what's-this text of its own: a text that
/// differs from the name stored before is never overwritten.
class KIVCORE_EXPORT Kiv_WhatsThis
{
public:
    /// The dynamic property that holds the name.
    static const char *const cPropertyName;

    /// Records `iClassName` as the widget's what's-this name (see the class comment). A null
    /// widget or an empty name is reported and ignored.
    static void setBestWhatsThisName(QWidget *iWidget, const QString &iClassName);
    /// The recorded name; empty for a null widget or one without a name.
    static QString whatsThisName(const QWidget *iWidget);
};
