#include "FileNames.h"

namespace {

constexpr ushort kEscapeBase = 0xDC00;

bool isEscape(const QString& name, int i)
{
    const ushort c = name.at(i).unicode();
    return c >= kEscapeBase + 0x80 && c <= kEscapeBase + 0xFF && (i == 0 || !name.at(i - 1).isHighSurrogate());
}

// The length of the valid UTF-8 sequence at bytes[i], 0 when there is none.
int sequenceAt(const QByteArray& bytes, int i)
{
    const auto lead = uchar(bytes.at(i));
    int length;
    char32_t code;
    char32_t least;
    if (lead < 0x80)
        return 1;
    if ((lead & 0xE0) == 0xC0) {
        length = 2, code = lead & 0x1F, least = 0x80;
    } else if ((lead & 0xF0) == 0xE0) {
        length = 3, code = lead & 0x0F, least = 0x800;
    } else if ((lead & 0xF8) == 0xF0) {
        length = 4, code = lead & 0x07, least = 0x10000;
    } else {
        return 0;
    }
    if (i + length > bytes.size())
        return 0;
    for (int k = 1; k < length; ++k) {
        const auto next = uchar(bytes.at(i + k));
        if ((next & 0xC0) != 0x80)
            return 0;
        code = (code << 6) | (next & 0x3F);
    }
    // Overlong forms, surrogates and code points past Unicode are not UTF-8.
    if (code < least || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF))
        return 0;
    return length;
}

} // namespace

namespace FileNames {

QString decode(const QByteArray& bytes)
{
    QString name;
    name.reserve(bytes.size());
    int run = 0;
    for (int i = 0; i < bytes.size();) {
        const int length = sequenceAt(bytes, i);
        if (length) {
            i += length;
            continue;
        }
        name += QString::fromUtf8(bytes.constData() + run, i - run);
        name += QChar(ushort(kEscapeBase + uchar(bytes.at(i))));
        run = ++i;
    }
    if (run == 0)
        return QString::fromUtf8(bytes);
    return name + QString::fromUtf8(bytes.constData() + run, bytes.size() - run);
}

QByteArray encode(const QString& name)
{
    QByteArray bytes;
    int run = 0;
    for (int i = 0; i < name.size(); ++i) {
        if (!isEscape(name, i))
            continue;
        bytes += name.midRef(run, i - run).toUtf8();
        bytes += char(name.at(i).unicode() - kEscapeBase);
        run = i + 1;
    }
    if (run == 0)
        return name.toUtf8();
    return bytes + name.midRef(run).toUtf8();
}

QString display(const QString& name)
{
    QString shown = name;
    for (int i = 0; i < shown.size(); ++i) {
        if (isEscape(shown, i))
            shown[i] = QChar::ReplacementCharacter;
    }
    return shown;
}

QString uriOf(const QString& path)
{
    // What QUrl leaves as it is in a path stays so; every other byte is encoded.
    return QStringLiteral("file://") + QString::fromLatin1(encode(path).toPercentEncoding("/!$&'()*+,;=:@"));
}

} // namespace FileNames
