#pragma once

#include "PunctualTask.h"

// Announces the action that is expected from the PDD peer. Calls no peer: its action and the scheduler relay the
// signal.
class RequestPddAction final : public PunctualTask
{
    Q_OBJECT
public:
    // action: the number of a PDD_ACTION.
    RequestPddAction(const QString& action, const QString& enable);

    // True for an action that is not supported, too.
    bool Run() override;

Q_SIGNALS:
    void PddAction(PDD_ACTION action, bool enable);

private:
    const PDD_ACTION m_action;
    const bool m_enable;
};
