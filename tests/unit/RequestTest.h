#pragma once

#include "Request.h"
#include "Task.h"
#include "UnitTest.h"

#include <memory>

// The fixture of the tests that make the tasks of the requests' table: the server and the playlist "day" are there.
class RequestTest : public UnitTest
{
    Q_OBJECT
protected:
    void Begin() override;
    void End() override { qunsetenv("OZNA_CONFIG_FILE"); }

    // The task that sends it, for 08:30:00. The log keeps nothing of it.
    static std::unique_ptr<Task> Make(const Request& request);
};
