#pragma once

// The showcase's "Keyboard Shortcuts" dialog: the current language's key mappings, a field that
// captures a new key for the chosen one, a warning when the key is taken, and saving the
// user's own mappings.

#include <QDialog>
#include <QString>
#include <QStringList>

class Kiv_KeyEdit;
class Kiv_MenuBar;
class QLabel;
class QPushButton;
class QTableWidget;

class ShortcutsDialog : public QDialog
{
public:
    /// `iCustomFile` is where the user's own mappings are saved (and read at the next start).
    ShortcutsDialog(QWidget *iParent, Kiv_MenuBar *iMenuBar, const QString &iCustomFile);

    /// Reads the user's own mappings into the table the keyboard's language uses, and takes out
    /// the shipped keys the user moved elsewhere (the keymap format keeps additions only, so
    /// the moved keys are remembered in the settings).
    static void loadCustomKeys(const QString &iCustomFile);

    /// Who holds the key in the context already: a mapping's description or a menu item;
    /// empty when the key is free.
    static QString holderOf(const QString &iKey, const QString &iContext, Kiv_MenuBar *iMenuBar,
                            const QString &iExceptTableKey = QString());

private:
    void fill();
    void keyChanged();
    void assign();
    void save();
    QString selectedTableKey() const;

    Kiv_MenuBar *mMenuBar;
    QString mCustomFile;
    QTableWidget *mTable;
    Kiv_KeyEdit *mKey;
    QLabel *mWarning;
    QPushButton *mAssign;
    QStringList mMovedKeys; // shipped keys given another key in this dialog
};
