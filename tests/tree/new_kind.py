"""A kind of task as somebody would add it: what goes into which file of the tree.

It is number {number}, Fan, with one switch, and asks an existing peer for an existing request.
"""

# For each file: behind the last line that looks so, this. A file without such a line is new.
CHANGES = {
    "src/TaskType.h": [
        (r"    TASK_\w+ = (?!99)\d+,", "    TASK_FAN = {number},"),
        (r"    TaskName\{TASK_.*", '    TaskName{{TASK_FAN, "Fan", "Fan"}},'),
    ],
    "src/tasks/<Kind>.h": [
        (None, """#pragma once

#include "PunctualTask.h"

// Switches the fan on or off.
class Fan final : public PunctualTask
{{
public:
    explicit Fan(const QString& enable);
    bool Run() override;

private:
    const bool m_enabled;
}};"""),
    ],
    "src/tasks/<Kind>.cpp": [
        (None, """#include "Fan.h"

#include "Log.h"
#include "peers/GpsManager.h"
#include "text/Parameter.h"

Fan::Fan(const QString& enable)
    : PunctualTask(TASK_FAN, {{}})
    , m_enabled(Parameter::ToSwitch(enable, [&] {{
        NoteWarning(0, OZNA_TELL(LEVEL_WARNING, "Can't parse Fan from parameters: '%s'. Using false.",
                                 qPrintable(enable)));
    }}))
{{
    OZNA_LOG(LEVEL_NORMAL, "TASK CREATED | Fan: %d", m_enabled);
}}

bool Fan::Run()
{{
    return GpsManager::SetEnabled(m_enabled).Report(
        [&](const char* error) {{ OZNA_LOG(LEVEL_ERROR, "Fan(%d) request error: %s", m_enabled, error); }},
        [&](int status) {{ OZNA_LOG(LEVEL_ERROR, "Fan(%d) error: %d", m_enabled, status); }},
        [&] {{ OZNA_LOG(LEVEL_TRACE, "TASK REQUESTED | Fan: %d", m_enabled); }});
}}"""),
    ],
    "src/TaskTable.cpp": [
        (r'#include "tasks/.*"', '#include "tasks/Fan.h"'),
        (r"    Kind\(TASK_.*", "    Kind(TASK_FAN, 1, NO_LIMIT, MakeFromFirst<Fan>),"),
    ],
    "tools/words/Kinds.cpp": [
        (r"using Roles = ParameterRoles;", """
QString Fan(const Task& /*task*/, const Requests& requests)
{{
    return QStringLiteral("switch the fan ") + OnOrOff(Argument(requests).toBool());
}}"""),
        (r"    Kind\{TASK_.*", '    Kind{{TASK_FAN, "Fan", "setting", false, Roles(SWITCH), Fan, Value}},'),
    ],
    "tests/facts/KindTable.cpp": [
        (r"    KindRow\{.*", '    KindRow{{{number}, "Fan", "Fan", "Fan", 1, -1, "switch the fan on"}},'),
        (r"     \"0\", &SWITCHES},", '''    {{"Fan|{{1}},", "Fan: {{1}}", "Can't parse Fan from parameters: '{{1}}'. Using false.",
     "0", &SWITCHES}},'''),
    ],
    "tests/facts/DeviceRequests.cpp": [
        (r'.*\.lost = ".*"\},', """    RequestRow{{.group = "photo", .id = "SetEnabled(Fan)", .kind = {number}, .examples = SWITCHES,
               .call = "gps.SetEnabled b {{1}}", .timeout_ms = 5000,
               .failed = "1 [tasks/Fan.cpp] Fan({{2}}) request error: {{error}}",
               .refused = "1 [tasks/Fan.cpp] Fan({{2}}) error: {{status}}",
               .accepted = "9 [tasks/Fan.cpp] TASK REQUESTED | Fan: {{2}}",
               .lost = "the fan as before"}},"""),
    ],
    "tests/fuzz/KindReading.cpp": [
        (r"    KindReading\{.*", '    KindReading{{"Fan", 1, MANY, "gpsmanager", Gps}},'),
    ],
    "tests/mutants/list/tasks": [
        (r".*", """
file src/tasks/Fan.cpp

a fan is switched off only
- GpsManager::SetEnabled(«m_enabled»)
+ false"""),
    ],
    "docs/schedule-format.md": [
        (r"\| \d+ +\| [(\w].*", "| {number}     | Fan              | 1: on; other numbers: off               | switches the fan |"),
        (r"\d{7}\|.*\|\|\|.*", "1111111|06:00:00|*|*|*|||Fan|1"),
        (r"\| Gps .*\| off .*", "| Fan | `Can't parse Fan from ...` | off |"),
    ],
    "docs/faults.md": [
        (r"\| TakePhoto \|.*", "| SetEnabled(Fan) | as tests/faults/print writes it |"),
    ],
    "CHANGELOG.md": [
        (r"- The kinds of task: .*", "  Fan,"),
    ],
}
