#pragma once

#include "Status.h"

#include <QString>

// A folder of which files are asked for by name, and out of which no name leads: neither "..", nor an absolute path,
// nor a link.
class GuardedFolder final
{
public:
    explicit GuardedFolder(QString path)
        : m_path(std::move(path))
    {
    }

    struct Found
    {
        Status status = Status::ACCEPTED;
        QString path; // absolute, and without links; where it was found
    };

    // The regular, readable file of that name, below the folder or absolute and within it. Looked up anew each time.
    // What is refused is logged once.
    [[nodiscard]] Found Find(const QString& name) const;

    [[nodiscard]] const QString& Path() const { return m_path; }

private:
    [[nodiscard]] bool LeadsOut(const QString& path) const;

    const QString m_path;
};
