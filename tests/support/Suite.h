#pragma once

#include <QCoreApplication>
#include <QTest>

// A test program is a suite: its cases are test classes, each of which runs as a process of its own. CTest names the
// case that a process is to run; see cmake/OznaTest.cmake.
namespace Suite
{

// A case of the program that it is linked into. Lives as long as the process.
class Case
{
public:
    explicit Case(const char* name);
    virtual ~Case() = default;
    Q_DISABLE_COPY_MOVE(Case)

    // Runs the test functions that the arguments name, as the test library reads them, or all of them. Returns what
    // the process exits with.
    virtual int Run(int argc, char* argv[]) const = 0;

    [[nodiscard]] const char* Name() const { return m_name; }
    [[nodiscard]] const Case* Next() const { return m_next; }

    // The cases are a list: nullptr where there is none.
    static const Case* First() { return m_first; }

private:
    static inline constinit const Case* m_first = nullptr; // there before any case is made

    const char* m_name;
    const Case* m_next;
};

// As the test library's own main without a screen: TestClass may have a static initMain, called ahead of all.
template <typename TestClass> class CaseOf final : public Case
{
public:
    using Case::Case;

    int Run(int argc, char* argv[]) const override
    {
        QTest::Internal::callInitMain<TestClass>();
        const QCoreApplication application(argc, argv);
        TestClass test;
        return QTest::qExec(&test, argc, argv);
    }
};

} // namespace Suite

// Makes a test class the case of that name. Two of one name in a suite do not link.
#define OZNA_CASE(name, TestClass)                                                                                     \
    extern const Suite::CaseOf<TestClass> ozna_case_##name;                                                            \
    const Suite::CaseOf<TestClass> ozna_case_##name(#name);
