#pragma once

#include "BrowserPipe.h"

#include <QByteArray>
#include <QJsonObject>
#include <QStringList>
#include <QTemporaryDir>

// A headless browser that shows one page at a time, away from any network, with a profile of its own that is gone with
// the object. It is told what to do over a pipe. Whatever goes wrong with it throws std::runtime_error.
class Browser final
{
public:
    // How wide the window is, which colours its user prefers, and what the page is for.
    enum class Look
    {
        WIDE,
        MIDDLE,
        DARK,
        PHONE,
        PAPER,
    };

    Browser();

    Browser(const Browser&) = delete;
    Browser& operator=(const Browser&) = delete;

    // Its program; empty where none is installed.
    [[nodiscard]] static QString Program();

    // Shows page, which is markup, and waits until it has been loaded.
    void Open(const QByteArray& page, Look look = Look::WIDE);

    // Runs script in the page: what it has handed to the function report.
    [[nodiscard]] QString Run(const QByteArray& script);

    // Presses and releases a key, as "Tab" or "ArrowDown".
    void Press(const char* key);

    // Prints the page; a size in inches, the paper upright.
    [[nodiscard]] QByteArray Print(double paperWidth, double paperHeight);

    // What the page has brought onto its console, errors and warnings too; a line each, as the browser tells it.
    [[nodiscard]] const QStringList& Console() const { return m_console; }

private:
    void SetLook(Look look);
    QJsonObject Call(const char* method, const QJsonObject& parameters = {});
    QJsonObject Receive();
    void Note(const QJsonObject& message);

    QTemporaryDir m_folder;
    BrowserPipe m_pipe;
    int m_calls = 0;
    QString m_session; // of the page's tab
    QString m_target;
    bool m_isLoaded = false;
    QStringList m_console;
};
