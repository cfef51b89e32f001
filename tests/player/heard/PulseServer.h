#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

// A sound server of a test's own, whose outputs are heard by nobody but at their monitors: ear, the default one, and
// yard.
class PulseServer final
{
public:
    // Ends the test program when it does not come up.
    PulseServer();
    ~PulseServer();

    PulseServer(const PulseServer&) = delete;
    PulseServer& operator=(const PulseServer&) = delete;

    // Has a process that is started with that environment use it.
    void Apply(QProcessEnvironment& environment) const;

    // As when it crashes, and as when it is started anew.
    void Kill();
    void Start();
    // Lets it stand still, with its clients waiting; it goes on no more.
    void Halt();

private:
    [[nodiscard]] QString Socket() const { return m_folder.filePath(QStringLiteral("native")); }

    QTemporaryDir m_folder;
    QProcess m_process;
};
