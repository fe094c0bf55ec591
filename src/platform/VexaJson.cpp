#include "VexaJson.h"

#include "CMError.h"
#include "CMPath.h"
#include "VexaRoles.h"
#include "VexaValue.h"

#include <QJsonDocument>
#include <QLocale>
#include <QVarLengthArray>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>
#include <vector>

// Both directions go straight between JSON text and variants: a page of rows
// or a request of thousands of tracks passes through here, and the detour
// through QJsonDocument's own tree costs about as much again as the work.

namespace {

// --- Writing ---------------------------------------------------------------

// Appends to a QByteArray through a raw cursor: the array grows in steps and
// is cut to the written length once, when the writing is done.
class Output
{
public:
    explicit Output(QByteArray& out) : m_out(out)
    {
        const int used = out.size();
        out.resize(qMax(used + 256, out.capacity()));
        m_p = out.data() + used;
        m_end = out.data() + out.size();
    }
    ~Output() { m_out.resize(int(m_p - m_out.data())); }
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    // At least n bytes to write at the cursor; advance() moves past them.
    char* room(int n)
    {
        if (m_end - m_p < n)
            grow(n);
        return m_p;
    }
    void advance(char* to) { m_p = to; }
    void put(char c)
    {
        *room(1) = c;
        ++m_p;
    }
    void put(const char* text, int n)
    {
        std::memcpy(room(n), text, size_t(n));
        m_p += n;
    }
    template <int N>
    void put(const char (&text)[N])
    {
        put(text, N - 1);
    }

private:
    void grow(int n)
    {
        const int used = int(m_p - m_out.data());
        m_out.resize(qMax(used + n, m_out.size() * 2));
        m_p = m_out.data() + used;
        m_end = m_out.data() + m_out.size();
    }

    QByteArray& m_out;
    char* m_p;
    char* m_end;
};

void writeValue(const QVariant& value, Output& out);

// Escapes what JSON requires in UTF-8 text.
void writeEscaped(const QByteArray& utf8, Output& out)
{
    static const char hex[] = "0123456789abcdef";
    const char* p = utf8.constData();
    const char* const end = p + utf8.size();
    // Runs that need no escape are copied whole.
    const char* run = p;
    for (; p != end; ++p) {
        const auto u = static_cast<unsigned char>(*p);
        if (u >= 0x20 && u != '"' && u != '\\')
            continue;
        out.put(run, int(p - run));
        run = p + 1;
        switch (u) {
        case '"': out.put("\\\""); break;
        case '\\': out.put("\\\\"); break;
        case '\b': out.put("\\b"); break;
        case '\f': out.put("\\f"); break;
        case '\n': out.put("\\n"); break;
        case '\r': out.put("\\r"); break;
        case '\t': out.put("\\t"); break;
        default: {
            const char escape[] = {'\\', 'u', '0', '0', hex[u >> 4], hex[u & 0xf]};
            out.put(escape, 6);
        }
        }
    }
    out.put(run, int(end - run));
}

void writeString(const QString& text, Output& out)
{
    // Most names and titles are printable ASCII with no quote or backslash:
    // copied a byte per character, no UTF-8 copy made.
    const int n = text.size();
    char* const first = out.room(n + 2);
    char* dst = first;
    *dst++ = '"';
    const ushort* p = text.utf16();
    const ushort* const end = p + n;
    for (; p != end; ++p) {
        if (*p < 0x20 || *p >= 0x7f || *p == '"' || *p == '\\')
            break;
        *dst++ = char(*p);
    }
    if (p != end) {
        out.advance(first + 1);
        writeEscaped(text.toUtf8(), out);
        out.put('"');
        return;
    }
    *dst++ = '"';
    out.advance(dst);
}

template <class Integer>
void writeInteger(Integer v, Output& out)
{
    char digits[24];
    const std::to_chars_result end = std::to_chars(digits, digits + sizeof digits, v);
    out.put(digits, int(end.ptr - digits));
}

void writeDouble(double d, Output& out)
{
    if (!std::isfinite(d))
        out.put("null");
    else if (std::trunc(d) == d && std::fabs(d) < 9007199254740992.0)
        writeInteger(qint64(d), out);
    else {
        const QByteArray text = QByteArray::number(d, 'g', QLocale::FloatingPointShortest);
        out.put(text.constData(), text.size());
    }
}

// Objects are written with their keys in order, so equal values give equal text.
template <class Container>
void writeObject(const Container& object, Output& out)
{
    QVarLengthArray<typename Container::const_iterator, 16> members;
    for (auto it = object.cbegin(); it != object.cend(); ++it)
        members.append(it);
    std::sort(members.begin(), members.end(), [](const auto& a, const auto& b) { return a.key() < b.key(); });
    out.put('{');
    for (int i = 0; i < members.size(); ++i) {
        if (i > 0)
            out.put(',');
        writeString(members[i].key(), out);
        out.put(':');
        writeValue(members[i].value(), out);
    }
    out.put('}');
}

template <class List, class Write>
void writeArray(const List& list, Output& out, Write write)
{
    out.put('[');
    for (int i = 0; i < list.size(); ++i) {
        if (i > 0)
            out.put(',');
        write(list.at(i), out);
    }
    out.put(']');
}

void writeValue(const QVariant& value, Output& out)
{
    const int type = value.userType();
    switch (type) {
    case QMetaType::UnknownType:
    case QMetaType::Nullptr:
        out.put("null");
        return;
    case QMetaType::Bool:
        if (value.toBool())
            out.put("true");
        else
            out.put("false");
        return;
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::Short:
    case QMetaType::Long:
        writeInteger(value.toLongLong(), out);
        return;
    case QMetaType::UInt:
    case QMetaType::ULongLong:
    case QMetaType::UShort:
    case QMetaType::ULong:
        writeInteger(value.toULongLong(), out);
        return;
    case QMetaType::Double:
    case QMetaType::Float:
        writeDouble(value.toDouble(), out);
        return;
    case QMetaType::QString:
        writeString(*static_cast<const QString*>(value.constData()), out);
        return;
    case QMetaType::QVariantHash:
        writeObject(*static_cast<const QVariantHash*>(value.constData()), out);
        return;
    case QMetaType::QVariantMap:
        writeObject(*static_cast<const QVariantMap*>(value.constData()), out);
        return;
    case QMetaType::QVariantList:
        writeArray(*static_cast<const QVariantList*>(value.constData()), out, writeValue);
        return;
    case QMetaType::QStringList:
        writeArray(*static_cast<const QStringList*>(value.constData()), out, writeString);
        return;
    default:
        break;
    }
    // The platform's own types travel in their JSON form.
    if (type == qMetaTypeId<CMPath>())
        writeString(value.value<CMPath>().toEncoded(), out);
    else if (type == qMetaTypeId<VexaValue>())
        writeValue(value.value<VexaValue>().toVariant(), out);
    else if (type == qMetaTypeId<VexaRoles>())
        writeValue(value.value<VexaRoles>().toVariant(), out);
    else if (type == qMetaTypeId<CMError>())
        writeValue(value.value<CMError>().toVariant(), out);
    else if (value.canConvert<QString>())
        writeString(value.toString(), out);
    else
        out.put("null");
}

// --- Reading ---------------------------------------------------------------

// Deeper nesting than any value of the platform has is refused, so that no
// text can exhaust the stack.
const int kMaxDepth = 256;
// How many member names each thread keeps for sharing, and up to what length.
const size_t kSharedKeys = 64;
const int kMaxSharedKey = 32;

class Reader
{
public:
    explicit Reader(const QByteArray& text)
        : m_p(text.constData()), m_begin(text.constData()), m_end(text.constData() + text.size())
    {
    }

