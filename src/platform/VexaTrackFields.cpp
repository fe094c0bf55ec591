#include "VexaTrackFields.h"

#include "VexaJson.h"
#include "VexaRoles.h"

#include <limits>

namespace {

// Reads roles of the usual shape in one pass over the UTF-16 text, without
// building the tree of variants. It gives up, and the caller reads the text
// through the JSON reader, on anything it could not read exactly as that
// reader and the roles' accessors would: an escape or a lone surrogate in a
// string, a number with an exponent, a kept field of another type, a member
// of the kept ones named twice, deep nesting, or text that is not JSON.
class Scanner
{
public:
    explicit Scanner(const QString& text) : m_p(text.utf16()), m_end(m_p + text.size()) {}

    bool roles(VexaTrackFields& f)
    {
        space();
        if (!at('{'))
            return false;
        const bool read = object(1, [&](const Key& key) {
            if (key == "title")
                return once(0) && string(&f.title);
            if (key == "type") {
                QString type;
                if (!once(1) || !string(&type))
                    return false;
                bool ok = false;
                f.audio = VexaRolesType::fromVariant(type, &ok) == VexaRolesType::Audio && ok;
                return true;
            }
            if (key == "icon")
                return once(2) && string(&f.icon);
            if (key == "path")
                return once(3) && string(&f.path);
            if (key == "mediaData")
                return once(4) && at('{') && object(2, [&](const Key& k) { return mediaData(k, f); });
            return skip(1);
        });
        space();
        return read && m_p == m_end;
    }

private:
    // Deeper than the roles of any track: the JSON reader decides.
    static const int kMaxDepth = 32;

    struct Key
    {
        const ushort* p;
        int size;
        bool operator==(const char* name) const
        {
            for (int i = 0; i < size; ++i, ++name) {
                if (*name == '\0' || p[i] != ushort(*name))
                    return false;
            }
            return *name == '\0';
        }
    };

    bool mediaData(const Key& key, VexaTrackFields& f)
    {
        if (key == "metaData") {
            return once(5) && at('{') && object(3, [&](const Key& k) {
                if (k == "artist")
                    return once(6) && string(&f.artist);
                if (k == "album")
                    return once(7) && string(&f.album);
                if (k == "genre")
                    return once(8) && string(&f.genre);
                if (k == "serviceId")
                    return once(9) && string(&f.serviceId);
                if (k == "prePlayPath")
                    return once(10) && string(&f.prePlayPath);
                return skip(3);
            });
        }
        if (key == "resources") {
            return once(11) && at('[') && array(3, [&](int index) {
                if (index > 0)
                    return skip(3);
                f.hasResource = true;
                return at('{') && object(4, [&](const Key& k) {
                    if (k == "uri")
                        return once(12) && string(&f.uri);
                    if (k == "duration")
                        return once(13) && number(&f.duration);
                    return skip(4);
                });
            });
        }
        return skip(2);
    }

    bool at(char c) const { return m_p != m_end && *m_p == ushort(c); }

    void space()
    {
        while (m_p != m_end && (*m_p == ' ' || *m_p == '\t' || *m_p == '\n' || *m_p == '\r'))
            ++m_p;
    }

    // A kept member seen for the first time.
    bool once(int bit)
    {
        const unsigned mask = 1u << bit;
        if (m_seen & mask)
            return false;
        m_seen |= mask;
        return true;
    }

    // At the opening quote: a string without escapes and surrogates, kept in
    // out unless that is null.
    bool string(QString* out)
    {
        if (!at('"'))
            return false;
        const ushort* start = ++m_p;
        for (; m_p != m_end && *m_p != '"'; ++m_p) {
            if (*m_p == '\\' || (*m_p >= 0xd800 && *m_p <= 0xdfff))
                return false;
        }
        if (m_p == m_end)
            return false;
        if (out)
            *out = QString(reinterpret_cast<const QChar*>(start), int(m_p - start));
        ++m_p;
        return true;
    }

    bool digits()
    {
        const ushort* start = m_p;
        while (m_p != m_end && *m_p >= '0' && *m_p <= '9')
            ++m_p;
        return m_p != start;
    }

