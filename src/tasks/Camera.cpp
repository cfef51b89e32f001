#include "Camera.h"

#include "Log.h"
#include "peers/PhotoManager.h"
#include "text/Parameter.h"

Camera::Camera(const QString& enable)
    : PunctualTask(TASK_CAMERA, {})
    , m_enable(Parameter::ToSwitch(enable, [] {}))
{
    OZNA_LOG(LEVEL_NORMAL, "TASK CREATED | Camera: %d", m_enable);
}

bool Camera::Run()
{
    OZNA_LOG(LEVEL_TRACE, "%s", m_enable ? "Enabling" : "Disabling");
    return PhotoManager::EnableCamera(m_enable).Report(
        [&](const char* error) { OZNA_LOG(LEVEL_NORMAL, "EnableCamera(%d) request error: %s\n", m_enable, error); },
        [](int status) { OZNA_LOG(LEVEL_ERROR, "EnableCamera error: %d\n", status); },
        [&] { OZNA_LOG(LEVEL_TRACE, "TASK REQUESTED | EnableCamera:%d", m_enable); });
}
