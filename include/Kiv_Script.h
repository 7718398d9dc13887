#pragma once

#include "Bnd_ConnectionEnvironment.h"
#include "kivcore_export.h"

#include <QString>

#include <memory>
#include <vector>

class QWidget;
class Uip_ParseNode;

/// The action script of one owner (a button, a menu item, a key binding, a dialog, a list).
///
/// Holds the text and the tree parsed from it. The owner sets the text, connects the tree when
/// it gets its environment and runs it when the user acts:
///
///     mScript.setText(iText);            // parse; a faulty script leaves no tree
///     mScript.connect(iEnv, this);       // connect every name; on failure the tree is dropped
///     if (mScript.isConnected())         // every name connected, every callee enabled
///         mScript.run();
class KIVCORE_EXPORT Kiv_Script
{
public:
    Kiv_Script();
    ~Kiv_Script();
    Kiv_Script(const Kiv_Script &) = delete;
    Kiv_Script &operator=(const Kiv_Script &) = delete;

    /// Sets the text. The same text again does nothing and answers false. A new text is stored,
    /// the old tree is dropped and the text is parsed; a faulty script leaves no tree. Answers
    /// true whenever the text changed (the owner then reconnects).
    bool setText(const QString &iText);
    const QString &text() const { return mText; }

    /// Whether a tree is present (the text parsed and a connect has not failed since).
    bool hasScript() const { return mNodeP != nullptr; }
    /// Parses the text again when a failed connect dropped the tree; answers hasScript().
    bool reparse();

    /// Connects every name of the tree in `iEnv`; "$Window" names are made unique to the
    /// top-level window of `iWidget` (which may be null). When a name does not connect or a
    /// type does not fit, the tree is dropped and the answer is false. Without a tree: false.
    bool connect(const Bnd_ConnectionEnvironmentPtr &iEnv, QWidget *iWidget);

    /// Whether there is a tree and it is ready to run (every name connected, every callee
    /// enabled).
    bool isConnected() const;

    /// Evaluates the tree. Answers whether the evaluation succeeded; false without a tree.
    /// The script's own actions may change or reconnect this script, or destroy its owner (and
    /// so this object), while it runs.
    bool run();

    /// The tree; null when there is none.
    Uip_ParseNode *node() const { return mNodeP.get(); }

private:
    void dropTree();

    // One running evaluation. Trees dropped while a run is under way (its action changed the
    // script, or destroyed the owner) are kept by the outermost run until it ends.
    struct RunFrame
    {
        RunFrame *outer;
        bool destroyed;
        std::vector<std::unique_ptr<Uip_ParseNode>> kept;
    };

    QString mText;
    std::unique_ptr<Uip_ParseNode> mNodeP;
    RunFrame *mRunFrames = nullptr;
};
