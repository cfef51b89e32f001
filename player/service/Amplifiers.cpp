#include "Amplifiers.h"

#include "PlayerLog.h"
#include "PlayerSettings.h"
#include "SystemOutput.h"

namespace
{

constexpr double ON = 100; // percent

Status Switch(const QString& name, bool on, const QString& folder)
{
    const std::optional<SystemOutput> output = SystemOutput::Find(name, {folder});
    if (output)
        return output->Set(on ? ON : 0) ? Status::ACCEPTED : Status::CANNOT_SWITCH;
    PLAYER_LOG(LEVEL_ERROR, "There is no output %s in %s", qPrintable(name), qPrintable(folder));
    return Status::CANNOT_SWITCH;
}

} // namespace

Status Amplifiers::Set(unsigned char mask, const QHash<int, QString>& outputs, const QString& folder)
{
    Status status = Status::ACCEPTED;
    bool lacksOne = outputs.isEmpty();
    for (int number = 1; number <= PlayerSettings::AMPLIFIERS; ++number)
    {
        const bool isOn = ((mask >> (number - 1)) & 1) != 0;
        const auto name = outputs.constFind(number);
        if (name == outputs.constEnd())
            lacksOne = lacksOne || isOn;
        else if (const Status switched = Switch(*name, isOn, folder); switched != Status::ACCEPTED)
            status = switched;
    }
    if (!lacksOne)
        return status;
    PLAYER_LOG(LEVEL_ERROR, "Amplifiers of 0x%02x are not set up: [PLAYER] has no keys Amplifier1 and so on for them",
               static_cast<unsigned int>(mask));
    return Status::NOT_SET_UP;
}
