// The library's widget classes by name: the one table of what forms can name. Each class is
// registered with its description (what's-this text and tool tip) before the registry is first
// used.

#include "Kiv_FactoryTable.h"

#include "Kiv_SimpleFactoryEntry.h"

#include "Kiv_ActionButton.h"
#include "Kiv_CheckBox.h"
#include "Kiv_Double.h"
#include "Kiv_ImmediateActionButton.h"
#include "Kiv_KeyEdit.h"
#include "Kiv_Label.h"
#include "Kiv_LineEdit.h"
#include "Kiv_LongLabel.h"
#include "Kiv_PlayButton.h"
#include "Kiv_TextEdit.h"

/// The action button's factory default: no name, no texts, enabled.
template<> struct Kiv_FactoryConstruct<Kiv_ActionButton>
{
    static Kiv_ActionButton *make(QWidget *iParent)
    {
        return new Kiv_ActionButton(iParent, nullptr, QString(), QString(), QString(), true);
    }
};

namespace {

template<class T> void add(const char *iClassName, const char *iDescription)
{
    new Kiv_SimpleFactoryEntry<T>(QString::fromLatin1(iClassName),
                                  QString::fromLatin1(iDescription), QString());
}

} // namespace

// In registration order. Classes the library does not have yet are added here as they come.
void Kiv_RegisterLibraryWidgets()
{
    add<Kiv_ActionButton>("Kiv_ActionButton", "Action model connected button");
    add<Kiv_CheckBox>("Kiv_CheckBox", "Model/View connected check box control");
    add<Kiv_Double>("Kiv_Double", "A Widget to display a double value");
    add<Kiv_ImmediateActionButton>("Kiv_ImmediateActionButton",
                                   "Immediate action button for transport control");
    add<Kiv_Label>("Kiv_Label", "QLabel with Model/View connection for label text");
    add<Kiv_KeyEdit>("Kiv_KeyEdit", "QLineEdit that handles key sequences");
    add<Kiv_LineEdit>("Kiv_LineEdit", "QLineEdit connected to or published as string data model");
    add<Kiv_LongLabel>("Kiv_LongLabel",
                       "QLabel that displays a Model/View connection long value as text");
    add<Kiv_PlayButton>("Kiv_PlayButton", "Immediate action play button for transport control");
    add<Kiv_TextEdit>("Kiv_TextEdit", "QTextEdit connected to or published as string data model");
}
