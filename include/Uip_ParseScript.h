#pragma once

#include "Uip_ParseError.h"
#include "Uip_ParseNode.h"
#include "kivcore_export.h"

#include <QString>

#include <memory>

/// Parses a one-line action script into a tree of nodes.
///
/// The language: a name (`Transport.Actions.play`, `$Window.Selection`, `List[3].Name`), a string
/// literal in double quotes (no escapes), `true` or `false`, a call of a name with at most one
/// argument, an assignment (`A = B`, nesting to the right), and statements separated by ";".
///
/// Answers the root, always a Uip_StatementBlock_ParseNode (also for an empty script), or null
/// when the script is faulty. When `oError` is given it receives the outcome: cleared on success,
/// the message of the first fault otherwise. Nothing is logged.
///
/// Note that `true` and `false` end the line: whatever follows them on the same line is
/// discarded, so `A = true; B.go()` is the single statement `A = true`, and a name beginning
/// with those letters (`trueColor`) reads as the literal.
KIVCORE_EXPORT std::unique_ptr<Uip_ParseNode> Uip_ParseScript(QString iScript,
                                                              Uip_ParseError *oError);
