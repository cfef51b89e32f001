#pragma once

class QCoreApplication;

// What the player is asked to do at its start.
namespace PlayerOptions
{

enum class Command
{
    SERVE, // requests on the bus
    TEST,
    MEASURE,
    LIST_OUTPUTS,
};

// Reads the arguments of the process. Ends it after help and version, and with EXIT_FAILURE where they are wrong.
[[nodiscard]] Command Read(const QCoreApplication& app);

} // namespace PlayerOptions
