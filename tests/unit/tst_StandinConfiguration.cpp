#include "OrdinaryUser.h"
#include "Rows.h"
#include "Suite.h"

#include <Configuration.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

namespace
{

constexpr const char* FILE_VARIABLE = "OZNA_CONFIG_FILE";
constexpr const char* OBJECT = "/com/kestrelix/ozna/scheduler/schedulerobj";

} // namespace

class StandinConfigurationTest final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();

    void AValueIsReadFromItsGroup_data();
    void AValueIsReadFromItsGroup();
    void WithoutAFileNothingIsValid_data();
    void WithoutAFileNothingIsValid();
    void AFileWithoutPermissionIsNotValid_data();
    void AFileWithoutPermissionIsNotValid();
    void EachReadSeesTheFileAsItIs();

private:
    void Write(const QByteArray& content) const;
    [[nodiscard]] QString Path() const { return m_folder->filePath(u"ozna.ini"_s); }

    std::optional<QTemporaryDir> m_folder;
};

void StandinConfigurationTest::init()
{
    m_folder.emplace();
    QVERIFY(m_folder->isValid());
    qputenv(FILE_VARIABLE, QFile::encodeName(Path()));
}

void StandinConfigurationTest::cleanup()
{
    qunsetenv(FILE_VARIABLE);
    m_folder.reset();
}

void StandinConfigurationTest::Write(const QByteArray& content) const
{
    QFile file(Path());
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

void StandinConfigurationTest::AValueIsReadFromItsGroup_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("group");
    QTest::addColumn<QString>("key");
    QTest::addColumn<bool>("found");
    QTest::addColumn<QString>("value");
    const auto row = [](const char* name, const QByteArray& content, const QString& group, const QString& key,
                        bool found,
                        const QString& value) { QTest::newRow(name) << content << group << key << found << value; };
    const auto address = [&row](const char* name, const QByteArray& content, const QString& value) {
        row(name, content, u"GENERAL"_s, u"ServerIp"_s, true, value);
    };
    const auto missing = [&row](const char* name, const QByteArray& content) {
        row(name, content, u"GENERAL"_s, u"ServerIp"_s, false, u"default"_s);
    };
    address("the stream server's address", "[GENERAL]\nServerIp=10.0.0.5\n", u"10.0.0.5"_s);
    address("the section in mixed case", "[General]\nServerIp=10.0.0.5\n", u"10.0.0.5"_s);
    address("blanks around the equals sign", "[GENERAL]\nServerIp = 10.0.0.5 \n", u"10.0.0.5"_s);
    address("a file with carriage returns", "[GENERAL]\r\nServerIp=10.0.0.5\r\n", u"10.0.0.5"_s);
    address("a last line without terminator", "[GENERAL]\nServerIp=10.0.0.5", u"10.0.0.5"_s);
    address("a comment before it", "; the server\n[GENERAL]\nServerIp=10.0.0.5\n", u"10.0.0.5"_s);
    address("another section before it", "[NET]\nMtu=1500\n[GENERAL]\nServerIp=h\n", u"h"_s);
    address("a number is text", "[GENERAL]\nServerIp=007\n", u"007"_s);
    address("an empty value is a value", "[GENERAL]\nServerIp=\n", u""_s);
    address("the blank behind a comma is kept in quotes only", "[GENERAL]\nServerIp=a, b\n", u"a,b"_s);
    address("a value with a comma is one text", "[GENERAL]\nServerIp=a,b\n", u"a,b"_s);
    address("a quoted value with a comma is one text", "[GENERAL]\nServerIp=\"a,b\"\n", u"a,b"_s);
    missing("an empty file", "");
    missing("the section without the key", "[GENERAL]\nOther=1\n");
    missing("the key in another section", "[NET]\nServerIp=10.0.0.5\n");
    missing("the key in another case", "[GENERAL]\nserverip=10.0.0.5\n");
    row("another group", "[GENERAL]\nMtu=1\n[NET]\nMtu=1500\n", u"NET"_s, u"Mtu"_s, true, u"1500"_s);
    row("another group in another case", "[net]\nMtu=1500\n", u"NET"_s, u"Mtu"_s, false, u"default"_s);
    row("a missing group", "[GENERAL]\nMtu=1\n", u"NET"_s, u"Mtu"_s, false, u"default"_s);
}

void StandinConfigurationTest::AValueIsReadFromItsGroup()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, group);
    QFETCH(QString, key);
    QFETCH(bool, found);
    QFETCH(QString, value);
    Write(content);
    Configuration configuration(OBJECT);
    QVERIFY(configuration.IsValid());
    bool ok = !found;
    QCOMPARE(configuration.ReadConfigValue(group, key, u"default"_s, &ok, true), value);
    QCOMPARE(ok, found);
}

void StandinConfigurationTest::WithoutAFileNothingIsValid_data()
{
    // content: null: no file
    Rows<QByteArray, bool>::Add({
        {"a missing file", {}, false},
        {"a folder", {}, true},
        {"a line that is neither section nor value", "[GENERAL]\nnonsense\n", false},
        {"a section without its end", "[GENERAL\nServerIp=10.0.0.5\n", false},
    });
}

void StandinConfigurationTest::WithoutAFileNothingIsValid()
{
    const auto& [content, isFolder] = Rows<QByteArray, bool>::Current();
    if (isFolder)
        QVERIFY(QDir().mkdir(Path()));
    else if (!content.isNull())
        Write(content);
    Configuration configuration(OBJECT);
    QVERIFY(!configuration.IsValid());
    bool ok = true;
    QCOMPARE(configuration.ReadConfigValue(u"GENERAL"_s, u"ServerIp"_s, u"default"_s, &ok, true), u"default"_s);
    QVERIFY(!ok);
}

void StandinConfigurationTest::AFileWithoutPermissionIsNotValid_data()
{
    Rows<int, bool>::Add({
        {"for everybody to read", 0x6644, true},
        {"for nobody to read", 0, false},
    });
}

void StandinConfigurationTest::AFileWithoutPermissionIsNotValid()
{
    const auto& [permissions, valid] = Rows<int, bool>::Current();
    Write("[GENERAL]\nServerIp=10.0.0.5\n");
    QVERIFY(QFile::setPermissions(m_folder->path(), QFile::Permissions::fromInt(0x7755)));
    QVERIFY(QFile::setPermissions(Path(), QFile::Permissions::fromInt(static_cast<uint>(permissions))));
    const OrdinaryUser user;
    QCOMPARE(Configuration(OBJECT).IsValid(), valid);
}

void StandinConfigurationTest::EachReadSeesTheFileAsItIs()
{
    const auto address = [] {
        bool ok = false;
        return Configuration(OBJECT).ReadConfigValue(u"GENERAL"_s, u"ServerIp"_s, {}, &ok, true);
    };
    const auto setTime = [this](int hour) {
        QFile file(Path());
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(QDateTime(QDate(2024, 5, 15), QTime(hour, 0)), QFileDevice::FileModificationTime));
    };
    Write("[GENERAL]\nServerIp=10.0.0.5\n");
    setTime(8);
    QCOMPARE(address(), u"10.0.0.5"_s);
    Write("[GENERAL]\nServerIp=10.0.0.6\n");
    setTime(9);
    QCOMPARE(address(), u"10.0.0.6"_s);
    QVERIFY(QFile::remove(Path()));
    QVERIFY(!Configuration(OBJECT).IsValid());
}

OZNA_CASE(StandinConfiguration, StandinConfigurationTest)
#include "tst_StandinConfiguration.moc"
