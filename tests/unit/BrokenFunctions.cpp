#include "BrokenFunctions.h"

#include "text/StringUtils.h"
#include "text/TextFile.h"

#include <QObject>

#include <new>

using namespace Qt::StringLiterals;

namespace
{

bool Fails(int& good)
{
    return good >= 0 && good-- == 0;
}

} // namespace

using Connection = QMetaObject::Connection;

bool RealReadLine(TextFile* file, QString& line) __asm__("__real__ZN8TextFile8ReadLineER7QString");
bool ReadLine(TextFile* file, QString& line) __asm__("__wrap__ZN8TextFile8ReadLineER7QString");
QStringList RealSplit(const QString& line, char separator,
                      qsizetype count) __asm__("__real__ZN11StringUtils11FirstTokensERK7QStringcx");
QStringList Split(const QString& line, char separator,
                  qsizetype count) __asm__("__wrap__ZN11StringUtils11FirstTokensERK7QStringcx");
QString RealReadError(const TextFile* file) __asm__("__real__ZNK8TextFile9ReadErrorEv");
QString ReadError(const TextFile* file) __asm__("__wrap__ZNK8TextFile9ReadErrorEv");
Connection
RealConnect(const QObject* sender, void** signal, const QObject* receiver, void** slot,
            QtPrivate::QSlotObjectBase* object, Qt::ConnectionType type, const int* types,
            const QMetaObject* metaObject) __asm__("__real__ZN7QObject11connectImplEPKS_PPvS1_S3_"
                                                   "PN9QtPrivate15QSlotObjectBaseEN2Qt14ConnectionTypeEPKiPK11"
                                                   "QMetaObject");
Connection Connect(const QObject* sender, void** signal, const QObject* receiver, void** slot,
                   QtPrivate::QSlotObjectBase* object, Qt::ConnectionType type, const int* types,
                   const QMetaObject* metaObject) __asm__("__wrap__ZN7QObject11connectImplEPKS_PPvS1_S3_"
                                                          "PN9QtPrivate15QSlotObjectBaseEN2Qt14ConnectionTypeEPKiPK11"
                                                          "QMetaObject");

QStringList Split(const QString& line, char separator, qsizetype count)
{
    if (BrokenFunctions::cannotSplit)
        throw std::bad_alloc();
    return RealSplit(line, separator, count);
}

QString ReadError(const TextFile* file)
{
    return BrokenFunctions::hasReadError ? u"Input/output error"_s : RealReadError(file);
}

Connection Connect(const QObject* sender, void** signal, const QObject* receiver, void** slot,
                   QtPrivate::QSlotObjectBase* object, Qt::ConnectionType type, const int* types,
                   const QMetaObject* metaObject)
{
    if (!BrokenFunctions::cannotConnect && !Fails(BrokenFunctions::goodConnections))
        return RealConnect(sender, signal, receiver, slot, object, type, types, metaObject);
    object->destroyIfLastRef();
    return {};
}

bool ReadLine(TextFile* file, QString& line)
{
    if (Fails(BrokenFunctions::goodLines))
        throw std::bad_alloc();
    return RealReadLine(file, line);
}
