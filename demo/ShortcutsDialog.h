#pragma once

// The showcase's "Keyboard Shortcuts" dialog: the current language's key mappings, a field that
// captures a new key for the chosen one, a warning when the key is taken, and saving the
// user's own mappings.

#include <QDialog>
#include <QString>

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
};
