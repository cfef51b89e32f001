#include "FaultScript.h"

using namespace Qt::StringLiterals;

namespace
{
constexpr int HELD_BACK_MS = 500; // an answer, while signals come
}

void FaultScript::Prepare(const Fault& fault, const Request& request, const PeerSignal* signal, FaultRig& rig)
{
    const QByteArray name = request.Method().toLatin1();
    const char* const method = name.constData();
    const SimulatorProcess& device = rig.Device();
    switch (fault.kind)
    {
    case FaultKind::ABSENT:
        if (request.Row().trigger == Trigger::START)
            LosePeer(request, rig);
        break;
    case FaultKind::BUS_ERROR: device.AnswerError(method, fault.error, 1); break;
    case FaultKind::REFUSED: device.AnswerStatus(method, REFUSAL, 0, 1); break;
    case FaultKind::WRONG_TYPE: device.AnswerValues(method, {u"ok"_s}, 0, 1); break;
    case FaultKind::NO_VALUES: device.AnswerValues(method, {}, 0, 1); break;
    case FaultKind::EXTRA_VALUES: device.AnswerValues(method, {0, REFUSAL, u"more"_s}, 0, 1); break;
    case FaultKind::EMPTY_STRUCTURE: device.AnswerBroken(method); break;
    case FaultKind::EXIT: device.AnswerByExit(method); break;
    case FaultKind::TAKEN_OVER:
        rig.Second().StandBy(request.Peer().toLatin1());
        device.AnswerAndLeave(method, 0);
        break;
    case FaultKind::DIES:
    case FaultKind::RESTARTS: break;
    case FaultKind::ENDS: device.AnswerThenEmit(method, signal->name, signal->values); break;
    case FaultKind::FLOOD:
    case FaultKind::WRONG_SIGNALS:
    case FaultKind::STRANGER:
        if (request.Row().trigger == Trigger::DELETION)
            device.AnswerStatus(method, 0, HELD_BACK_MS, 1);
        break;
    case FaultKind::LATE: device.AnswerLate(method, REFUSAL); break;
    }
}

void FaultScript::LosePeer(const Request& request, FaultRig& rig)
{
    const QList<Request> before = request.Before();
    if (request.Row().trigger == Trigger::START && !before.isEmpty())
        rig.Device().AnswerAndLeave(before.first().Method().toLatin1(), 0);
    else
        rig.Device().SetPresent(request.Peer().toLatin1(), false);
}