    // A number without exponent and of at most 15 characters; kept in out,
    // unless that is null, when it is whole.
    bool number(int* out)
    {
        const ushort* start = m_p;
        if (at('-'))
            ++m_p;
        if (at('0'))
            ++m_p;
        else if (!digits())
            return false;
        const bool fraction = at('.');
        if (fraction && (++m_p, !digits()))
            return false;
        if (at('e') || at('E') || m_p - start > 15)
            return false;
        if (!out)
            return true;
        if (fraction)
            return false;
        // At most 15 characters: the digits fit in 64 bits.
        const bool negative = *start == '-';
        qint64 value = 0;
        for (const ushort* d = negative ? start + 1 : start; d != m_p; ++d)
            value = value * 10 + (*d - '0');
        value = negative ? -value : value;
        if (value < std::numeric_limits<int>::min() || value > std::numeric_limits<int>::max())
            return false;
        *out = int(value);
        return true;
    }

    bool skip(int depth)
    {
        if (m_p == m_end)
            return false;
        switch (*m_p) {
        case '{':
            return object(depth + 1, [&](const Key&) { return skip(depth + 1); });
        case '[':
            return array(depth + 1, [&](int) { return skip(depth + 1); });
        case '"':
            return string(nullptr);
        case 't':
            return word("true");
        case 'f':
            return word("false");
        case 'n':
            return word("null");
        default:
            return number(nullptr);
        }
    }

    bool word(const char* w)
    {
        const ushort* p = m_p;
        for (; *w; ++p, ++w) {
            if (p == m_end || *p != ushort(*w))
                return false;
        }
        m_p = p;
        return true;
    }

    // At the opening brace: every member to member(key), at its value.
    template <class Member>
    bool object(int depth, Member member)
    {
        if (depth > kMaxDepth)
            return false;
        ++m_p;
        space();
        if (at('}')) {
            ++m_p;
            return true;
        }
        while (true) {
            space();
            if (!at('"'))
                return false;
            const ushort* name = ++m_p;
            while (m_p != m_end && *m_p != '"' && *m_p != '\\')
                ++m_p;
            if (!at('"'))
                return false;
            const Key key{name, int(m_p - name)};
            ++m_p;
            space();
            if (!at(':'))
                return false;
            ++m_p;
            space();
            if (!member(key))
                return false;
            space();
            if (at('}')) {
                ++m_p;
                return true;
            }
            if (!at(','))
                return false;
            ++m_p;
        }
    }

    // At the opening bracket: every element to element(index), at its value.
    template <class Element>
    bool array(int depth, Element element)
    {
        if (depth > kMaxDepth)
            return false;
        ++m_p;
        space();
        if (at(']')) {
            ++m_p;
            return true;
        }
        for (int index = 0;; ++index) {
            space();
            if (!element(index))
                return false;
            space();
            if (at(']')) {
                ++m_p;
                return true;
            }
            if (!at(','))
                return false;
            ++m_p;
        }
    }

    const ushort* m_p;
    const ushort* const m_end;
    unsigned m_seen = 0;
};

} // namespace

VexaTrackFields VexaTrackFields::read(const QString& rolesJson)
{
    VexaTrackFields fields;
    if (Scanner(rolesJson).roles(fields))
        return fields;
    return readThroughRoles(rolesJson);
}

VexaTrackFields VexaTrackFields::readThroughRoles(const QString& rolesJson)
{
    VexaTrackFields fields;
    QString error;
    const VexaRoles roles(VexaJson::parse(rolesJson.toUtf8(), &error).toHash());
    if (!error.isEmpty())
        return fields;
    const VexaMediaData media = roles.mediaData();
    const VexaMetaData meta = media.metaData();
    const QList<VexaMediaResource> resources = media.resources();
    fields.title = roles.title();
    fields.audio = roles.type() == VexaRolesType::Audio;
    fields.icon = roles.icon();
    fields.path = roles.value(VexaRoles::Path()).toString();
    fields.artist = meta.artist();
    fields.album = meta.album();
    fields.genre = meta.genre();
    fields.serviceId = meta.serviceId();
    fields.prePlayPath = meta.value(VexaMetaData::PrePlayPath()).toString();
    fields.hasResource = !resources.isEmpty();
    if (fields.hasResource) {
        fields.uri = resources.first().uri();
        fields.duration = resources.first().duration();
    }
    return fields;
}

bool VexaTrackFields::operator==(const VexaTrackFields& other) const
{
    return title == other.title && audio == other.audio && icon == other.icon && path == other.path
        && artist == other.artist && album == other.album && genre == other.genre && serviceId == other.serviceId
        && prePlayPath == other.prePlayPath && hasResource == other.hasResource && uri == other.uri
        && duration == other.duration;
}