    QVariant document(QString* error)
    {
        skipSpace();
        QVariant value = readValue(0);
        skipSpace();
        if (m_error.isEmpty() && m_p != m_end)
            fail("garbage after the value");
        if (!m_error.isEmpty()) {
            if (error)
                *error = QStringLiteral("%1 at offset %2").arg(m_error).arg(m_p - m_begin);
            return QVariant();
        }
        if (error)
            error->clear();
        return value;
    }

private:
    void fail(const char* what)
    {
        if (m_error.isEmpty())
            m_error = QString::fromLatin1(what);
    }

    void skipSpace()
    {
        while (m_p != m_end && (*m_p == ' ' || *m_p == '\t' || *m_p == '\n' || *m_p == '\r'))
            ++m_p;
    }

    bool literal(const char* word, int size)
    {
        if (m_end - m_p < size || std::memcmp(m_p, word, size_t(size)) != 0)
            return false;
        m_p += size;
        return true;
    }

    QVariant readValue(int depth)
    {
        if (m_p == m_end) {
            fail("unexpected end of text");
            return QVariant();
        }
        switch (*m_p) {
        case '{':
            return depth >= kMaxDepth ? (fail("nested too deeply"), QVariant()) : readObject(depth + 1);
        case '[':
            return depth >= kMaxDepth ? (fail("nested too deeply"), QVariant()) : readArray(depth + 1);
        case '"':
            return readString();
        case 't':
            if (literal("true", 4))
                return true;
            break;
        case 'f':
            if (literal("false", 5))
                return false;
            break;
        case 'n':
            // A whole text of null is a null variant of a valid type, unlike
            // a failure; inside a value, null is an invalid variant.
            if (literal("null", 4))
                return depth == 0 ? QVariant::fromValue(nullptr) : QVariant();
            break;
        default:
            if (*m_p == '-' || (*m_p >= '0' && *m_p <= '9'))
                return readNumber();
        }
        fail("illegal value");
        return QVariant();
    }

