#pragma once

#include "Kiv_Script.h"
#include "Mnu_Segment.h"

/// One item that runs an action script (<ActionScript>) when triggered. The item is enabled
/// only while its enable model allows it and the script can run now (every name connected,
/// every called action enabled); a script that does not parse or connect leaves it disabled.
///
/// A triggered script runs after the menu has closed, through the runtime's delayed-action
/// queue (Bnd_Utils::Bnd_AddDelayedAction), or on a zero-delay timer when the queue refuses.
class KIVCORE_EXPORT Mnu_CommandSegment : public Mnu_Segment
{
    Q_OBJECT

public:
    Mnu_CommandSegment();
    Mnu_CommandSegment(Mnu_Menu *iMenu, QDomElement *iElement);
    ~Mnu_CommandSegment() override;

    const QString &getActionScript() const { return mScript.text(); }
    void setActionScript(const QString &iScript);
    /// Runs the command as triggering its item does (later, through the delayed-action queue);
    /// the key map uses it for menu actions.
    void runCommand();

    int instantiate(Mnu_Manager *iManager) override;
    void refreshState() override;
    void itemActivated(Mnu_MenuID iID) override;
    void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv) override;
    bool parseSubElement(QDomElement *iElement) override;
    void emitOwnTags(std::ostream &oStream, const QString &iIndent, saveFormat iFormat) override;
    void dump(const QString &iPrefix) override;
    const char *tagName() const override { return "CommandSegment"; }

private slots:
    void itemActivatedTimer();

private:
    Kiv_Script mScript;
};
