#include "RequestPddAction.h"

#include "Log.h"
#include "text/Parameter.h"

namespace
{

template <typename OnInvalid> PDD_ACTION ParseAction(const QString& text, OnInvalid onInvalid)
{
    if (Parameter::ToInt(text, NONE, [] {}) == STREAM_MIC)
        return STREAM_MIC;
    onInvalid();
    return NONE;
}

} // namespace

RequestPddAction::RequestPddAction(const QString& action, const QString& enable)
    : PunctualTask(TASK_REQUEST_PDD_ACTION, {})
    , m_action(ParseAction(
          action,
          [&] {
              NoteWarning(0, OZNA_TELL(LEVEL_WARNING,
                                       "Can't parse RequestPddAction action from parameters: '%s'. Using action=NONE.",
                                       qPrintable(action)));
          }))
    , m_enable(Parameter::ToSwitch(enable, [&] {
        NoteWarning(1, OZNA_TELL(LEVEL_WARNING,
                                 "Can't parse RequestPddAction enable from parameters: '%s'. Using enable=FALSE.",
                                 qPrintable(enable)));
    }))
{
    OZNA_LOG(LEVEL_NORMAL, "TASK CREATED | RequestPddAction(%s, %d)", PddActionName(m_action), m_enable);
}

bool RequestPddAction::Run()
{
    if (m_action != STREAM_MIC)
        OZNA_LOG(LEVEL_WARNING, "Unsupported action '%d'", m_action);
    else
        Q_EMIT PddAction(m_action, m_enable);
    return true;
}