    // Past an opening bracket: true when the closing one follows at once.
    bool closesEmpty(char close)
    {
        ++m_p;
        skipSpace();
        if (m_p == m_end || *m_p != close)
            return false;
        ++m_p;
        return true;
    }

    // After a member or an element: true when another follows, false at the
    // closing bracket or on an error.
    bool another(char close, const char* expected)
    {
        skipSpace();
        if (m_p != m_end && (*m_p == ',' || *m_p == close))
            return *m_p++ == ',';
        fail(expected);
        return false;
    }

    QVariant readObject(int depth)
    {
        QVariantHash object;
        if (closesEmpty('}'))
            return object;
        do {
            skipSpace();
            if (m_p == m_end || *m_p != '"') {
                fail("expected a member name");
                break;
            }
            const QString key = readKey();
            skipSpace();
            if (m_p == m_end || *m_p != ':') {
                fail("expected ':'");
                break;
            }
            ++m_p;
            skipSpace();
            object.insert(key, readValue(depth));
        } while (m_error.isEmpty() && another('}', "expected ',' or '}'"));
        return object;
    }

    QVariant readArray(int depth)
    {
        QVariantList array;
        if (closesEmpty(']'))
            return array;
        do {
            skipSpace();
            array.append(readValue(depth));
        } while (m_error.isEmpty() && another(']', "expected ',' or ']'"));
        return array;
    }

    int hexDigits()
    {
        if (m_end - m_p < 4) {
            fail("bad \\u escape");
            return -1;
        }
        int code = 0;
        for (int i = 0; i < 4; ++i) {
            const char c = *m_p++;
            code <<= 4;
            if (c >= '0' && c <= '9')
                code |= c - '0';
            else if (c >= 'a' && c <= 'f')
                code |= c - 'a' + 10;
            else if (c >= 'A' && c <= 'F')
                code |= c - 'A' + 10;
            else {
                fail("bad \\u escape");
                return -1;
            }
        }
        return code;
    }

    // Strict UTF-8: no overlong forms, no surrogates, nothing past U+10FFFF.
    static bool validUtf8(const char* begin, const char* end)
    {
        const auto* p = reinterpret_cast<const unsigned char*>(begin);
        const auto* e = reinterpret_cast<const unsigned char*>(end);
        while (p < e) {
            const unsigned char c = *p;
            if (c < 0x80) {
                ++p;
                continue;
            }
            int more = 0;
            uint code = 0;
            if (c >= 0xc2 && c <= 0xdf) {
                more = 1;
                code = c & 0x1f;
            } else if (c >= 0xe0 && c <= 0xef) {
                more = 2;
                code = c & 0x0f;
            } else if (c >= 0xf0 && c <= 0xf4) {
                more = 3;
                code = c & 0x07;
            } else {
                return false;
            }
            if (e - p <= more)
                return false;
            for (int i = 1; i <= more; ++i) {
                if ((p[i] & 0xc0) != 0x80)
                    return false;
                code = (code << 6) | (p[i] & 0x3f);
            }
            if ((more == 2 && (code < 0x800 || (code >= 0xd800 && code <= 0xdfff))) || (more == 3 && (code < 0x10000 || code > 0x10ffff)))
                return false;
            p += more + 1;
        }
        return true;
    }

    // Member names repeat from object to object and from text to text (every
    // track's roles have the same few); the recent ones are shared, not made anew.
    QString readKey()
    {
        const char* start = m_p + 1;
        const char* end = static_cast<const char*>(std::memchr(start, '"', size_t(m_end - start)));
        const int size = end ? int(end - start) : -1;
        if (size < 0 || size > kMaxSharedKey || std::memchr(start, '\\', size_t(size)))
            return readString();
        thread_local std::vector<std::pair<QByteArray, QString>> shared;
        for (const auto& entry : shared) {
            if (entry.first.size() == size && std::memcmp(entry.first.constData(), start, size_t(size)) == 0) {
                m_p = end + 1;
                return entry.second;
            }
        }
        const QString key = readString();
        if (m_error.isEmpty() && shared.size() < kSharedKeys)
            shared.emplace_back(QByteArray(start, size), key);
        return key;
    }

    // Where the string going on at p ends: its closing quote, or the end of the text.
    const char* stringEnd(const char* p) const
    {
        while (p != m_end && *p != '"')
            p += *p == '\\' && m_end - p > 1 ? 2 : 1;
        return p;
    }

