// Any bytes as what a client sends: a path, a number, a role list and a body,
// one per line. Each reader takes it or refuses it, and what it takes keeps
// its promises: numbers within their bounds, paths without a NUL or a ".."
// segment, role lists without blank names.

#include <ApiInput.h>

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QList<QByteArray> parts = QByteArray(reinterpret_cast<const char*>(data), int(size)).split('\n');
    const auto part = [&](int i) { return i < parts.size() ? parts.at(i) : QByteArray(); };
    QString error;

    CMPath path;
    if (ApiInput::readPath(QString::fromUtf8(part(0)), &path, &error)) {
        if (path.toEncoded().contains(QChar(0)) || path.splitBase().contains(QStringLiteral("..")))
            std::abort();
    }
    int number = 0;
    if (ApiInput::readInt(QString::fromUtf8(part(1)), -5, 1000, &number, &error) && (number < -5 || number > 1000))
        std::abort();
    for (const QString& role : ApiInput::readRoles(QString::fromUtf8(part(2)))) {
        if (role.trimmed().isEmpty())
            std::abort();
    }
    QVariantHash object;
    ApiInput::readObject(part(3), &object, &error);
    return 0;
}
