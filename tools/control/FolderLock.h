#pragma once

#include <QString>

// Keeps other deployments away from a folder as long as the object lives, also those of other users. The folder stays
// as it is; the lock goes with the process.
class FolderLock final
{
public:
    // Throws ToolError when another process has the lock, or the folder cannot be opened.
    explicit FolderLock(const QString& folder);
    ~FolderLock();

    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

private:
    int m_descriptor;
};