    QString readString()
    {
        ++m_p;
        // Runs without escapes, the usual case, are taken whole.
        const char* run = m_p;
        QByteArray escaped;
        bool hasEscapes = false;
        // Every byte read and written below 0x80: plain ASCII needs no UTF-8 check.
        unsigned char high = 0;
        while (true) {
            if (m_p == m_end) {
                fail("unterminated string");
                return QString();
            }
            const char c = *m_p;
            if (c == '"')
                break;
            if (c != '\\') {
                high |= static_cast<unsigned char>(c);
                ++m_p;
                continue;
            }
            if (!hasEscapes) {
                hasEscapes = true;
                // The string's escaped text never outgrows its JSON form.
                escaped.reserve(int(stringEnd(m_p) - run));
            }
            escaped.append(run, int(m_p - run));
            ++m_p;
            if (m_p == m_end) {
                fail("unterminated string");
                return QString();
            }
            const char e = *m_p++;
            switch (e) {
            case '"': escaped += '"'; break;
            case '\\': escaped += '\\'; break;
            case '/': escaped += '/'; break;
            case 'b': escaped += '\b'; break;
            case 'f': escaped += '\f'; break;
            case 'n': escaped += '\n'; break;
            case 'r': escaped += '\r'; break;
            case 't': escaped += '\t'; break;
            case 'u': {
                int code = hexDigits();
                if (code < 0)
                    return QString();
                if (code >= 0xd800 && code <= 0xdbff && m_end - m_p >= 6 && m_p[0] == '\\' && m_p[1] == 'u') {
                    const char* save = m_p;
                    m_p += 2;
                    const int low = hexDigits();
                    if (low >= 0xdc00 && low <= 0xdfff)
                        code = 0x10000 + ((code - 0xd800) << 10) + (low - 0xdc00);
                    else if (low < 0)
                        return QString();
                    else
                        m_p = save;
                }
                const uint ucs4 = code >= 0xd800 && code <= 0xdfff ? 0xfffd : uint(code);
                if (ucs4 >= 0x80)
                    high = 0x80;
                escaped += QString::fromUcs4(&ucs4, 1).toUtf8();
                break;
            }
            default:
                fail("bad escape");
                return QString();
            }
            run = m_p;
        }
        const bool ascii = high < 0x80;
        if (!ascii && (!validUtf8(run, m_p) || (hasEscapes && !validUtf8(escaped.constData(), escaped.constData() + escaped.size())))) {
            fail("illegal UTF-8 in string");
            return QString();
        }
        if (hasEscapes)
            escaped.append(run, int(m_p - run));
        // With its size: the text may hold an escaped NUL.
        const char* const begin = hasEscapes ? escaped.constData() : run;
        const int size = hasEscapes ? escaped.size() : int(m_p - run);
        const QString text = ascii ? QString::fromLatin1(begin, size) : QString::fromUtf8(begin, size);
        ++m_p;
        return text;
    }

    // Skips a run of digits: false (failing) when there is none.
    bool digits()
    {
        const char* start = m_p;
        while (m_p != m_end && *m_p >= '0' && *m_p <= '9')
            ++m_p;
        if (m_p != start)
            return true;
        fail("illegal number");
        return false;
    }

    QVariant readNumber()
    {
        const char* start = m_p;
        if (*m_p == '-')
            ++m_p;
        // No leading zeros: a 0 stands alone.
        if (m_p != m_end && *m_p == '0')
            ++m_p;
        else if (!digits())
            return QVariant();
        const bool fraction = m_p != m_end && *m_p == '.';
        if (fraction && (++m_p, !digits()))
            return QVariant();
        const bool exponent = m_p != m_end && (*m_p == 'e' || *m_p == 'E');
        if (exponent) {
            ++m_p;
            if (m_p != m_end && (*m_p == '+' || *m_p == '-'))
                ++m_p;
            if (!digits())
                return QVariant();
        }
        const bool integral = !fraction && !exponent;
        const QByteArray digits = QByteArray::fromRawData(start, int(m_p - start));
        bool ok = false;
        if (integral) {
            const qlonglong whole = digits.toLongLong(&ok);
            if (ok && whole >= std::numeric_limits<int>::min() && whole <= std::numeric_limits<int>::max())
                return int(whole);
        }
        // Like every JSON number beyond int: a double, as JavaScript reads it.
        const double d = QByteArray(digits).toDouble(&ok);
        if (!ok || !std::isfinite(d)) {
            fail("number out of range");
            return QVariant();
        }
        if (std::trunc(d) == d && d >= std::numeric_limits<int>::min() && d <= std::numeric_limits<int>::max())
            return int(d);
        return d;
    }

    const char* m_p;
    const char* const m_begin;
    const char* const m_end;
    QString m_error;
};

} // namespace

QVariant VexaJson::parse(const QByteArray& text, QString* error)
{
    return Reader(text).document(error);
}

QByteArray VexaJson::toJson(const QVariant& value)
{
    QByteArray out;
    appendJson(value, out);
    return out;
}

void VexaJson::appendJson(const QVariant& value, QByteArray& out)
{
    Output output(out);
    writeValue(value, output);
}
